#include <algorithm>
#include <cmath>

#include "geometry/vectors.h"
#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"

namespace {

// How many elements of the bar a merged tee opens, from the near side on; no element of the stem ends deeper. A bar of two
// elements is opened on the near side only, though inner elements of the stem run through to its far side, and a stem of one
// element has no width to open anything across. Our own decision.
int mergeDepth(int stemElements, int barElements) {
  const int depth = std::min(stemElements / 2, barElements - 2);
  return depth < 1 ? barElements - 1 : depth;
}

}  // namespace

// The end of the stem that is joined to the bar.
struct CMlineEdit::StemEnd {
  int segment;       // the stem's first or last one
  bool keepsBefore;  // the end is the stem's end, not its start

  int vertex() const { return keepsBefore ? segment + 1 : segment; }
  int neighbour() const { return keepsBefore ? segment : segment + 1; }
};

int CMlineEdit::cmd_mledit_ClosedTree(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT CT",
                          .prompts = kPairPrompts,
                          .acceptsFirst = &CMlineEdit::isOpenMlinePicked,
                          .acceptsSecond = &CMlineEdit::isMlinePicked,
                          .edit = &CMlineEdit::closedTee});
}

int CMlineEdit::cmd_mledit_OpenTree(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT OT",
                          .prompts = kPairPrompts,
                          .acceptsFirst = &CMlineEdit::isOpenMlinePicked,
                          .acceptsSecond = &CMlineEdit::isMlinePicked,
                          .edit = &CMlineEdit::openTee,
                          .changes = CMlineTool::Changes::both});
}

int CMlineEdit::cmd_mledit_MergedTree(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT MT",
                          .prompts = kPairPrompts,
                          .acceptsFirst = &CMlineEdit::isOpenMlinePicked,
                          .acceptsSecond = &CMlineEdit::isMlinePicked,
                          .edit = &CMlineEdit::mergedTee,
                          .changes = CMlineTool::Changes::both});
}

void CMlineEdit::closedTee() {
  StemEnd end;
  if (!joinStem(end)) return;
  for (int e = 0; e < segFirst.numElements; ++e) endStem(end, e, nearColumn(end, e));
}

void CMlineEdit::openTee() {
  StemEnd end;
  if (!joinStem(end)) return;
  const int column = nearColumn(end, 0);
  for (int e = 0; e < segFirst.numElements; ++e) endStem(end, e, column);
  correctMapping(&segSecond);
  cutBar(column, 0, segFirst.numElements - 1);
}

void CMlineEdit::mergedTee() {
  StemEnd end;
  if (!joinStem(end)) return;
  const int last = segFirst.numElements - 1, barLast = segSecond.numElements - 1;
  const int deepest = mergeDepth(segFirst.numElements, segSecond.numElements);
  const bool isFirstNear = nearColumn(end, 0) == 0;
  const auto column = [=](int depth) { return isFirstNear ? depth : barLast - depth; };
  for (int e = 0; e <= last; ++e) endStem(end, e, column(std::min({deepest, e, last - e})));
  correctMapping(&segSecond);
  for (int depth = 0; depth < deepest; ++depth) cutBar(column(depth), depth, last - depth);
}

// Finds where the stem meets the bar, takes away what lies on the other side of it than the pick, and moves the end that
// remains to the bar's axis. False when nothing was changed.
bool CMlineEdit::joinStem(StemEnd& end) {
  double axisCrossing[3];
  if (!findSegments(axisCrossing, false)) {
    refuse(kNoCrossingRefusal);
    return false;
  }
  if (!tabulateCrossings() || !std::isfinite(ptCrossing[0][0][0])) return false;
  if (!mappingToSpecifyMongline(&segFirst, 0) || !mappingToSpecifyMongline(&segSecond, 0)) return false;

  const int met = segFirst.segment;
  end.keepsBefore = leadsOn(segFirst.ptList[0][met], segFirst.origPoint, ptCrossing[0][0]);
  // A stem that is its own bar must not lose the segment that it is joined to.
  if (segFirst.isSameEntity(segSecond) && end.keepsBefore != (met > segSecond.segment)) {
    discardUndoCopies();
    return false;
  }
  end.segment = end.keepsBefore ? met : 0;
  if (end.keepsBefore) {
    removeEndVertices(&segFirst, met + 2, segFirst.numVertices - met - 2);
  } else {
    removeEndVertices(&segFirst, 0, met);
  }
  refreshPoints(&segFirst);
  changePTPosition(segFirst.mline, end.vertex(), axisCrossing, segFirst.ptList);
  change71GroupNumber(segFirst.mline, end.keepsBefore ? 1 : -1, end.keepsBefore ? -1 : 1, -1, 1);
  return true;
}

// The outer element of the bar that is nearer to where an element of the stem comes from; of equals the first.
int CMlineEdit::nearColumn(const StemEnd& end, int element) const {
  const double* from = segFirst.ptList[element][end.neighbour()];
  const int last = segSecond.numElements - 1;
  const double(*row)[3] = ptCrossing[element];
  return vexengine_distance(from, row[last]) < vexengine_distance(from, row[0]) ? last : 0;
}

void CMlineEdit::endStem(const StemEnd& end, int element, int column) {
  change41GroupNumber(&segFirst, element, end.segment, ptCrossing[element][column], end.keepsBefore);
}

// Opens an element of the bar between two elements of the stem, as far as the stem has them.
void CMlineEdit::cutBar(int element, int from, int to) {
  if (from >= segFirst.numElements || to < 0) return;
  Cut_Mongline(&segSecond, element, ptCrossing[from][element], segSecond.origSegment, ptCrossing[to][element],
               segSecond.origSegment);
}

#include <algorithm>

#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"

namespace {

// How deep an element lies in its multiline of `count` elements, but no deeper than the middle of the other multiline.
int depth(int element, int count, int otherCount) {
  return std::min({element, count - 1 - element, (otherCount - 1) / 2});
}

}  // namespace

int CMlineEdit::cmd_mledit_ClosedCross(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT CC",
                          .prompts = kPairPrompts,
                          .acceptsSecond = &CMlineEdit::isMlinePicked,
                          .edit = &CMlineEdit::closedCross});
}

int CMlineEdit::cmd_mledit_OpenCross(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT OC",
                          .prompts = kPairPrompts,
                          .acceptsSecond = &CMlineEdit::isMlinePicked,
                          .edit = &CMlineEdit::openCross,
                          .changes = CMlineTool::Changes::both});
}

int CMlineEdit::cmd_mledit_MergedCross(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT MC",
                          .prompts = kPairPrompts,
                          .acceptsSecond = &CMlineEdit::isMlinePicked,
                          .edit = &CMlineEdit::mergedCross,
                          .changes = CMlineTool::Changes::both});
}

void CMlineEdit::closedCross() {
  if (findCrossing()) openFirst();
}

void CMlineEdit::openCross() {
  if (!findCrossing()) return;
  openFirst();
  cutSecond(0, 0, segFirst.numElements - 1);
  cutSecond(segSecond.numElements - 1, 0, segFirst.numElements - 1);
}

void CMlineEdit::mergedCross() {
  if (!findCrossing()) return;
  const int m = segFirst.numElements, n = segSecond.numElements;
  cutFirst(0, 0, n - 1);
  if (m > 1) cutFirst(m - 1, 0, n - 1);
  for (int i = 1; i < m - 1; ++i) {
    const int k = depth(i, m, n);
    cutFirst(i, k, n - 1 - k);
  }
  // Unlike the first multiline's, the only element of the second is cut twice over the same stretch. Our own decision: the
  // second cut finds nothing left to take away.
  cutSecond(0, 0, m - 1);
  cutSecond(n - 1, 0, m - 1);
  for (int j = 1; j < n - 1; ++j) {
    const int k = depth(j, n, m);
    cutSecond(j, k, m - 1 - k);
  }
}

// Finds the segments at which the picked multilines meet. Only a pair that does not meet leaves nothing to undo.
bool CMlineEdit::findSegments(double* axisCrossing, bool touching) {
  int segA = -1, segB = -1;
  if (getSegmentNumbers(&segFirst, &segSecond, &segA, &segB, axisCrossing, touching) && segA >= 0 && segB >= 0) return true;
  discardUndoCopies();
  return false;
}

// Finds where the elements of both cross on these segments; false for lines that run the same way.
bool CMlineEdit::tabulateCrossings() {
  return set_PTCrossing(&segFirst, segFirst.segment, &segSecond, segSecond.segment, &ptCrossing, &ptCrossingCount);
}

bool CMlineEdit::findCrossing() {
  return findSegments(nullptr, true) && tabulateCrossings();
}

// Opens the first multiline across the whole width of the second.
void CMlineEdit::openFirst() {
  for (int i = 0; i < segFirst.numElements; ++i) cutFirst(i, 0, segSecond.numElements - 1);
}

// Cuts an element of the first multiline between two elements of the second.
void CMlineEdit::cutFirst(int element, int from, int to) {
  double(*row)[3] = ptCrossing[element];
  Cut_Mongline(&segFirst, element, row[from], segFirst.segment, row[to], segFirst.segment);
}

// Cuts an element of the second multiline between two elements of the first.
void CMlineEdit::cutSecond(int element, int from, int to) {
  Cut_Mongline(&segSecond, element, ptCrossing[from][element], segSecond.segment, ptCrossing[to][element],
               segSecond.segment);
}

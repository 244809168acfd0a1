#include <algorithm>
#include <array>
#include <span>

#include "geometry/compare.h"
#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"
#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"
#include "mledit/MlineVertices.h"

namespace {

bool isOnAnElementPoint(const CMlineSegment& seg, const double* point) {
  for (int e = 0; e < seg.ptListCount; ++e) {
    for (int v = 0; v < seg.numVertices; ++v) {
      if (gx_pt_equal(point, seg.ptList[e][v])) return true;
    }
  }
  return false;
}

// The list up to the first break at or beyond the distance; the offset stays.
std::span<const double> partBefore(std::span<const double> list, double distance) {
  if (list.empty()) return list;
  const auto end = std::find_if(list.begin() + 1, list.end(), [=](double entry) { return entry >= distance; });
  return {list.begin(), end};
}

}  // namespace

int CMlineEdit::cmd_mledit_AddVertex(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT AV", .prompts = kVertexPrompts, .edit = &CMlineEdit::addVertex});
}

int CMlineEdit::cmd_mledit_DeleteVertex(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT DV", .prompts = kVertexPrompts, .edit = &CMlineEdit::deleteVertex});
}

void CMlineEdit::addVertex() {
  add_OneVertex(&segFirst);
}

void CMlineEdit::deleteVertex() {
  delete_OneVertex(&segFirst, getDeleteVertexNumver(&segFirst));
}

int CMlineEdit::getDeleteVertexNumver(CMlineSegment* seg) {
  if (!mappingToSpecifyMongline(seg, 0)) return -1;
  const int next = seg->nextVertex(seg->origSegment);
  if (next < 0) return -1;
  return seg->origDistance > vexengine_distance(seg->origPoint, seg->ptList[0][next]) ? next : seg->origSegment;
}

void CMlineEdit::add_OneVertex(CMlineSegment* seg) {
  if (!mappingToSpecifyMongline(seg, 0)) return;
  const int s = seg->origSegment, next = seg->nextVertex(s);
  if (next < 0 || seg->mline->numVertices() != seg->numVertices) return;
  double normal[3];
  GetNormal(seg->mline, normal);
  CMlineVertex split = readMlineVertex(*seg->mline, s);
  const CMlineVertex end = readMlineVertex(*seg->mline, next);

  CMlineVertex added;
  Distance_PointToLine(seg->point, split.position, end.position, normal, nullptr, added.position);
  if (isOnAnElementPoint(*seg, added.position)) return;
  const CMlineDirections directions(*seg->mline);
  const double toNext = directions.angle(added.position, end.position);
  const double toPrevious = directions.angle(added.position, split.position);
  directions.set(added, toNext, CMlineDirections::bisector(toNext, toPrevious));

  added.elements = split.elements;
  for (std::size_t e = 0; e < split.elements.size(); ++e) {
    if (!mappingToSpecifyMongline(seg, static_cast<int>(e))) continue;
    double offset = 0;
    Distance_PointToLine(seg->origPoint, split.position, end.position, normal, &offset, nullptr);
    added.setParameters(e, std::array{offset, 0.0});
    split.setParameters(e, partBefore(split.elements[e].elementParameters, seg->origDistance));
  }
  writeMlineVertex(*seg->mline, s, split);
  insertMlineVertex(*seg->mline, s + 1, added);
}

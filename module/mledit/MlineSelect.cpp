#include <algorithm>
#include <numbers>

#include "geometry/compare.h"
#include "geometry/conversions.h"
#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"
#include "mledit/HostVariables.h"
#include "mledit/MlineEdit.h"
#include "mledit/PointTable.h"

#include <kdrx/gs.h>
#include <kdrx/ut.h>

namespace {

// Half-open on the far end, and one coordinate is enough: our own decision. A pick on a vertex belongs to the segment that
// starts there, and upright and level segments are decided by the one coordinate that runs along them.
bool isInSpan(const double* foot, const double* from, const double* to) {
  const auto isWithin = [](double v, double a, double b) { return (a <= v && v < b) || (b < v && v <= a); };
  return isWithin(foot[0], from[0], to[0]) || isWithin(foot[1], from[1], to[1]);
}

// Gives the second record of a multiline the points that the first one has just been given.
void sharePoints(const CMlineSegment& first, CMlineSegment& second) {
  freePointTable(&second.ptList, &second.ptListCount);
  second.numVertices = first.numVertices;
  second.numElements = first.numElements;
  second.ptList = sharePointTable(first.ptList);
  second.ptListCount = first.ptListCount;
}

}  // namespace

void CMlineEdit::mlineEditInitialize(CMlineSegment* seg, long* name, CMlineSegment* other) {
  double pick[3] = {pickPoint[0], pickPoint[1], pickPoint[2]};
  uc2wc(pickPoint, pick, 0);
  openPicked(seg, name, other);
  resolvePick(seg, pick);
  seg->adoptPick();
  std::fill_n(name, 2, 0L);
}

void CMlineEdit::ptListInitialize(KdDbMline* mline, int numVertices, int numElements, double (***ptList)[3], int* count) {
  if (!mline || numVertices < 1 || numElements < 1) return freePointTable(ptList, count);
  *ptList = renewPointTable(*ptList, numElements, numVertices);
  *count = numElements;
  elementPoints(*mline, *ptList, numElements, numVertices);
}

void CMlineEdit::set_SpaceBetween(double* tol) {
  const KdGsView* view = kdgsActiveView();
  const std::optional<int> pickBoxPx = integerVariable(L"PICKBOX");
  if (view && pickBoxPx) *tol = *pickBoxPx * view->unitsPerPixel(1.0) * std::numbers::sqrt2;
}

void CMlineEdit::correctMapping(CMlineSegment* seg) {
  refreshPoints(seg);
  if (!seg->hasElement(seg->origElement)) return;
  const double(*line)[3] = seg->ptList[seg->origElement];
  double distance = 0;
  for (int s = 0; s + 1 < seg->numVertices; ++s) {
    gx_ptlndist(seg->origPoint, line[s], line[s + 1], &distance, nullptr);
    if (!KvMath::isEqual(distance, 0.0, spaceBetween)) continue;
    seg->origSegment = s;
    return;
  }
  if (!seg->isClosed()) return;
  const int last = seg->numVertices - 1;
  gx_ptlndist(seg->origPoint, line[last], line[0], &distance, nullptr);
  // Unlike the other segments, the closing one is taken only at exactly the tolerance. Our own decision: in doubt the
  // segment stays as it was.
  if (KvMath::isEqual(distance, spaceBetween, 0.0)) seg->origSegment = last;
}

void CMlineEdit::openPicked(CMlineSegment* seg, long* name, CMlineSegment* other) {
  std::copy_n(name, 2, seg->name);
  const bool isShared = other && isSameName(other->name, name);
  seg->mline = isShared ? other->mline : openMline(name, KdOpenMode::forRead);
  if (isShared) {
    sharePoints(*other, *seg);
  } else {
    refreshPoints(seg);
  }
  set_SpaceBetween(&spaceBetween);
}

void CMlineEdit::refreshPoints(CMlineSegment* seg) {
  seg->numVertices = seg->mline ? seg->mline->numVertices() : 0;
  seg->numElements = 0;
  GetSegmentsSize(seg->mline, &seg->numElements);
  ptListInitialize(seg->mline, seg->numVertices, seg->numElements, &seg->ptList, &seg->ptListCount);
}

// The first accepted in loop order wins, not the nearest.
bool CMlineEdit::resolvePick(CMlineSegment* seg, const double* pick) {
  double pickDcs[3];
  if (vex_wcs2dcs(pick, pickDcs) != 0) return false;
  const auto accepts = [&](int s, int next, int e) {
    const double* from = seg->ptList[e][s];
    const double* to = seg->ptList[e][next];
    if (isFootFarBeyond(pick, from, to)) return false;
    double foot[3], footDcs[3];
    gx_ptlndist(pick, from, to, nullptr, foot);
    if (!isInSpan(foot, from, to) || vex_wcs2dcs(foot, footDcs) != 0) return false;
    const double distance = vexengine_distance(from, foot);
    if (spaceBetween <= kdutDistance(pickDcs, footDcs) || !isDrawnAt(seg->mline, s, e, distance)) return false;
    std::copy_n(foot, 3, seg->point);
    seg->distance = distance;
    seg->segment = s;
    seg->element = e;
    return true;
  };
  // The closing segment comes last, as the highest.
  const int segments = seg->isClosed() ? seg->numVertices : seg->numVertices - 1;
  for (int s = 0; s < segments; ++s) {
    const int next = s + 1 < seg->numVertices ? s + 1 : 0;
    for (int e = 0; e < seg->ptListCount; ++e) {
      if (accepts(s, next, e)) return true;
    }
  }
  return false;
}

// The scan starts at the list's first entry, the offset, though that is no distance along the line: an element whose offset
// is positive cannot be picked nearer to its start than its offset is large. Our own decision, which element a pick near a
// vertex finds depends on it.
bool CMlineEdit::isDrawnAt(KdDbMline* mline, int vertex, int element, double distance) {
  setRealVector(mline, vertex, element);
  const auto next = std::find_if(paramList.begin(), paramList.end(), [=](double entry) { return entry > distance; });
  const auto reached = next - paramList.begin() - 1;
  return reached % 2 == 1;
}

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "geometry/compare.h"
#include "geometry/intersect.h"
#include "geometry/vectors.h"
#include "mledit/CrossingSearch.h"
#include "mledit/MlineEdit.h"
#include "mledit/PointTable.h"

namespace {

constexpr double kDirectionTolerance = 1e-10;
constexpr double kConstructionLength = 10.0;  // drawing units; only the direction of the construction line counts
constexpr double kRounding = 1e-14;           // of the largest coordinate; how far a computed crossing strays
constexpr int kNoDirection = -5001;

void store(const KdGePoint3d& point, double out[3]) {
  out[0] = point.x;
  out[1] = point.y;
  out[2] = point.z;
}

double roundingAt(const double* a, const double* b) {
  return kRounding * std::max({std::abs(a[0]), std::abs(a[1]), std::abs(b[0]), std::abs(b[1])});
}

// Takes the rounding out of a point computed to be on the line from a to b, so that by each single coordinate, too, it lies
// between the two or beyond one of them. An upright line, whose x differ by their rounding alone, needs that.
void placeOnLine(const double* a, const double* b, double* point) {
  const KdGeVector3d along{b[0] - a[0], b[1] - a[1], 0}, way{point[0] - a[0], point[1] - a[1], 0};
  const double square = along.dotProduct(along);
  if (square == 0) return;
  const double t = way.dotProduct(along) / square;
  point[0] = a[0] + t * along.x;
  point[1] = a[1] + t * along.y;
}

bool isWithinMline(const CMlineSegment& seg) {
  return seg.mline && seg.mline->numVertices() == seg.numVertices && seg.nextVertex(seg.segment) >= 0;
}

}  // namespace

bool CMlineEdit::getSegmentNumbers(CMlineSegment* a, CMlineSegment* b, int* segA, int* segB, double* point, bool touching) {
  if (a->isSameEntity(*b) && a->segment == b->segment) return false;
  if (!isWithinMline(*a) || !isWithinMline(*b)) return false;

  CrossingSearch search(*a, *b, touching);
  std::optional<xPtList> choice = search.onPickedLines();
  double pickA[3], pickB[3];
  if (!choice && mappingToSpecifyMongline(a, -1, pickA) && mappingToSpecifyMongline(b, -1, pickB)) {
    choice = search.nearestTo(pickA, pickB);
  }
  if (!choice) return false;
  *segA = a->segment = a->origSegment = choice->firstSegment;
  *segB = b->segment = b->origSegment = choice->secondSegment;
  if (point) std::copy_n(choice->point, 3, point);
  return true;
}

bool CMlineEdit::getXPoint(KdDbMline* a, int segA, KdDbMline* b, int segB, double* out) {
  if (!a || !b || segA < 0 || segB < 0 || segA + 1 >= a->numVertices() || segB + 1 >= b->numVertices()) return false;
  double p1[3], p2[3], p3[3], p4[3];
  store(a->vertexAt(segA), p1);
  store(a->vertexAt(segA + 1), p2);
  store(b->vertexAt(segB), p3);
  store(b->vertexAt(segB + 1), p4);
  return linexline3d(p1, p2, p3, p4, out) >= 0;
}

int CMlineEdit::PositionConnection(const double* a, const double* b) {
  const bool isSameX = KvMath::isEqual(a[0], b[0], kDirectionTolerance), isGreaterX = !isSameX && b[0] > a[0];
  const bool isSameY = KvMath::isEqual(a[1], b[1], kDirectionTolerance), isGreaterY = !isSameY && b[1] > a[1];
  const bool isSmallerX = !isSameX && b[0] < a[0], isSmallerY = !isSameY && b[1] < a[1];
  if (isGreaterX && isSameY) return 1;
  if (isGreaterX && isGreaterY) return 2;
  if (isSameX && isGreaterY) return 3;
  if (isSmallerX && isGreaterY) return 4;
  if (isSmallerX && isSameY) return -1;
  if (isSmallerX && isSmallerY) return -2;
  if (isSameX && isSmallerY) return -3;
  if (isGreaterX && isSmallerY) return -4;
  return isSameX && isSameY ? 0 : kNoDirection;
}

bool CMlineEdit::isSamePlace(const double* a, const double* b) {
  const double tolerance = std::max(kDirectionTolerance, roundingAt(a, b));
  return KvMath::isEqual(a[0], b[0], tolerance) && KvMath::isEqual(a[1], b[1], tolerance);
}

bool CMlineEdit::leadsOn(const double* a, const double* b, const double* c) {
  const int direction = PositionConnection(a, b), onward = PositionConnection(b, c);
  if (direction == onward || direction == 0 || onward == 0) return direction == onward;
  const double ux = b[0] - a[0], uy = b[1] - a[1], vx = c[0] - b[0], vy = c[1] - b[1];
  const double stray = std::abs(ux * vy - uy * vx) / (std::hypot(ux, uy) + std::hypot(vx, vy));
  return ux * vx + uy * vy > 0 && stray <= roundingAt(a, c);
}

bool CMlineEdit::isSameDirection(const double* a, const double* b, const double* c) {
  const double ux = b[0] - a[0], uy = b[1] - a[1], vx = c[0] - a[0], vy = c[1] - a[1];
  const auto [shorter, longer] = std::minmax({std::hypot(ux, uy), std::hypot(vx, vy)});
  const double stray = std::max({kDirectionTolerance * shorter, roundingAt(a, b), roundingAt(a, c)});
  return ux * vx + uy * vy > 0 && std::abs(ux * vy - uy * vx) <= stray * longer;
}

bool CMlineEdit::mappingToSpecifyMongline(CMlineSegment* seg, int element, double* out) {
  const int s = seg->segment, next = seg->nextVertex(s);
  if (!seg->mline || next < 0 || !seg->hasElement(seg->element)) return false;
  if (element == seg->element) {
    seg->adoptPick();
    return true;
  }
  const double* pick = seg->point;
  const double angle = vexengine_angle(pick, seg->ptList[seg->element][s]);
  const double square[3] = {pick[0] + kConstructionLength * std::sin(angle), pick[1] - kConstructionLength * std::cos(angle),
                            pick[2]};
  // Where the construction line does not meet the other line (a pick at the very start of an upright segment has no
  // direction to be square to), the nearest point of that line is what the user means.
  const auto carryOnto = [&](const double* from, const double* to, double* x) {
    if (gx_linexline(pick, square, from, to, x) < 0) gx_ptlndist(pick, from, to, nullptr, x);
  };

  if (element == -1 && out) {
    double from[3], to[3];
    store(seg->mline->vertexAt(s), from);
    store(seg->mline->vertexAt(next), to);
    std::copy_n(pick, 3, out);
    carryOnto(from, to, out);
    return true;
  }
  if (!seg->hasElement(element)) return false;
  const double* from = seg->ptList[element][s];
  const double* to = seg->ptList[element][next];
  double x[3] = {pick[0], pick[1], pick[2]};
  carryOnto(from, to, x);
  placeOnLine(from, to, x);
  const int k = from[0] != to[0] ? 0 : 1;
  const double low = std::min(from[k], to[k]), high = std::max(from[k], to[k]);
  if (x[k] < low) std::copy_n(from[k] < to[k] ? from : to, 3, x);
  if (x[k] > high) std::copy_n(from[k] < to[k] ? to : from, 3, x);
  std::copy_n(x, 3, seg->origPoint);
  seg->origElement = element;
  seg->origDistance = vexengine_distance(seg->origPoint, from);
  return true;
}

bool CMlineEdit::set_PTCrossing(const CMlineSegment* a, int segA, const CMlineSegment* b, int segB, double (***table)[3],
                                int* rows) {
  freePointTable(table, rows);
  const int nextA = segA >= 0 && segA + 1 < a->numVertices ? segA + 1 : -1, nextB = b->nextVertex(segB);
  if (nextA < 0 || nextB < 0 || !a->hasElement(0) || !b->hasElement(0)) return false;
  const double angleA = vexengine_angle(a->ptList[0][segA], a->ptList[0][nextA]);
  const double angleB = vexengine_angle(b->ptList[0][segB], b->ptList[0][nextB]);
  if (KvMath::isEqual(angleA, angleB, kDirectionTolerance)) return false;

  *table = newPointTable(a->ptListCount, b->ptListCount);
  *rows = a->ptListCount;
  bool isAnyCrossing = false;
  for (int i = 0; i < a->ptListCount; ++i) {
    for (int j = 0; j < b->ptListCount; ++j) {
      double* x = (*table)[i][j];
      std::fill_n(x, 3, std::numeric_limits<double>::quiet_NaN());
      isAnyCrossing |= linexline3d(a->ptList[i][segA], a->ptList[i][nextA], b->ptList[j][segB], b->ptList[j][nextB], x) >= 0;
    }
  }
  return isAnyCrossing;
}

bool isCollinear(const KdGePoint3d& a, const KdGePoint3d& b, const KdGePoint3d& c, const KdGePoint3d& d) {
  const KdGeVector3d u = (b - a).normal(), v = (d - c).normal();
  const KdGeVector3d w = ((d - b).isZeroLength() ? d - a : d - b).normal();
  const auto isParallel = [&](const KdGeVector3d& other) { return u.isEqualTo(other) || u.isEqualTo(-other); };
  return isParallel(v) && isParallel(w);
}

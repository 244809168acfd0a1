#include "geometry/intersect.h"

#include <algorithm>
#include <cmath>

#include "geometry/compare.h"
#include "geometry/vectors.h"

namespace {

constexpr double kPlanTolerance = 1e-11;      // parallel, degenerate and point-identity tests in the plan
constexpr double kOnSegmentTolerance = 1e-7;  // product of two distances
constexpr double kSpaceTolerance = 1e-7;      // every test in space
constexpr double kInfiniteInverseSlope = 1e30;

constexpr short kParallel = -1, kOverlapping = -2, kApart = -3, kSkew = -4;

void store(double x, double y, double z, double* out) {
  out[0] = x;
  out[1] = y;
  out[2] = z;
}

double inverseSlope(double dx, double dy) {
  if (std::abs(dy) >= kPlanTolerance) return dx / dy;
  return IMgxadIsZero(dx, kPlanTolerance) ? 0.0 : kInfiniteInverseSlope;
}

// The plan coordinate, 0 or 1, in which a segment is longer; y of equals.
int widerAxis(const double* from, const double* to) {
  return std::abs(to[0] - from[0]) > std::abs(to[1] - from[1]) ? 0 : 1;
}

bool liesBetween(double v, double a, double b) {
  return (v - a) * (v - b) <= kOnSegmentTolerance;
}

bool isWithinPlanSpan(const double* point, const double* from, const double* to) {
  const int k = widerAxis(from, to);
  return liesBetween(point[k], from[k], to[k]);
}

bool isAnEnd(const double* point, const double* from, const double* to) {
  return IMgxadPointEqual(point, from, kPlanTolerance) || IMgxadPointEqual(point, to, kPlanTolerance);
}

double heightAlong(const double* point, const double* from, const double* to) {
  const int k = widerAxis(from, to);
  return (point[k] - from[k]) / (to[k] - from[k]) * (to[2] - from[2]) + from[2];
}

bool isVertical(const double* from, const double* to) {
  return IMgxadIsZero(to[0] - from[0], kSpaceTolerance) && IMgxadIsZero(to[1] - from[1], kSpaceTolerance);
}

bool isSamePlanPoint(const double* p, const double* q) {
  return IMgxadRealEqual(p[0], q[0], kSpaceTolerance) && IMgxadRealEqual(p[1], q[1], kSpaceTolerance);
}

// Two ranges on one line, as positions along it.
struct Range {
  Range(double a, double b) : low(std::min(a, b)), high(std::max(a, b)) {}
  double length() const { return high - low; }
  double low, high;
};

struct RangeMeeting {
  short result;
  double position;  // the shared end, or an end of the overlap
};

RangeMeeting meetRanges(const Range& a, const Range& b) {
  const double span = std::max(a.high, b.high) - std::min(a.low, b.low);
  const double sum = a.length() + b.length();
  if (IMgxadRealEqual(span, sum, kSpaceTolerance)) return {3, a.low < b.low ? a.high : a.low};
  if (span < sum) return {kOverlapping, std::max(a.low, b.low)};
  return {kApart, 0.0};
}

short meetVerticals(const double* p1, const double* p2, const double* p3, const double* p4, double* out) {
  if (!isSamePlanPoint(p1, p3)) return kParallel;
  const auto [result, z] = meetRanges({p1[2], p2[2]}, {p3[2], p4[2]});
  if (result != kApart) store(p1[0], p1[1], z, out);
  return result;
}

short meetVerticalAndSloping(const double* p1, const double* p2, const double* p3, const double* p4, double* out) {
  const bool isFirstVertical = isVertical(p1, p2);
  const double* foot = isFirstVertical ? p1 : p3;
  const double* top = isFirstVertical ? p2 : p4;
  const double* from = isFirstVertical ? p3 : p1;
  const double* to = isFirstVertical ? p4 : p2;

  const double meeting[3] = {foot[0], foot[1], heightAlong(foot, from, to)};
  store(meeting[0], meeting[1], meeting[2], out);
  double distance = 0.0;
  gx_ptlndist(meeting, from, to, &distance, nullptr);
  if (!IMgxadIsZero(distance, kSpaceTolerance)) return kSkew;
  const bool isOnVertical = liesBetween(meeting[2], foot[2], top[2]);
  const bool isOnSloping = isWithinPlanSpan(meeting, from, to);
  const bool isOnFirst = isFirstVertical ? isOnVertical : isOnSloping;
  const bool isOnSecond = isFirstVertical ? isOnSloping : isOnVertical;
  return static_cast<short>((isOnFirst ? 1 : 0) + (isOnSecond ? 2 : 0));
}

// Segments parallel in the plan, neither of them vertical.
short meetPlanParallels(const double* p1, const double* p2, const double* p3, const double* p4, double* out) {
  // The longer segment gives the better direction.
  const bool isFirstLonger = vexengine_distance(p1, p2) >= vexengine_distance(p3, p4);
  const double* from = isFirstLonger ? p1 : p3;
  const double* to = isFirstLonger ? p2 : p4;
  const double length = vexengine_distance(from, to);
  const double u[3] = {(to[0] - from[0]) / length, (to[1] - from[1]) / length, (to[2] - from[2]) / length};
  for (const double* point : {isFirstLonger ? p3 : p1, isFirstLonger ? p4 : p2}) {
    double distance = 0.0;
    gx_ptlndist(point, from, to, &distance, nullptr);
    if (!IMgxadIsZero(distance, kSpaceTolerance)) return kParallel;
  }
  const auto along = [&](const double* p) {
    return (p[0] - from[0]) * u[0] + (p[1] - from[1]) * u[1] + (p[2] - from[2]) * u[2];
  };
  const auto [result, t] = meetRanges({along(p1), along(p2)}, {along(p3), along(p4)});
  if (result != kApart) store(from[0] + t * u[0], from[1] + t * u[1], from[2] + t * u[2], out);
  return result;
}

}  // namespace

short gx_linexline(const double* p1, const double* p2, const double* p3, const double* p4, double* out) {
  const double dx1 = p2[0] - p1[0], dy1 = p2[1] - p1[1];
  const double dx2 = p4[0] - p3[0], dy2 = p4[1] - p3[1];
  const double c = dx1 * dy2 - dx2 * dy1;
  if (IMgxadIsZero(c, kPlanTolerance)) return kParallel;
  if (IMgxadPointEqual(p1, p2, kPlanTolerance) || IMgxadPointEqual(p3, p4, kPlanTolerance)) return kParallel;
  if (std::abs(inverseSlope(dx1, dy1) - inverseSlope(dx2, dy2)) < kPlanTolerance) return kParallel;

  const double x = (p3[0] * dx1 * dy2 - p1[0] * dx2 * dy1 - (p3[1] - p1[1]) * dx1 * dx2) / c;
  const double y = std::abs(dx1) > std::abs(dx2) ? (x - p1[0]) * (dy1 / dx1) + p1[1] : (x - p3[0]) * (dy2 / dx2) + p3[1];
  const double meeting[3] = {x, y, out[2]};
  const bool isOnFirst = isWithinPlanSpan(meeting, p1, p2) || isAnEnd(meeting, p1, p2);
  const bool isOnSecond = isWithinPlanSpan(meeting, p3, p4) || isAnEnd(meeting, p3, p4);
  const bool isOnFirstOnly = isOnFirst && !isOnSecond;
  store(x, y, isOnFirstOnly ? heightAlong(meeting, p1, p2) : heightAlong(meeting, p3, p4), out);
  return static_cast<short>((isOnFirst ? 1 : 0) + (isOnSecond ? 2 : 0));
}

short linexline3d(const double* p1, const double* p2, const double* p3, const double* p4, double* out) {
  const bool isFirstVertical = isVertical(p1, p2), isSecondVertical = isVertical(p3, p4);
  if (isFirstVertical && isSecondVertical) return meetVerticals(p1, p2, p3, p4, out);
  if (isFirstVertical || isSecondVertical) return meetVerticalAndSloping(p1, p2, p3, p4, out);

  const double dx1 = p2[0] - p1[0], dy1 = p2[1] - p1[1];
  const double dx2 = p4[0] - p3[0], dy2 = p4[1] - p3[1];
  const double c = dx2 * dy1 - dx1 * dy2;
  if (IMgxadIsZero(c, kSpaceTolerance)) return meetPlanParallels(p1, p2, p3, p4, out);

  const double wx = p3[0] - p1[0], wy = p3[1] - p1[1];
  const double t1 = (dx2 * wy - dy2 * wx) / c;
  const double t2 = (dx1 * wy - dy1 * wx) / c;
  const double z1 = p1[2] + t1 * (p2[2] - p1[2]), z2 = p3[2] + t2 * (p4[2] - p3[2]);
  store(p1[0] + t1 * dx1, p1[1] + t1 * dy1, z1, out);
  if (!IMgxadRealEqual(z1, z2, kSpaceTolerance)) return kSkew;
  return static_cast<short>((isWithinPlanSpan(out, p1, p2) ? 1 : 0) + (isWithinPlanSpan(out, p3, p4) ? 2 : 0));
}

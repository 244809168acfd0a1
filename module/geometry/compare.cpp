#include "geometry/compare.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPointTolerance = 1e-10;  // relative
constexpr double kFullTurn = 6.283185307179586;

bool isCoordinateEqual(double a, double b, double tol) {
  return std::abs(b) <= tol ? std::abs(a) <= tol : std::abs(a / b - 1.0) < tol;
}

// A negative angle is reduced by its size first, so a full negative turn ends at 2 pi. Our own decision, and callers rely on
// it.
double reducedAngle(double angle) {
  double size = std::abs(angle);
  if (size >= kFullTurn) size -= std::trunc(size / kFullTurn) * kFullTurn;
  return angle >= 0 ? size : kFullTurn - size;
}

}  // namespace

bool IMgxadIsZero(double v, double tol) {
  return -tol <= v && v <= tol;
}

bool IMgxadRealEqual(double a, double b, double tol) {
  return std::abs(b) <= tol ? std::abs(a) <= tol : std::abs(a / b - 1.0) <= tol;
}

bool IMgxadPointEqual(const double* p, const double* q, double tol) {
  return isCoordinateEqual(p[0], q[0], tol) && isCoordinateEqual(p[1], q[1], tol) && isCoordinateEqual(p[2], q[2], tol);
}

int gx_pt_equal(const double* p, const double* q) {
  return IMgxadPointEqual(p, q, kPointTolerance) ? 1 : 0;
}

bool mlineRealEqual(double a, double b, double tol) {
  return std::abs(b) <= tol ? std::abs(a) <= tol : std::abs(a - b) <= tol;
}

bool mlineRealBetween(double x, double a, double b, double tol) {
  const auto [low, high] = std::minmax(a, b);
  return (x > low || mlineRealEqual(x, low, tol)) && (x < high || mlineRealEqual(x, high, tol));
}

bool mlineAngleEqual(double a, double b, double tol) {
  if (a == 0.0 && b == 0.0) return true;
  return mlineRealEqual(reducedAngle(a), reducedAngle(b), tol);
}

bool KvMath::isEqual(double a, double b, double tol) {
  return std::abs(a - b) <= tol;
}

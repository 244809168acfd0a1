#include "geometry/vectors.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "geometry/compare.h"

namespace {

constexpr double kDirectionTolerance = 1e-10;  // drawing units
constexpr double kLengthTolerance = 1e-11;     // drawing units

int dominantAxis(const double* direction) {
  int axis = 0;
  for (int i = 1; i < 3; ++i) {
    if (std::abs(direction[i]) > std::abs(direction[axis])) axis = i;
  }
  return axis;
}

void store(const double* from, double* to) {
  if (to) std::copy_n(from, 3, to);
}

void store(double from, double* to) {
  if (to) *to = from;
}

}  // namespace

C3Point& C3Point::operator-=(const C3Point& other) {
  m_x -= other.m_x;
  m_y -= other.m_y;
  m_z -= other.m_z;
  return *this;
}

CNormal::CNormal(const C3Point* normal) : C3Point(normal ? *normal : C3Point(0, 0, 1)) {}

void gx_crossproduct(const double* a, const double* b, double* out) {
  const double product[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
  store(product, out);
}

double Determinant(const C3Point& a, const C3Point& b, const C3Point* normal) {
  const CNormal n(normal);
  return (a.Y() * b.Z() - a.Z() * b.Y()) * n.X() + (a.Z() * b.X() - a.X() * b.Z()) * n.Y() +
         (a.X() * b.Y() - a.Y() * b.X()) * n.Z();
}

double vexengine_distance(const double* p, const double* q) {
  if (!p || !q) return 0.0;
  const double d[3] = {q[0] - p[0], q[1] - p[1], q[2] - p[2]};
  return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
}

double vexengine_angle(const double* from, const double* to) {
  if (!from || !to) return 0.0;
  const double dx = to[0] - from[0], dy = to[1] - from[1];
  if (IMgxadIsZero(dx, kDirectionTolerance) && IMgxadIsZero(dy, kDirectionTolerance)) return 0.0;
  const double angle = std::atan2(dy, dx);
  return angle < 0 ? angle + 2 * std::numbers::pi : angle;
}

short gx_ptlndist(const double* p, const double* a, const double* b, double* dist, double* foot) {
  if (!p || !a || !b) {
    const double unset[3] = {0, 0, 0};
    store(0.0, dist);
    store(unset, foot);
    return -2;
  }
  const double length = vexengine_distance(a, b);
  if (IMgxadRealEqual(length, 0.0, kLengthTolerance)) {
    store(vexengine_distance(p, a), dist);
    store(a, foot);
    return -1;
  }
  const double u[3] = {(b[0] - a[0]) / length, (b[1] - a[1]) / length, (b[2] - a[2]) / length};
  const double t = u[0] * (p[0] - a[0]) + u[1] * (p[1] - a[1]) + u[2] * (p[2] - a[2]);
  const double projected[3] = {a[0] + t * u[0], a[1] + t * u[1], a[2] + t * u[2]};
  const int k = dominantAxis(u);
  const bool isOnSegment = (projected[k] - a[k]) * (projected[k] - b[k]) <= 0;
  if (dist) *dist = vexengine_distance(p, projected);
  store(projected, foot);
  return isOnSegment ? 1 : 0;
}

bool isFootFarBeyond(const double* p, const double* a, const double* b) {
  constexpr double kLeastLength = 10 * kLengthTolerance;  // shorter segments may count as points
  constexpr double kMostDistance = 1e9;  // lengths of the segment; beyond, rounding may place the foot anywhere
  double length2 = 0, distance2 = 0, along = 0;
  for (int k = 0; k < 3; ++k) {
    const double d = b[k] - a[k], w = p[k] - a[k];
    length2 += d * d;
    distance2 += w * w;
    along += d * w;
  }
  if (length2 < kLeastLength * kLeastLength || distance2 > kMostDistance * kMostDistance * length2) return false;
  return along < -length2 || along > 2 * length2;
}

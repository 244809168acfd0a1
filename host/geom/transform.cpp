#include "geom/transform.h"

#include <cmath>

namespace torva::geom {
namespace {

// Below this share of 1 the x and y parts of an extrusion count as parallel to the z axis.
constexpr double kArbitraryAxisLimit = 1.0 / 64;

bool isSame(const KdGeVector3d& a, double x, double y, double z) {
  return a.x == x && a.y == y && a.z == z;
}

}  // namespace

Transform Transform::translation(const KdGeVector3d& offset) {
  Transform result;
  result.origin = {offset.x, offset.y, offset.z};
  return result;
}

Transform Transform::scaling(double sx, double sy, double sz) {
  return {{sx, 0, 0}, {0, sy, 0}, {0, 0, sz}, {}};
}

Transform Transform::rotationZ(double angleRad) {
  const double c = std::cos(angleRad), s = std::sin(angleRad);
  return {{c, s, 0}, {-s, c, 0}, {0, 0, 1}, {}};
}

Transform Transform::fromExtrusion(const KdGeVector3d& extrusion) {
  if (isSame(extrusion, 0, 0, 1)) return {};
  const double length = extrusion.length();
  if (!std::isfinite(length) || length == 0) return {};
  const KdGeVector3d normal = extrusion * (1 / length);
  if (normal.x == 0 && normal.y == 0 && normal.z > 0) return {};
  const bool isNearZ = std::abs(normal.x) < kArbitraryAxisLimit && std::abs(normal.y) < kArbitraryAxisLimit;
  const KdGeVector3d side = isNearZ ? KdGeVector3d{0, 1, 0} : KdGeVector3d{0, 0, 1};
  const KdGeVector3d xAxis = side.crossProduct(normal).normal();
  return {xAxis, normal.crossProduct(xAxis).normal(), normal, {}};
}

Transform Transform::operator*(const Transform& inner) const {
  return {(*this)(inner.x), (*this)(inner.y), (*this)(inner.z), (*this)(inner.origin)};
}

Box3 Transform::operator()(const Box3& box) const {
  Box3 result;
  if (box.isEmpty()) return result;
  for (const double px : {box.min.x, box.max.x}) {
    for (const double py : {box.min.y, box.max.y}) {
      for (const double pz : {box.min.z, box.max.z}) result.add((*this)(KdGePoint3d{px, py, pz}));
    }
  }
  return result;
}

bool Transform::isIdentity() const {
  return isSame(x, 1, 0, 0) && isSame(y, 0, 1, 0) && isSame(z, 0, 0, 1) && origin.x == 0 && origin.y == 0 && origin.z == 0;
}

KdGePoint3d toExtrusion(const KdGePoint3d& wcs, const KdGeVector3d& extrusion) {
  const Transform system = Transform::fromExtrusion(extrusion);
  const KdGeVector3d offset = wcs - KdGePoint3d();
  return {offset.dotProduct(system.x), offset.dotProduct(system.y), offset.dotProduct(system.z)};
}

bool isFinite(const KdGePoint3d& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool isFinite(const KdGeVector3d& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

}  // namespace torva::geom

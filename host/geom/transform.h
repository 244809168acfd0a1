#pragma once

#include "geom/box.h"

#include <kdrx/ge.h>

namespace torva::geom {

/// Affine map of space: p -> origin + x p.x + y p.y + z p.z. The identity by default.
struct Transform {
  KdGeVector3d x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
  KdGePoint3d origin;

  static Transform translation(const KdGeVector3d& offset);
  static Transform scaling(double sx, double sy, double sz);
  /// Counter-clockwise about the z axis.
  static Transform rotationZ(double angleRad);
  /// From the coordinate system that an extrusion direction stands for to the world, by the arbitrary axis rule. The
  /// identity for (0, 0, 1) and for directions that are zero or not finite.
  static Transform fromExtrusion(const KdGeVector3d& extrusion);

  KdGePoint3d operator()(const KdGePoint3d& p) const { return origin + (*this)(KdGeVector3d{p.x, p.y, p.z}); }
  KdGeVector3d operator()(const KdGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  /// The map that applies `inner` first.
  Transform operator*(const Transform& inner) const;
  /// The box of the eight mapped corners; empty for an empty box.
  Box3 operator()(const Box3& box) const;

  bool isIdentity() const;
};

/// A point of the world in the coordinate system that an extrusion direction stands for: what fromExtrusion() takes back.
KdGePoint3d toExtrusion(const KdGePoint3d& wcs, const KdGeVector3d& extrusion);

/// Whether all coordinates are finite numbers.
bool isFinite(const KdGePoint3d& p);
bool isFinite(const KdGeVector3d& v);

}  // namespace torva::geom

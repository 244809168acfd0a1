#pragma once

#include <cmath>

/// Tolerance of the geometry classes, absolute, in drawing units for points and without unit for vectors.
struct KdGeTol {
  double equalPoint = 1e-10;
  double equalVector = 1e-10;

  /// The tolerance that comparisons use when none is given.
  static constexpr KdGeTol global() { return {}; }
};

/// A direction with a length, in the space its user says (world unless told otherwise).
struct KdGeVector3d {
  double x = 0, y = 0, z = 0;

  static constexpr KdGeVector3d kZAxis() { return {0, 0, 1}; }

  constexpr KdGeVector3d operator+(const KdGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  constexpr KdGeVector3d operator-(const KdGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  constexpr KdGeVector3d operator-() const { return {-x, -y, -z}; }
  constexpr KdGeVector3d operator*(double factor) const { return {x * factor, y * factor, z * factor}; }

  constexpr double dotProduct(const KdGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  constexpr KdGeVector3d crossProduct(const KdGeVector3d& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }
  double length() const { return std::sqrt(dotProduct(*this)); }
  bool isZeroLength(const KdGeTol& tol = KdGeTol::global()) const { return length() <= tol.equalVector; }

  /// The vector of length 1 in the same direction; a vector of zero length (KdGeTol::equalVector) is returned as it is.
  KdGeVector3d normal(const KdGeTol& tol = KdGeTol::global()) const {
    return isZeroLength(tol) ? *this : *this * (1.0 / length());
  }
  /// True when the difference of the two vectors is at most `tol.equalVector` long.
  bool isEqualTo(const KdGeVector3d& v, const KdGeTol& tol = KdGeTol::global()) const {
    return (*this - v).length() <= tol.equalVector;
  }
};

/// A position, in drawing units, in the space its user says (world unless told otherwise).
struct KdGePoint3d {
  double x = 0, y = 0, z = 0;

  constexpr KdGePoint3d operator+(const KdGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  constexpr KdGePoint3d operator-(const KdGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  constexpr KdGeVector3d operator-(const KdGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }

  double distanceTo(const KdGePoint3d& p) const { return (*this - p).length(); }
  /// True when the two points are at most `tol.equalPoint` apart.
  bool isEqualTo(const KdGePoint3d& p, const KdGeTol& tol = KdGeTol::global()) const {
    return distanceTo(p) <= tol.equalPoint;
  }
};

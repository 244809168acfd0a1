#pragma once

// Comparisons with a tolerance. Whether a test is relative or absolute, strict or not, is part of each function's meaning:
// what counts as "on a vertex" or "parallel" hangs on it.

/// True when -tol <= v <= tol.
bool IMgxadIsZero(double v, double tol);

/// Relative comparison with `b` as the reference: |a / b - 1| <= tol, and where |b| <= tol, |a| <= tol. Not symmetric.
bool IMgxadRealEqual(double a, double b, double tol);

/// The relative comparison of all three coordinates of two points with `q` as the reference. Unlike IMgxadRealEqual(), a
/// coordinate whose relative difference equals the tolerance is different.
bool IMgxadPointEqual(const double* p, const double* q, double tol);

/// 1 when IMgxadPointEqual(p, q, 1e-10), else 0.
int gx_pt_equal(const double* p, const double* q);

/// Absolute comparison: |a - b| <= tol, and where |b| <= tol, |a| <= tol.
bool mlineRealEqual(double a, double b, double tol);

/// True when `x` lies between the bounds, given in either order, or equals one of them by mlineRealEqual().
bool mlineRealBetween(double x, double a, double b, double tol);

/// Compares two angles in radians, each reduced to a turn, by mlineRealEqual(). Two exact zeros are equal whatever `tol` is.
/// There is no test across the full turn: 0 and an angle just below 2 pi differ, and -2 pi reduces to 2 pi while 2 pi
/// reduces to 0.
bool mlineAngleEqual(double a, double b, double tol);

class KvMath {
 public:
  /// True when |a - b| <= tol.
  static bool isEqual(double a, double b, double tol);
};

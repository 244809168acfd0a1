#pragma once

// Points and vectors as arrays of three doubles x, y, z, with distances, angles and projections.

/// A point of three coordinates, as the operand of Determinant().
class C3Point {
 public:
  C3Point(double x, double y, double z) : m_x(x), m_y(y), m_z(z) {}
  explicit C3Point(const double* point) : C3Point(point[0], point[1], point[2]) {}

  double X() const { return m_x; }
  double Y() const { return m_y; }
  double Z() const { return m_z; }

  C3Point& operator-=(const C3Point& other);

 private:
  double m_x, m_y, m_z;
};

/// The normal of a plane: a copy of the point given, or (0, 0, 1) for null.
class CNormal : public C3Point {
 public:
  explicit CNormal(const C3Point* normal);
};

/// out = a x b. `out` may be the same array as `a` or `b`.
void gx_crossproduct(const double* a, const double* b, double* out);

/// (a x b) . n with n = CNormal(normal). Positive when b lies counter-clockwise of a, seen from the normal's side.
double Determinant(const C3Point& a, const C3Point& b, const C3Point* normal);

/// Distance of two points in space; 0.0 when either is null.
double vexengine_distance(const double* p, const double* q);

/// Angle of the direction from -> to in the plan (z does not count), in radians, 0 <= angle < 2 pi.
/// 0.0 when either is null, and when x and y each differ by at most 1e-10.
double vexengine_angle(const double* from, const double* to);

/// Projects `p` onto the endless line through `a` and `b`.
/// @param[out] dist distance of p from the line; may be null
/// @param[out] foot the projection; may be null
/// @return 1 when the foot lies between a and b (ends included), 0 when outside. -1 when a and b are at most 1e-11 apart:
///   the distance is that to a and the foot is a. -2 when p, a or b is null: the distance is 0.0 and the foot the origin
short gx_ptlndist(const double* p, const double* a, const double* b, double* dist, double* foot);

/// True where gx_ptlndist() is sure to place the foot of `p` beyond an end of the segment a-b, rounding included: farther
/// beyond than the segment is long. For searches that pass over most segments; costs less than the foot.
bool isFootFarBeyond(const double* p, const double* a, const double* b);

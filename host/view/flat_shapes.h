#pragma once

#include <cmath>

namespace torva::view {

/// What a view shows of lines and arcs: shapes in its plane, measured from a point of reference, which is the origin.

struct Point2 {
  double x = 0, y = 0;

  Point2 operator+(const Point2& p) const { return {x + p.x, y + p.y}; }
  Point2 operator-(const Point2& p) const { return {x - p.x, y - p.y}; }
  Point2 operator*(double factor) const { return {x * factor, y * factor}; }
  double length() const { return std::hypot(x, y); }
};

double dot(const Point2& a, const Point2& b);
double cross(const Point2& a, const Point2& b);

/// Where on a segment (0 at `a`, 1 at `b`) the origin is nearest; 0 for a segment without length.
double nearestShare(const Point2& a, const Point2& b);
/// Distance of the origin from a segment.
double segmentDistance(const Point2& a, const Point2& b);
/// Whether a segment, or a point, has part in the rectangle about the origin whose half width and height `half` holds; the
/// border belongs to it.
bool segmentMeets(const Point2& a, const Point2& b, const Point2& half);
bool isWithin(const Point2& p, const Point2& half);

/// An elliptical arc, see draw::Arc. Its axes need not be at right angles and may be of no length.
struct Arc2 {
  Point2 center, xAxis, yAxis;
  double startRad = 0, sweepRad = 0;

  Point2 at(double angleRad) const;
  /// Whether the arc passes an angle of its ellipse.
  bool holds(double angleRad) const;
  /// The angle itself when the arc holds it, else the one of the nearer end.
  double clamped(double angleRad) const;
  bool isCircle() const;
  /// Whether any of it lies in a rectangle, see segmentMeets().
  bool meets(const Point2& half) const;
  /// The angle of the arc's point that is nearest to the origin; of an ellipse found by sampling.
  double nearestRad() const;
  /// Distance of the origin from the arc.
  double distance() const;

 private:
  bool crosses(double a, double b, double target, const Point2& half) const;
  double nearestOfEllipseRad() const;
};

}  // namespace torva::view

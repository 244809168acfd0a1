#include "view/hit_test.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace torva::view {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTurn = 2 * std::numbers::pi;
/// Axes of an ellipse that differ by less than this share make a circle.
constexpr double kCircleTolerance = 1e-12;
/// What lies beyond the border of a window by this share of its coordinates counts as within: it is rounding.
constexpr double kBorderTolerance = 1e-12;

/// In the plane of the view, from the middle of the square or window.
struct Point2 {
  double x = 0, y = 0;

  Point2 operator-(const Point2& p) const { return {x - p.x, y - p.y}; }
  double length() const { return std::hypot(x, y); }
};

double dot(const Point2& a, const Point2& b) {
  return a.x * b.x + a.y * b.y;
}
double cross(const Point2& a, const Point2& b) {
  return a.x * b.y - a.y * b.x;
}

/// Distance of the origin from a segment.
double segmentDistance(const Point2& a, const Point2& b) {
  const Point2 along = b - a;
  const double squared = dot(along, along), share = -dot(a, along);
  if (share <= 0 || squared == 0) return a.length();
  if (share >= squared) return b.length();
  return std::abs(cross(a, along)) / std::sqrt(squared);
}

/// Narrows the part [from, to] of a segment to where one coordinate is at most `half`; false when it is nowhere.
bool clip(double start, double step, double half, double& from, double& to) {
  if (step == 0) return std::abs(start) <= half;
  const double a = (-half - start) / step, b = (half - start) / step;
  from = std::max(from, std::min(a, b));
  to = std::min(to, std::max(a, b));
  return from <= to;
}

/// `half` holds half the width and height of the square or window.
bool segmentMeets(const Point2& a, const Point2& b, const Point2& half) {
  double from = 0, to = 1;
  return clip(a.x, b.x - a.x, half.x, from, to) && clip(a.y, b.y - a.y, half.y, from, to);
}

bool isWithin(const Point2& p, const Point2& half) {
  return std::abs(p.x) <= half.x && std::abs(p.y) <= half.y;
}

/// An elliptical arc seen in the view.
struct Arc2 {
  Point2 center, xAxis, yAxis;
  double startRad, sweepRad;

  Point2 at(double angle) const {
    const double c = std::cos(angle), s = std::sin(angle);
    return {center.x + xAxis.x * c + yAxis.x * s, center.y + xAxis.y * c + yAxis.y * s};
  }

  bool holds(double angle) const {
    const double offset = angle - std::min(startRad, startRad + sweepRad);
    return offset - kTurn * std::floor(offset / kTurn) <= std::abs(sweepRad);
  }

  bool isCircle() const {
    const double x = dot(xAxis, xAxis), y = dot(yAxis, yAxis);
    return std::abs(x - y) <= kCircleTolerance * x && std::abs(dot(xAxis, yAxis)) <= kCircleTolerance * x;
  }

  bool meets(const Point2& half) const {
    if (isWithin(at(startRad), half) || isWithin(at(startRad + sweepRad), half)) return true;
    for (const double side : {-1.0, 1.0}) {
      if (crosses(xAxis.x, yAxis.x, side * half.x - center.x, half) ||
          crosses(xAxis.y, yAxis.y, side * half.y - center.y, half))
        return true;
    }
    return false;
  }

  double distance() const {
    const double ends = std::min(at(startRad).length(), at(startRad + sweepRad).length());
    return std::min(ends, isCircle() ? circleDistance() : ellipseDistance());
  }

 private:
  /// Whether the arc meets one side: solves a cos t + b sin t = target.
  bool crosses(double a, double b, double target, const Point2& half) const {
    const double size = std::hypot(a, b);
    if (size < std::abs(target) || size == 0) return false;
    const double middle = std::atan2(b, a), spread = std::acos(target / size);
    const Point2 allowed{half.x * (1 + kBorderTolerance), half.y * (1 + kBorderTolerance)};
    return (holds(middle + spread) && isWithin(at(middle + spread), allowed)) ||
           (holds(middle - spread) && isWithin(at(middle - spread), allowed));
  }

  double circleDistance() const {
    const double angle = std::atan2(-dot(center, yAxis), -dot(center, xAxis));
    return holds(angle) ? std::abs(center.length() - xAxis.length()) : kInfinity;
  }

  double ellipseDistance() const {
    constexpr int kSamples = 128, kRefinements = 60;
    int best = 0;
    double least = kInfinity;
    for (int i = 0; i <= kSamples; ++i) {
      const double distance = at(startRad + sweepRad * i / kSamples).length();
      if (distance < least) least = distance, best = i;
    }
    double from = startRad + sweepRad * std::max(best - 1, 0) / kSamples;
    double to = startRad + sweepRad * std::min(best + 1, kSamples) / kSamples;
    for (int i = 0; i < kRefinements; ++i) {
      const double third = (to - from) / 3;
      if (at(from + third).length() < at(to - third).length()) {
        to -= third;
      } else {
        from += third;
      }
    }
    return std::min(least, at((from + to) / 2).length());
  }
};

class HitTest {
 public:
  HitTest(const View& view, const KdGePoint3d& middleDcs, const Point2& half)
      : m_view(view), m_middleDcs(middleDcs), m_half(half) {}

  void operator()(const draw::Polyline& polyline) {
    const Point2 first = seen(polyline.points.front());
    Point2 from = first;
    for (std::size_t i = 1; i < polyline.points.size(); ++i) {
      const Point2 to = seen(polyline.points[i]);
      addSegment(from, to);
      from = to;
    }
    if (polyline.isClosed || polyline.points.size() == 1) addSegment(from, first);
  }

  void operator()(const draw::Arc& arc) {
    const Arc2 flat{seen(arc.center), direction(arc.xAxis), direction(arc.yAxis), arc.startRad, arc.sweepRad};
    if (!m_isMet) m_isMet = flat.meets(m_half);
    m_distance = std::min(m_distance, flat.distance());
  }

  void operator()(const draw::Fill& fill) {
    bool isInside = false;
    for (const auto& loop : fill.loops) {
      const std::vector<Point2> points = seen(loop);
      isInside = isInside != holdsOrigin(points);
      addPath(points, true);
    }
    if (isInside) m_isMet = true, m_distance = 0;
  }

  void operator()(const draw::Text& text) {
    const std::vector<Point2> corners = seen(draw::textCorners(text));
    HitTest rectangle(m_view, m_middleDcs, m_half);
    rectangle.addPath(corners, true);
    m_isMet = m_isMet || rectangle.m_isMet || holdsOrigin(corners);
    const KdGeVector3d along = text.xAxis * draw::nominalTextWidth(text.text);
    for (const double height : {0.0, 0.5, 1.0}) {
      const KdGePoint3d start = text.origin + text.yAxis * height;
      m_distance = std::min(m_distance, segmentDistance(seen(start), seen(start + along)));
    }
  }

  std::optional<double> result() const { return m_isMet ? std::optional(m_distance) : std::nullopt; }

 private:
  Point2 direction(const KdGeVector3d& v) const {
    const KdGePoint3d origin = m_view.toDisplay({}), tip = m_view.toDisplay(KdGePoint3d{} + v);
    return {tip.x - origin.x, tip.y - origin.y};
  }

  Point2 seen(const KdGePoint3d& world) const {
    const KdGePoint3d p = m_view.toDisplay(world);
    return {p.x - m_middleDcs.x, p.y - m_middleDcs.y};
  }

  std::vector<Point2> seen(const std::vector<KdGePoint3d>& points) const {
    std::vector<Point2> result;
    result.reserve(points.size());
    for (const KdGePoint3d& p : points) result.push_back(seen(p));
    return result;
  }

  void addPath(const std::vector<Point2>& points, bool isClosed) {
    for (std::size_t i = 0; i + 1 < points.size(); ++i) addSegment(points[i], points[i + 1]);
    if (isClosed || points.size() == 1) addSegment(points.back(), points.front());
  }

  void addSegment(const Point2& a, const Point2& b) {
    if (!m_isMet) m_isMet = segmentMeets(a, b, m_half);
    m_distance = std::min(m_distance, segmentDistance(a, b));
  }

  static bool holdsOrigin(const std::vector<Point2>& loop) {
    bool isInside = false;
    for (std::size_t i = 0; i < loop.size(); ++i) {
      const Point2 &a = loop[i], &b = loop[(i + 1) % loop.size()];
      if ((a.y > 0) == (b.y > 0)) continue;
      if ((a.x - a.y * ((b.x - a.x) / (b.y - a.y)) > 0)) isInside = !isInside;
    }
    return isInside;
  }

  const View& m_view;
  const KdGePoint3d m_middleDcs;
  const Point2 m_half;
  bool m_isMet = false;
  double m_distance = kInfinity;
};

/// A shape as the view shows it.
struct Shown {
  const View& view;

  draw::Shape operator()(draw::Polyline polyline) const {
    show(polyline.points);
    return polyline;
  }
  draw::Shape operator()(const draw::Arc& arc) const {
    return draw::Arc{view.toDisplay(arc.center), direction(arc.xAxis), direction(arc.yAxis), arc.startRad, arc.sweepRad};
  }
  draw::Shape operator()(draw::Fill fill) const {
    for (auto& loop : fill.loops) show(loop);
    return fill;
  }
  draw::Shape operator()(const draw::Text& text) const { return (*this)(draw::Polyline{draw::textCorners(text)}); }

 private:
  void show(std::vector<KdGePoint3d>& points) const {
    for (KdGePoint3d& point : points) point = view.toDisplay(point);
  }
  KdGeVector3d direction(const KdGeVector3d& v) const { return view.toDisplay(KdGePoint3d() + v) - view.toDisplay({}); }
};

bool holds(const PickWindow& window, const geom::Box3& boxDcs) {
  const auto isAtMost = [](double a, double b) { return a <= b + kBorderTolerance * std::max(std::abs(a), std::abs(b)); };
  return isAtMost(window.minDcs.x, boxDcs.min.x) && isAtMost(boxDcs.max.x, window.maxDcs.x) &&
         isAtMost(window.minDcs.y, boxDcs.min.y) && isAtMost(boxDcs.max.y, window.maxDcs.y);
}

}  // namespace

std::optional<double> distanceIfMet(const draw::DisplayList& list, const View& view, const PickSquare& square) {
  HitTest test(view, square.centerDcs, {square.halfSide, square.halfSide});
  for (const draw::Primitive& primitive : list.primitives) std::visit(test, primitive.shape);
  return test.result();
}

bool liesIn(const draw::DisplayList& list, const View& view, const PickWindow& window, WindowRule rule) {
  if (rule == WindowRule::whole) {
    return !list.primitives.empty() &&
           std::all_of(list.primitives.begin(), list.primitives.end(), [&](const draw::Primitive& primitive) {
             return holds(window, draw::extents(std::visit(Shown{view}, primitive.shape)));
           });
  }
  const KdGeVector3d half = (window.maxDcs - window.minDcs) * 0.5;
  HitTest test(view, window.minDcs + half, {half.x, half.y});
  for (const draw::Primitive& primitive : list.primitives) std::visit(test, primitive.shape);
  return test.result().has_value();
}

}  // namespace torva::view

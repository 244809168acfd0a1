#include "view/hit_test.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "view/flat_shapes.h"

namespace torva::view {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
/// What lies beyond the border of a window by this share of its coordinates counts as within: it is rounding.
constexpr double kBorderTolerance = 1e-12;

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

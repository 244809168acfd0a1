#include "view/snap.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <variant>
#include <vector>

#include "view/flat_shapes.h"

namespace torva::view {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
/// What spans a whole turn but for this angle has no ends.
constexpr double kWholeTurnTolerance = 1e-9;
/// Axes of an ellipse in space that differ by less than this share make a circle.
constexpr double kCircleTolerance = 1e-12;
/// The sine of the angle at which pieces count as parallel.
constexpr double kParallelTolerance = 1e-12;
/// How near pieces come where they meet, per drawing unit of the largest coordinate.
constexpr double kMeetTolerance = 1e-9;
/// Points that are seen nearer to each other than this are at the same place.
constexpr double kSamePlacePx = 1e-6;

constexpr std::array kKindsInOrder = {SnapKind::end,    SnapKind::intersection,  SnapKind::centre,
                                      SnapKind::middle, SnapKind::perpendicular, SnapKind::nearest};

std::ptrdiff_t rankOf(SnapKind kind) {
  return std::ranges::find(kKindsInOrder, kind) - kKindsInOrder.begin();
}

/// A straight piece in the world, and as seen from the cursor.
struct StraightPiece {
  KdGePoint3d from, to;
  Point2 seenFrom, seenTo;

  KdGePoint3d at(double share) const { return share == 1 ? to : from + (to - from) * share; }
};

struct BentPiece {
  draw::Arc arc;
  Arc2 seen;
};

using Piece = std::variant<StraightPiece, BentPiece>;

/// Calls visit(x) for places where a function of an angle changes its sign.
template <class Function, class Visit>
void forEachRoot(double fromRad, double sweepRad, const Function& function, const Visit& visit) {
  constexpr int kSamples = 128, kHalvings = 60;
  double before = fromRad, valueBefore = function(before);
  for (int i = 1; i <= kSamples; ++i) {
    const double after = fromRad + sweepRad * i / kSamples, valueAfter = function(after);
    double low = before, high = after;
    if ((valueBefore < 0) != (valueAfter < 0)) {
      for (int k = 0; k < kHalvings; ++k) {
        const double middle = (low + high) / 2;
        ((function(middle) < 0) == (valueBefore < 0) ? low : high) = middle;
      }
      visit((low + high) / 2);
    }
    before = after, valueBefore = valueAfter;
  }
}

bool isCircle(const draw::Arc& arc) {
  const double x = arc.xAxis.dotProduct(arc.xAxis), y = arc.yAxis.dotProduct(arc.yAxis);
  return std::abs(x - y) <= kCircleTolerance * x && std::abs(arc.xAxis.dotProduct(arc.yAxis)) <= kCircleTolerance * x;
}

/// The angles at which the way from a point meets the arc's ellipse at right angles.
template <class Visit>
void forEachPerpendicular(const draw::Arc& arc, const KdGePoint3d& base, const Visit& visit) {
  if (isCircle(arc)) {
    const double x = (base - arc.center).dotProduct(arc.xAxis), y = (base - arc.center).dotProduct(arc.yAxis);
    const double squared = arc.xAxis.dotProduct(arc.xAxis);
    if (std::hypot(x, y) <= kCircleTolerance * squared) return;
    visit(std::atan2(y, x));
    visit(std::atan2(-y, -x));
    return;
  }
  const auto slope = [&](double angle) {
    const KdGeVector3d along = arc.yAxis * std::cos(angle) - arc.xAxis * std::sin(angle);
    return (arc.at(angle) - base).dotProduct(along);
  };
  forEachRoot(arc.startRad, arc.sweepRad, slope, visit);
}

/// The coordinates of points by the axes of an arc, in which its ellipse is the unit circle.
class UnitCircle {
 public:
  explicit UnitCircle(const Arc2& arc) : m_arc(arc), m_area(cross(arc.xAxis, arc.yAxis)) {}

  /// False for an ellipse that is seen as a line.
  bool isUsable() const { return std::abs(m_area) > kParallelTolerance * m_arc.xAxis.length() * m_arc.yAxis.length(); }
  Point2 direction(const Point2& v) const { return {cross(v, m_arc.yAxis) / m_area, cross(m_arc.xAxis, v) / m_area}; }
  Point2 place(const Point2& p) const { return direction(p - m_arc.center); }
  double angleOf(const Point2& p) const {
    const Point2 unit = place(p);
    return std::atan2(unit.y, unit.x);
  }

 private:
  const Arc2& m_arc;
  double m_area;
};

/// Finds the points where pieces meet. A place is first found as it is seen, then tried in space.
class Crossing {
 public:
  explicit Crossing(double tolerance) : m_tolerance(tolerance) {}

  template <class Visit>
  void find(const Piece& a, const Piece& b, const Visit& visit) const {
    std::visit([&](const auto& first, const auto& second) { between(first, second, visit); }, a, b);
  }

 private:
  template <class Visit>
  void check(const KdGePoint3d& a, const KdGePoint3d& b, const Visit& visit) const {
    if (a.distanceTo(b) <= m_tolerance) visit(a);
  }

  template <class Visit>
  void between(const StraightPiece& a, const StraightPiece& b, const Visit& visit) const {
    const Point2 alongA = a.seenTo - a.seenFrom, alongB = b.seenTo - b.seenFrom;
    const double area = cross(alongA, alongB);
    if (std::abs(area) <= kParallelTolerance * alongA.length() * alongB.length()) return;
    const Point2 between = b.seenFrom - a.seenFrom;
    const auto onPiece = [&](double share) { return std::clamp(share, 0.0, 1.0); };
    check(a.at(onPiece(cross(between, alongB) / area)), b.at(onPiece(cross(between, alongA) / area)), visit);
  }

  template <class Visit>
  void between(const BentPiece& a, const StraightPiece& b, const Visit& visit) const {
    between(b, a, visit);
  }

  template <class Visit>
  void between(const StraightPiece& a, const BentPiece& b, const Visit& visit) const {
    const UnitCircle circle(b.seen);
    if (!circle.isUsable()) return;
    const Point2 start = circle.place(a.seenFrom), along = circle.direction(a.seenTo - a.seenFrom);
    const double squared = dot(along, along);
    if (squared == 0) return;
    const double middle = -dot(start, along) / squared;
    const double half = std::sqrt(std::max(0.0, middle * middle - (dot(start, start) - 1) / squared));
    for (const double share : {middle - half, middle + half}) {
      const double onPiece = std::clamp(share, 0.0, 1.0);
      const Point2 unit = start + along * onPiece;
      check(a.at(onPiece), b.arc.at(b.seen.clamped(std::atan2(unit.y, unit.x))), visit);
    }
  }

  template <class Visit>
  void between(const BentPiece& a, const BentPiece& b, const Visit& visit) const {
    const UnitCircle circleA(a.seen), circleB(b.seen);
    if (!circleA.isUsable() || !circleB.isUsable()) return;
    if (a.seen.isCircle() && b.seen.isCircle()) return betweenCircles(a, b, visit);
    const auto outside = [&](double angle) {
      const Point2 unit = circleA.place(b.seen.at(angle));
      return dot(unit, unit) - 1;
    };
    forEachRoot(b.seen.startRad, b.seen.sweepRad, outside, [&](double angle) {
      check(a.arc.at(a.seen.clamped(circleA.angleOf(b.seen.at(angle)))), b.arc.at(angle), visit);
    });
  }

  template <class Visit>
  void betweenCircles(const BentPiece& a, const BentPiece& b, const Visit& visit) const {
    const Point2 way = b.seen.center - a.seen.center;
    const double squared = dot(way, way);
    if (squared == 0) return;
    const double radiusA = a.seen.xAxis.length(), radiusB = b.seen.xAxis.length();
    const double share = ((radiusA + radiusB) * (radiusA - radiusB) / squared + 1) / 2;
    const double rise = std::sqrt(std::max(0.0, radiusA * radiusA / squared - share * share));
    for (const double side : {-rise, rise}) {
      const Point2 place = a.seen.center + way * share + Point2{-way.y, way.x} * side;
      check(a.arc.at(a.seen.clamped(UnitCircle(a.seen).angleOf(place))),
            b.arc.at(b.seen.clamped(UnitCircle(b.seen).angleOf(place))), visit);
    }
  }

  double m_tolerance;
};

class SnapSearch {
 public:
  SnapSearch(const View& view, const SnapRequest& request, int modes)
      : m_view(view),
        m_request(request),
        m_modes(modes),
        m_unitsPerPixel(view.unitsPerPixel(1.0)),
        m_cursorDcs(view.toDisplay(request.cursorWcs)),
        m_half{request.aperturePx * m_unitsPerPixel, request.aperturePx * m_unitsPerPixel} {}

  void operator()(const draw::Polyline& polyline) {
    const std::vector<KdGePoint3d>& points = polyline.points;
    if (points.size() == 1 || !polyline.isCurve) {
      for (const KdGePoint3d& point : points) offer(SnapKind::end, point);
    } else {
      offer(SnapKind::end, points.front());
      offer(SnapKind::end, points.back());
    }
    const std::size_t count = points.size() == 1 || polyline.isClosed ? points.size() : points.size() - 1;
    Point2 from = seen(points.front());
    for (std::size_t i = 0; i < count; ++i) {
      const KdGePoint3d& next = points[(i + 1) % points.size()];
      const Point2 to = seen(next);
      if (segmentMeets(from, to, m_half)) addStraight({points[i], next, from, to}, polyline.isCurve);
      from = to;
    }
  }

  void operator()(const draw::Arc& arc) {
    const Arc2 flat{seen(arc.center), direction(arc.xAxis), direction(arc.yAxis), arc.startRad, arc.sweepRad};
    const bool isMet = flat.meets(m_half);
    const bool isWhole = std::abs(arc.sweepRad) >= kTurn - kWholeTurnTolerance;
    if (isMet || (isWhole && isWithin(flat.center, m_half))) offerAnywhere(SnapKind::centre, arc.center);
    if (!isMet) return;
    if (!isWhole) {
      offer(SnapKind::end, arc.at(arc.startRad));
      offer(SnapKind::end, arc.at(arc.startRad + arc.sweepRad));
      offer(SnapKind::middle, arc.at(arc.startRad + arc.sweepRad / 2));
    }
    if (isWanted(SnapKind::nearest)) offerAnywhere(SnapKind::nearest, arc.at(flat.nearestRad()));
    if (isWanted(SnapKind::perpendicular)) {
      forEachPerpendicular(arc, *m_request.baseWcs, [&](double angle) {
        if (flat.holds(angle)) offerPerpendicular(arc.at(angle));
      });
    }
    keep(BentPiece{arc, flat});
  }

  void operator()(const draw::Fill&) {}
  void operator()(const draw::Text&) {}

  void intersect() {
    const Crossing crossing(meetTolerance());
    const std::size_t first = m_pieces.size() - std::min(m_pieces.size(), kMostCrossedPieces);
    for (std::size_t i = first; i < m_pieces.size(); ++i) {
      for (std::size_t k = first; k < i; ++k) {
        crossing.find(m_pieces[k], m_pieces[i], [&](const KdGePoint3d& point) { offer(SnapKind::intersection, point); });
      }
    }
  }

  const std::optional<Snap>& best() const { return m_best; }

 private:
  bool isWanted(SnapKind kind) const { return m_modes & static_cast<int>(kind); }

  void addStraight(const StraightPiece& piece, bool isChord) {
    const KdGeVector3d along = piece.to - piece.from;
    const double squared = along.dotProduct(along);
    if (!isChord && squared > 0) offer(SnapKind::middle, piece.at(0.5));
    if (isWanted(SnapKind::nearest)) {
      offerAnywhere(SnapKind::nearest, piece.at(nearestShare(piece.seenFrom, piece.seenTo)));
    }
    if (isWanted(SnapKind::perpendicular) && squared > 0) {
      const double share = (*m_request.baseWcs - piece.from).dotProduct(along) / squared;
      if (share >= 0 && share <= 1) offerPerpendicular(piece.at(share));
    }
    keep(piece);
  }

  void keep(Piece piece) {
    if (isWanted(SnapKind::intersection)) m_pieces.push_back(std::move(piece));
  }

  void offerPerpendicular(const KdGePoint3d& point) {
    if (point.distanceTo(*m_request.baseWcs) > meetTolerance()) offerAnywhere(SnapKind::perpendicular, point);
  }

  /// Offers a point that counts only in the aperture.
  void offer(SnapKind kind, const KdGePoint3d& point) {
    if (isWanted(kind) && isWithin(seen(point), m_half)) offerAnywhere(kind, point);
  }

  void offerAnywhere(SnapKind kind, const KdGePoint3d& point) {
    if (!isWanted(kind)) return;
    const Snap snap{kind, point, seen(point).length() / m_unitsPerPixel};
    if (!m_best || isBetter(snap, *m_best)) m_best = snap;
  }

  static bool isBetter(const Snap& a, const Snap& b) {
    if ((a.kind == SnapKind::nearest) != (b.kind == SnapKind::nearest)) return b.kind == SnapKind::nearest;
    if (std::abs(a.distancePx - b.distancePx) > kSamePlacePx) return a.distancePx < b.distancePx;
    return rankOf(a.kind) < rankOf(b.kind);
  }

  double meetTolerance() const {
    const KdGePoint3d& p = m_request.cursorWcs;
    return kMeetTolerance * std::max({1.0, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
  }

  Point2 seen(const KdGePoint3d& world) const {
    const KdGePoint3d p = m_view.toDisplay(world);
    return {p.x - m_cursorDcs.x, p.y - m_cursorDcs.y};
  }

  Point2 direction(const KdGeVector3d& v) const {
    const KdGePoint3d origin = m_view.toDisplay({}), tip = m_view.toDisplay(KdGePoint3d{} + v);
    return {tip.x - origin.x, tip.y - origin.y};
  }

  const View& m_view;
  const SnapRequest& m_request;
  const int m_modes;
  const double m_unitsPerPixel;
  const KdGePoint3d m_cursorDcs;
  const Point2 m_half;
  std::vector<Piece> m_pieces;
  std::optional<Snap> m_best;
};

int activeModes(const SnapRequest& request) {
  if (request.modes & kSnapsOff) return 0;
  return request.baseWcs ? request.modes : request.modes & ~static_cast<int>(SnapKind::perpendicular);
}

/// The entities to look at: all near the cursor, or the last of too many, with which `modes` shrinks.
std::vector<dxf::RecordId> entitiesNear(Picker& picker, const View& view, const SnapRequest& request, int& modes) {
  const KdGePoint3d at = view.toDisplay(request.cursorWcs);
  const double halfSide = request.aperturePx * view.unitsPerPixel(1.0);
  const KdGeVector3d half{halfSide, halfSide, 0};
  std::vector<dxf::RecordId> entities = picker.candidates({at - half, at + half}, view);
  const dxf::DrawingFile& file = picker.database().file();
  std::erase_if(entities, [&](dxf::RecordId entity) { return file.type(entity) == dxf::RecordType::hatch; });
  if (entities.size() > kMostSnapEntities) {
    entities.erase(entities.begin(), entities.end() - static_cast<std::ptrdiff_t>(kMostSnapEntities));
    modes &= static_cast<int>(SnapKind::nearest);
  }
  return entities;
}

}  // namespace

std::optional<Snap> findSnap(Picker& picker, const View& view, const SnapRequest& request) {
  int modes = activeModes(request);
  if (modes == 0) return std::nullopt;
  const std::vector<dxf::RecordId> entities = entitiesNear(picker, view, request, modes);
  if (modes == 0) return std::nullopt;
  SnapSearch search(view, request, modes);
  draw::DisplayList list;
  for (const dxf::RecordId entity : entities) {
    list.clear();
    picker.drawer().drawShapes(entity, list);
    for (const draw::Primitive& primitive : list.primitives) std::visit(search, primitive.shape);
  }
  search.intersect();
  return search.best();
}

}  // namespace torva::view

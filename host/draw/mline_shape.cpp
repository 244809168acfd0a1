#include "draw/mline_shape.h"

#include <algorithm>
#include <numbers>
#include <optional>
#include <span>
#include <utility>

namespace torva::draw {
namespace {

using db::MlineVertex;

constexpr double kHalfTurn = std::numbers::pi, kQuarterTurn = std::numbers::pi / 2;
/// Chords of a filled round cap stray this share of its radius from the arc.
constexpr double kFillTolerance = 1e-3;

/// The point of an element on the miter of a vertex; nothing when the vertex has no such element.
std::optional<KdGePoint3d> miterPoint(const MlineVertex& vertex, std::size_t element) {
  if (element >= vertex.elements.size() || vertex.elements[element].elementParameters.empty()) return {};
  return vertex.position + vertex.miter * vertex.elements[element].elementParameters.front();
}

/// Elements that have a point at the vertex, from the largest to the smallest distance along the miter.
std::vector<std::size_t> elementsAcross(const MlineVertex& vertex) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < vertex.elements.size(); ++i) {
    if (!vertex.elements[i].elementParameters.empty()) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return vertex.elements[a].elementParameters.front() > vertex.elements[b].elementParameters.front();
  });
  return order;
}

/// One element's line along all segments, broken into the polylines that are drawn.
class ElementTracer {
 public:
  ElementTracer(Sketch& sketch, std::uint32_t appearance) : m_sketch(sketch), m_appearance(appearance) {}

  void trace(const db::MlineData& mline, std::size_t element) {
    const std::size_t count = mline.vertices.size();
    const std::size_t segments = mline.isClosed ? count : count - 1;
    for (std::size_t i = 0; i < segments; ++i) {
      traceSegment(mline.vertices[i], mline.vertices[(i + 1) % count], element);
      if (i == 0) m_beginsAtFirst = m_startsAtVertex;
    }
    const bool isWholeRing = mline.isClosed && m_pieces == 0 && m_beginsAtFirst && m_reachesVertex;
    if (isWholeRing) m_points.pop_back();
    flush(isWholeRing);
  }

 private:
  void traceSegment(const MlineVertex& from, const MlineVertex& to, std::size_t element) {
    bool continues = std::exchange(m_reachesVertex, false);
    const auto base = miterPoint(from, element);
    if (!base) return;
    const auto next = miterPoint(to, element);
    const std::span<const double> values = from.elements[element].elementParameters;
    for (std::size_t k = 1; k < values.size(); k += 2) {
      const bool runsOn = k + 1 == values.size();
      if (runsOn && !next) return;
      if (!continues || values[k] != 0) begin(values[k] == 0 ? *base : *base + from.axis * values[k], values[k] == 0);
      m_points.push_back(runsOn ? *next : *base + from.axis * values[k + 1]);
      m_reachesVertex = runsOn;
      continues = false;
    }
  }

  void begin(const KdGePoint3d& start, bool atVertex) {
    flush(false);
    m_points.push_back(start);
    m_startsAtVertex = atVertex;
  }

  void flush(bool isClosed) {
    if (m_points.empty()) return;
    m_sketch.polyline(std::exchange(m_points, {}), isClosed, m_appearance);
    ++m_pieces;
  }

  Sketch& m_sketch;
  std::uint32_t m_appearance;
  std::vector<KdGePoint3d> m_points;
  bool m_startsAtVertex = false, m_reachesVertex = false;
  bool m_beginsAtFirst = false;
  int m_pieces = 0;
};

class MlinePainter {
 public:
  MlinePainter(const db::MlineData& mline, const db::MlineStyleData& style, const MlineAppearances& appearances,
               Sketch& sketch)
      : m_mline(mline), m_style(style), m_appearances(appearances), m_sketch(sketch) {}

  void paint() {
    const auto& vertices = m_mline.vertices;
    if (vertices.empty()) return;
    if (m_style.has(db::kStyleFilled)) fillSegments();
    if (m_style.has(db::kStyleShowMiters)) drawJoints();
    if (!m_mline.isClosed) drawCaps();
    std::size_t elements = 0;
    for (const MlineVertex& vertex : vertices) elements = std::max(elements, vertex.elements.size());
    for (std::size_t e = 0; e < elements; ++e) ElementTracer(m_sketch, m_appearances.ofElement(e)).trace(m_mline, e);
  }

 private:
  struct Cap {
    bool hasLine, hasInnerArcs, hasOuterArc;
    KdGeVector3d outward;
  };

  std::size_t segmentCount() const { return m_mline.isClosed ? m_mline.vertices.size() : m_mline.vertices.size() - 1; }

  void fillSegments() {
    for (std::size_t i = 0; i < segmentCount(); ++i) {
      fillSegment(m_mline.vertices[i], m_mline.vertices[(i + 1) % m_mline.vertices.size()]);
    }
  }

  void fillSegment(const MlineVertex& from, const MlineVertex& to) {
    const std::vector<std::size_t> order = elementsAcross(from);
    if (order.size() < 2) return;
    const std::size_t left = order.front(), right = order.back();
    const auto nextLeft = miterPoint(to, left), nextRight = miterPoint(to, right);
    if (!nextLeft || !nextRight) return;
    KdGePoint3d leftStart = *miterPoint(from, left), rightStart = *miterPoint(from, right);
    const std::span<const double> leftStops = from.elements[left].areaFillParameters;
    const std::span<const double> rightStops = from.elements[right].areaFillParameters;
    const KdGePoint3d leftBase = leftStart, rightBase = rightStart;
    if (areFillBreaks(leftStops, rightStops)) {
      for (std::size_t k = 0; k < leftStops.size(); k += 2) {
        fillQuad(leftStart, rightStart, leftBase + from.axis * leftStops[k], rightBase + from.axis * rightStops[k]);
        leftStart = leftBase + from.axis * leftStops[k + 1];
        rightStart = rightBase + from.axis * rightStops[k + 1];
      }
    }
    fillQuad(leftStart, rightStart, *nextLeft, *nextRight);
  }

  /// Fill values are taken as breaks of the fill, a stop and a start each, when both edges have as many and in ascending
  /// order; drawings with other lists exist, their segments are filled whole.
  static bool areFillBreaks(std::span<const double> left, std::span<const double> right) {
    return left.size() == right.size() && left.size() % 2 == 0 && std::is_sorted(left.begin(), left.end()) &&
           std::is_sorted(right.begin(), right.end());
  }

  void fillQuad(const KdGePoint3d& a, const KdGePoint3d& b, const KdGePoint3d& nextA, const KdGePoint3d& nextB) {
    m_sketch.fill({{a, nextA, nextB, b}}, m_appearances.fill);
  }

  void drawJoints() {
    const std::size_t count = m_mline.vertices.size();
    const std::size_t first = m_mline.isClosed ? 0 : 1, last = m_mline.isClosed ? count : count - 1;
    for (std::size_t i = first; i < last; ++i) {
      const std::vector<std::size_t> order = elementsAcross(m_mline.vertices[i]);
      if (order.size() >= 2) drawAcross(m_mline.vertices[i], order.front(), order.back());
    }
  }

  void drawCaps() {
    const MlineVertex& first = m_mline.vertices.front();
    const MlineVertex& last = m_mline.vertices.back();
    if (!m_mline.suppressesStartCaps) {
      drawCap(first, {m_style.has(db::kStyleStartSquareCap), m_style.has(db::kStyleStartInnerArcs),
                      m_style.has(db::kStyleStartRoundCap), -first.axis});
    }
    if (!m_mline.suppressesEndCaps) {
      drawCap(last, {m_style.has(db::kStyleEndSquareCap), m_style.has(db::kStyleEndInnerArcs),
                     m_style.has(db::kStyleEndRoundCap), last.axis});
    }
  }

  void drawCap(const MlineVertex& vertex, const Cap& cap) {
    const std::vector<std::size_t> order = elementsAcross(vertex);
    const std::size_t count = order.size();
    if (count < 2) return;
    if (cap.hasOuterArc) drawArc(vertex, order.front(), order.back(), cap.outward, m_style.has(db::kStyleFilled));
    // Elements pair from the outside inward; the middle one of an odd number stays without an arc.
    for (std::size_t i = 1; cap.hasInnerArcs && i < count / 2; ++i) {
      drawArc(vertex, order[i], order[count - 1 - i], cap.outward, false);
    }
    if (cap.hasLine) drawAcross(vertex, order.front(), order.back());
  }

  /// A straight line between two elements, each half in the look of its element.
  void drawAcross(const MlineVertex& vertex, std::size_t a, std::size_t b) {
    const KdGePoint3d from = *miterPoint(vertex, a), to = *miterPoint(vertex, b);
    const std::uint32_t lookA = m_appearances.ofElement(a), lookB = m_appearances.ofElement(b);
    if (lookA == lookB) return m_sketch.line(from, to, lookA);
    const KdGePoint3d middle = from + (to - from) * 0.5;
    m_sketch.line(from, middle, lookA);
    m_sketch.line(middle, to, lookB);
  }

  void drawArc(const MlineVertex& vertex, std::size_t a, std::size_t b, const KdGeVector3d& outward, bool isFilled) {
    const KdGePoint3d from = *miterPoint(vertex, a), to = *miterPoint(vertex, b);
    const KdGePoint3d center = from + (to - from) * 0.5;
    const KdGeVector3d radius = from - center;
    KdGeVector3d bulge = m_mline.normal.normal().crossProduct(radius);
    // With a negative scale the elements lie mirrored; the arc still bulges away from the multiline.
    if (bulge.dotProduct(outward) < 0) bulge = -bulge;
    const std::uint32_t lookA = m_appearances.ofElement(a), lookB = m_appearances.ofElement(b);
    const Arc half{center, radius, bulge, 0, kHalfTurn};
    if (isFilled) m_sketch.fill({flatten(half, radius.length() * kFillTolerance)}, m_appearances.fill);
    if (lookA == lookB) return m_sketch.arc(half, lookA);
    m_sketch.arc({center, radius, bulge, 0, kQuarterTurn}, lookA);
    m_sketch.arc({center, radius, bulge, kQuarterTurn, kQuarterTurn}, lookB);
  }

  const db::MlineData& m_mline;
  const db::MlineStyleData& m_style;
  const MlineAppearances& m_appearances;
  Sketch& m_sketch;
};

}  // namespace

void drawMline(const db::MlineData& mline, const db::MlineStyleData& style, const MlineAppearances& appearances,
               Sketch& sketch) {
  MlinePainter(mline, style, appearances, sketch).paint();
}

double drawnLength(const db::MlineData& mline, std::size_t element) {
  if (mline.vertices.empty()) return 0;
  DisplayList list;
  Sketch sketch(list, geom::Transform());
  ElementTracer(sketch, 0).trace(mline, element);
  double length = 0;
  for (const Primitive& primitive : list.primitives) {
    const auto& [points, isClosed, isCurve] = std::get<Polyline>(primitive.shape);
    for (std::size_t i = 1; i < points.size(); ++i) length += points[i - 1].distanceTo(points[i]);
    if (isClosed) length += points.back().distanceTo(points.front());
  }
  return length;
}

void MlineExtents::endVertex() {
  m_ring.miterLength = m_miter.length();
  if (m_ring.count > 0) {
    // All others lie between these two.
    m_ring.box.add(miterPoint(m_ring.least));
    m_ring.box.add(miterPoint(m_ring.most));
  }
  m_vertexBox.add(m_ring.box);
  m_points.add(m_vertexBox);
  if (!std::exchange(m_hasFirst, true)) m_first = m_ring;
  m_last = m_ring;
}

geom::Box3 MlineExtents::startCap(const db::MlineStyleData& style, const MlineEnds& ends) const {
  const bool hasArc = style.has(db::kStyleStartRoundCap) || style.has(db::kStyleStartInnerArcs);
  return hasArc && ends.canHaveStartCaps ? m_first.withRoundCap() : geom::Box3{};
}

geom::Box3 MlineExtents::endCap(const db::MlineStyleData& style, const MlineEnds& ends) const {
  const bool hasArc = style.has(db::kStyleEndRoundCap) || style.has(db::kStyleEndInnerArcs);
  return hasArc && ends.canHaveEndCaps ? m_last.withRoundCap() : geom::Box3{};
}

geom::Box3 MlineExtents::box(const db::MlineStyleData& style, const MlineEnds& ends) const {
  geom::Box3 box = m_points;
  box.add(startCap(style, ends));
  box.add(endCap(style, ends));
  return box;
}

MlineEnds endsOf(const db::MlineData& mline) {
  return {!mline.isClosed && !mline.suppressesStartCaps, !mline.isClosed && !mline.suppressesEndCaps};
}

geom::Box3 mlineExtents(const db::MlineData& mline, const db::MlineStyleData& style) {
  MlineExtents extents;
  collect(mline, extents);
  return extents.box(style, endsOf(mline));
}

}  // namespace torva::draw

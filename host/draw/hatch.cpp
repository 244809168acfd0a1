#include "draw/hatch.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "draw/curves.h"
#include "draw/polylines.h"
#include "draw/record_values.h"

namespace torva::draw {
namespace {

using Loop = std::vector<KdGePoint3d>;

/// Chords stray this share of the radius from bent edges.
constexpr double kEdgeTolerance = 1e-3;
constexpr double kMostPatternLines = 4'000, kMostDashes = 20'000;

enum class EdgeType { none = 0, line = 1, arc = 2, ellipse = 3, spline = 4 };

/// A family of parallel lines.
struct PatternLine {
  double angleRad = 0;
  KdGePoint3d base;
  KdGeVector3d offset;
  std::vector<double> dashes;
};

struct Hatch {
  bool isSolid = false;
  std::vector<Loop> loops;
  std::vector<PatternLine> pattern;
};

void append(Loop& loop, const Loop& points) {
  const std::size_t skipped = !loop.empty() && !points.empty() && loop.back().distanceTo(points.front()) == 0 ? 1 : 0;
  loop.insert(loop.end(), points.begin() + static_cast<std::ptrdiff_t>(skipped), points.end());
}

Loop flattenBulged(const std::vector<BulgeVertex>& vertices) {
  Loop loop;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    const BulgeVertex& from = vertices[i];
    const BulgeVertex& to = vertices[(i + 1) % vertices.size()];
    if (!isBent(from.bulge)) {
      append(loop, {from.point});
      continue;
    }
    const Arc arc = bulgeArc(from.point, to.point, from.bulge);
    append(loop, flatten(arc, arc.xAxis.length() * kEdgeTolerance));
  }
  return loop;
}

/// One edge of a boundary path while its groups are read.
struct Edge {
  EdgeType type = EdgeType::none;
  KdGePoint3d first;
  KdGeVector3d second;
  double size = 0, startDegrees = 0, endDegrees = 360;
  bool isCounterClockwise = true;
  Spline spline;

  Loop points() const {
    switch (type) {
      case EdgeType::line:
        return {first, KdGePoint3d{} + second};
      case EdgeType::arc:
        return bent({size, 0, 0}, {0, size, 0});
      case EdgeType::ellipse:
        return bent(second, KdGeVector3d{-second.y, second.x, 0} * size);
      case EdgeType::spline:
        return spline.sample();
      case EdgeType::none:
        break;
    }
    return {};
  }

 private:
  Loop bent(const KdGeVector3d& xAxis, const KdGeVector3d& yAxis) const {
    Arc arc = circularArc(first, 1, radians(startDegrees), radians(endDegrees));
    arc.xAxis = xAxis;
    // Clockwise edges measure their angles clockwise from the x axis.
    arc.yAxis = isCounterClockwise ? yAxis : -yAxis;
    return flatten(arc, std::max(xAxis.length(), yAxis.length()) * kEdgeTolerance);
  }
};

/// Reads the groups in their order: the meaning of a code depends on what came before.
class HatchReader {
 public:
  Hatch read(const dxf::Groups& groups) {
    for (const dxf::Group& group : groups) {
      if (group.code == 1001) break;
      readGroup(group);
    }
    endPath();
    return std::move(m_hatch);
  }

 private:
  enum class Part { head, polylinePath, edgePath, pattern };

  void readGroup(const dxf::Group& group) {
    constexpr int kPolylinePath = 2;
    switch (group.code) {
      case 92:
        if (m_part == Part::pattern) return;
        endPath();
        m_part = group.integerOr(0) & kPolylinePath ? Part::polylinePath : Part::edgePath;
        return;
      case 75:
      case 76:
      case 78:
        endPath();
        m_part = Part::pattern;
        return;
      default:
        break;
    }
    switch (m_part) {
      case Part::head:
        return readHead(group);
      case Part::polylinePath:
        return readVertex(group);
      case Part::edgePath:
        return readEdge(group);
      case Part::pattern:
        return readPattern(group);
    }
  }

  void readHead(const dxf::Group& group) {
    if (group.code == 70) m_hatch.isSolid = group.integerOr(0) != 0;
    if (group.code == 30) m_elevation = group.realOr(0);
  }

  void readVertex(const dxf::Group& group) {
    if (group.code == 10) m_vertices.push_back({{group.realOr(0), 0, m_elevation}, 0});
    if (m_vertices.empty()) return;
    if (group.code == 20) m_vertices.back().point.y = group.realOr(0);
    if (group.code == 42) m_vertices.back().bulge = group.realOr(0);
  }

  void readEdge(const dxf::Group& group) {
    if (group.code == 72) {
      endEdge();
      m_edge = Edge{};
      m_edge.type = static_cast<EdgeType>(group.integerOr(0));
      m_edge.first.z = m_edge.second.z = m_elevation;
      if (m_edge.type != EdgeType::line) m_edge.second.z = 0;
      return;
    }
    if (m_edge.type == EdgeType::spline) return readSpline(group);
    switch (group.code) {
      case 10:
        m_edge.first.x = group.realOr(0);
        break;
      case 20:
        m_edge.first.y = group.realOr(0);
        break;
      case 11:
        m_edge.second.x = group.realOr(0);
        break;
      case 21:
        m_edge.second.y = group.realOr(0);
        break;
      case 40:
        m_edge.size = group.realOr(0);
        break;
      case 50:
        m_edge.startDegrees = group.realOr(0);
        break;
      case 51:
        m_edge.endDegrees = group.realOr(360);
        break;
      case 73:
        m_edge.isCounterClockwise = group.integerOr(1) != 0;
        break;
      default:
        break;
    }
  }

  void readSpline(const dxf::Group& group) {
    Spline& spline = m_edge.spline;
    switch (group.code) {
      case 94:
        spline.degree = static_cast<int>(std::clamp<std::int64_t>(group.integerOr(3), 0, 100));
        break;
      case 40:
        spline.knots.push_back(group.realOr(0));
        break;
      case 42:
        spline.weights.push_back(group.realOr(1));
        break;
      case 10:
        spline.controlPoints.push_back({group.realOr(0), 0, m_elevation});
        break;
      case 20:
        if (!spline.controlPoints.empty()) spline.controlPoints.back().y = group.realOr(0);
        break;
      default:
        break;
    }
  }

  void readPattern(const dxf::Group& group) {
    if (group.code == 53) m_hatch.pattern.push_back({radians(group.realOr(0)), {0, 0, m_elevation}, {}, {}});
    if (m_hatch.pattern.empty()) return;
    PatternLine& line = m_hatch.pattern.back();
    switch (group.code) {
      case 43:
        line.base.x = group.realOr(0);
        break;
      case 44:
        line.base.y = group.realOr(0);
        break;
      case 45:
        line.offset.x = group.realOr(0);
        break;
      case 46:
        line.offset.y = group.realOr(0);
        break;
      case 49:
        line.dashes.push_back(group.realOr(0));
        break;
      default:
        break;
    }
  }

  void endEdge() { append(m_loop, std::exchange(m_edge, {}).points()); }

  void endPath() {
    if (!m_vertices.empty()) m_loop = flattenBulged(std::exchange(m_vertices, {}));
    endEdge();
    if (m_loop.size() >= 3) m_hatch.loops.push_back(std::move(m_loop));
    m_loop.clear();
  }

  Hatch m_hatch;
  Part m_part = Part::head;
  double m_elevation = 0;
  std::vector<BulgeVertex> m_vertices;
  Edge m_edge;
  Loop m_loop;
};

/// One family of lines clipped to the loops by the even-odd rule.
class PatternPainter {
 public:
  PatternPainter(const std::vector<Loop>& loops, const PatternLine& line)
      : m_line(line),
        m_toLine(geom::Transform::rotationZ(-line.angleRad)),
        m_fromLine(geom::Transform::rotationZ(line.angleRad)) {
    for (const Loop& loop : loops) {
      Loop& turned = m_loops.emplace_back();
      for (const KdGePoint3d& p : loop) turned.push_back(m_toLine(p));
      for (const KdGePoint3d& p : turned) m_box.add(p);
    }
    m_base = m_toLine(line.base);
    m_step = m_toLine(line.offset);
    for (const double dash : line.dashes) m_period += std::abs(dash);
  }

  /// The number of lines that cross the area; infinite for lines without a distance.
  double lineCount() const { return (m_box.max.y - m_box.min.y) / std::abs(m_step.y); }
  double mostDashes() const {
    if (m_period <= 0) return lineCount();
    return lineCount() * (1 + (m_box.max.x - m_box.min.x) / m_period * static_cast<double>(m_line.dashes.size()));
  }

  void paint(Sketch& sketch, std::uint32_t appearance) const {
    const double a = (m_box.min.y - m_base.y) / m_step.y, b = (m_box.max.y - m_base.y) / m_step.y;
    const double first = std::ceil(std::min(a, b));
    const int count = static_cast<int>(std::floor(std::max(a, b)) - first) + 1;
    for (int i = 0; i < count; ++i) paintLine(first + i, sketch, appearance);
  }

 private:
  void paintLine(double k, Sketch& sketch, std::uint32_t appearance) const {
    const double y = m_base.y + k * m_step.y;
    std::vector<double> crossings;
    for (const Loop& loop : m_loops) {
      for (std::size_t i = 0; i < loop.size(); ++i) {
        const KdGePoint3d& p = loop[i];
        const KdGePoint3d& q = loop[(i + 1) % loop.size()];
        if ((p.y <= y) != (q.y <= y)) crossings.push_back(p.x + (q.x - p.x) * ((y - p.y) / (q.y - p.y)));
      }
    }
    std::sort(crossings.begin(), crossings.end());
    const auto draw = [&](double from, double to) {
      const KdGePoint3d start = m_fromLine(KdGePoint3d{from, y, m_line.base.z});
      if (from == to) return sketch.polyline({start}, false, appearance);
      sketch.line(start, m_fromLine(KdGePoint3d{to, y, m_line.base.z}), appearance);
    };
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
      paintDashes(crossings[i], crossings[i + 1], m_base.x + k * m_step.x, draw);
    }
  }

  template <class Draw>
  void paintDashes(double from, double to, double origin, const Draw& draw) const {
    if (m_period <= 0) return draw(from, to);
    const double first = origin + std::floor((from - origin) / m_period) * m_period;
    const int periods = static_cast<int>((to - first) / m_period) + 1;
    for (int i = 0; i < periods; ++i) {
      double x = first + i * m_period;
      for (const double dash : m_line.dashes) {
        const double end = x + std::abs(dash);
        if (dash >= 0 && end >= from && x <= to) draw(std::max(x, from), std::min(end, to));
        x = end;
      }
    }
  }

  const PatternLine& m_line;
  geom::Transform m_toLine, m_fromLine;
  std::vector<Loop> m_loops;
  geom::Box3 m_box;
  KdGePoint3d m_base;
  KdGeVector3d m_step;
  double m_period = 0;
};

/// Whether all lines could be drawn.
bool drawPattern(const Hatch& hatch, Sketch& sketch, std::uint32_t appearance) {
  if (hatch.pattern.empty()) return false;
  std::vector<PatternPainter> painters;
  double lines = 0, dashes = 0;
  for (const PatternLine& line : hatch.pattern) {
    painters.emplace_back(hatch.loops, line);
    lines += painters.back().lineCount();
    dashes += painters.back().mostDashes();
  }
  if (!(lines <= kMostPatternLines && dashes <= kMostDashes)) return false;
  for (const PatternPainter& painter : painters) painter.paint(sketch, appearance);
  return true;
}

}  // namespace

void drawHatch(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance) {
  Hatch hatch = HatchReader().read(groups);
  if (hatch.loops.empty()) return;
  if (hatch.isSolid) return sketch.fill(std::move(hatch.loops), appearance);
  if (drawPattern(hatch, sketch, appearance)) return;
  for (Loop& loop : hatch.loops) sketch.polyline(std::move(loop), true, appearance);
}

geom::Box3 hatchExtents(const dxf::Groups& groups) {
  geom::Box3 box;
  for (const Loop& loop : HatchReader().read(groups).loops) {
    for (const KdGePoint3d& point : loop) box.add(point);
  }
  return box;
}

}  // namespace torva::draw

#include "db/mline_geometry.h"

#include <cmath>
#include <numbers>
#include <span>

namespace torva::db {

namespace {

/// Shortest miter that is worked with, as the sine of its angle against the segment. Keeps lists finite where the cap angle
/// is 0 or a path turns back on itself.
constexpr double kLeastMiterSine = 1e-6;

constexpr double kSquare = std::numbers::pi / 2;

/// Some direction in the multiline's plane: the world's x axis where the plane allows it.
KdGeVector3d anyDirection(const KdGeVector3d& normal) {
  const KdGeVector3d x{1, 0, 0};
  const KdGeVector3d inPlane = (x - normal * normal.dotProduct(x)).normal();
  return inPlane.isZeroLength() ? KdGeVector3d{0, 1, 0} : inPlane;
}

KdGeVector3d leftOf(const KdGeVector3d& direction, const KdGeVector3d& normal) {
  const KdGeVector3d left = normal.crossProduct(direction);
  return left.isZeroLength() ? anyDirection(direction) : left.normal();
}

KdGeVector3d directionOf(const KdGePoint3d& from, const KdGePoint3d& to, const KdGeVector3d& fallback) {
  const KdGeVector3d direction = to - from;
  const double length = direction.length();
  return length > 0 && std::isfinite(length) ? direction * (1 / length) : fallback;
}

KdGeVector3d bisector(const KdGeVector3d& in, const KdGeVector3d& out, const KdGeVector3d& normal) {
  const KdGeVector3d sum = leftOf(in, normal) + leftOf(out, normal);
  return sum.isZeroLength() ? leftOf(out, normal) : sum.normal();
}

KdGeVector3d turned(const KdGeVector3d& direction, double angleRad, const KdGeVector3d& normal) {
  // The usual square end exactly, without the rounding of the cosine.
  if (angleRad == kSquare) return leftOf(direction, normal);
  return direction * std::cos(angleRad) + leftOf(direction, normal) * std::sin(angleRad);
}

double alongMiter(double distance, const MlineVertex& vertex, const KdGeVector3d& normal) {
  const KdGeVector3d left = leftOf(vertex.axis, normal);
  // Exactly 1 for the square miter, although no unit vector is exactly one long.
  const double sine = vertex.miter.dotProduct(left) / left.dotProduct(left);
  const double along = distance / (std::abs(sine) < kLeastMiterSine ? std::copysign(kLeastMiterSine, sine) : sine);
  return along + 0.0;  // a zero has no sign
}

class Path {
 public:
  Path(MlineData& data, const MlineShape& shape) : m_data(data), m_vertices(data.vertices), m_shape(shape) {}

  /// Axis of a vertex from its neighbours.
  void aim(std::size_t index) {
    MlineVertex& vertex = m_vertices[index];
    const KdGeVector3d before = index > 0 ? m_vertices[index - 1].axis : anyDirection(m_data.normal);
    if (index + 1 < m_vertices.size()) {
      vertex.axis = directionOf(vertex.position, m_vertices[index + 1].position, before);
    } else if (m_data.isClosed && index > 0) {
      vertex.axis = directionOf(vertex.position, m_vertices.front().position, before);
    } else {
      vertex.axis = before;
    }
  }

  /// Miter of a vertex; the axes of it and of the one before are right.
  KdGeVector3d miterAt(std::size_t index) const {
    const KdGeVector3d& axis = m_vertices[index].axis;
    const bool isFirst = index == 0, isLast = index + 1 == m_vertices.size();
    if (!m_data.isClosed || m_vertices.size() < 2) {
      if (isFirst) return turned(axis, m_shape.startAngleRad, m_data.normal);
      if (isLast) return turned(axis, m_shape.endAngleRad, m_data.normal);
    }
    return bisector(m_vertices[isFirst ? m_vertices.size() - 1 : index - 1].axis, axis, m_data.normal);
  }

  /// Draws the segment that starts at a vertex whole.
  void drawWhole(std::size_t index) {
    MlineVertex& vertex = m_vertices[index];
    vertex.miter = miterAt(index);
    std::vector<KdMLSegment> elements;
    for (const double distance : m_shape.distances)
      elements.push_back({{}, {alongMiter(distance, vertex, m_data.normal), 0}});
    vertex.elements = elements;
  }

  /// Turns the miter of a vertex whose segment stays: breaks are measured from another point then.
  void turnMiter(std::size_t index) {
    MlineVertex& vertex = m_vertices[index];
    const KdGeVector3d old = vertex.miter;
    vertex.miter = miterAt(index);
    std::vector<KdMLSegment> elements = vertex.elements.toVector();
    const std::size_t count = std::min(elements.size(), m_shape.distances.size());
    for (std::size_t k = 0; k < count; ++k) {
      std::vector<double>& list = elements[k].elementParameters;
      if (list.empty()) continue;
      const double offset = alongMiter(m_shape.distances[k], vertex, m_data.normal);
      const double shift = (old * list[0] - vertex.miter * offset).dotProduct(vertex.axis);
      list[0] = offset;
      for (std::size_t i = 1; i < list.size(); ++i) {
        // A line that starts at the joint goes on doing so.
        if (i > 1 || list[i] != 0) list[i] += shift;
      }
    }
    vertex.elements = elements;
  }

 private:
  MlineData& m_data;
  std::vector<MlineVertex>& m_vertices;
  const MlineShape& m_shape;
};

std::vector<double> distancesFrom(const MlineStyleData& style, const MlineData& data) {
  double largest = style.elements.front().offset, smallest = largest;
  for (const MlineStyleElement& element : style.elements) {
    largest = std::max(largest, element.offset);
    smallest = std::min(smallest, element.offset);
  }
  const double reference = data.justification == KdMlineJustification::top      ? largest
                           : data.justification == KdMlineJustification::bottom ? smallest
                                                                                : 0;
  std::vector<double> distances;
  for (const MlineStyleElement& element : style.elements) distances.push_back((element.offset - reference) * data.scale);
  return distances;
}

std::vector<double> distancesFrom(const MlineVertex& vertex, const KdGeVector3d& normal) {
  const double sine = vertex.miter.dotProduct(leftOf(vertex.axis, normal));
  std::vector<double> distances;
  for (std::size_t k = 0; k < vertex.elements.size(); ++k) {
    const std::span<const double> list = vertex.elements[k].elementParameters;
    distances.push_back(list.empty() ? 0 : list.front() * sine);
  }
  return distances;
}

}  // namespace

double pathLength(const MlineData& data) {
  double length = 0;
  for (std::size_t i = 1; i < data.vertices.size(); ++i) {
    length += data.vertices[i - 1].position.distanceTo(data.vertices[i].position);
  }
  if (data.isClosed && !data.vertices.empty()) {
    length += data.vertices.back().position.distanceTo(data.vertices.front().position);
  }
  return length;
}

MlineShape shapeOf(const MlineData& data, const std::optional<MlineStyleData>& style) {
  MlineShape shape;
  shape.startAngleRad = style ? style->startAngleRad : kSquare;
  shape.endAngleRad = style ? style->endAngleRad : kSquare;
  const std::size_t count = static_cast<std::size_t>(data.elementCount());
  if (style && !style->elements.empty() && (count == 0 || count == style->elements.size())) {
    shape.distances = distancesFrom(*style, data);
  } else if (count > 0) {
    shape.distances = distancesFrom(data.vertices.front(), data.normal);
  }
  return shape;
}

void appendVertex(MlineData& data, const KdGePoint3d& point, const MlineShape& shape) {
  Path path(data, shape);
  const std::size_t last = data.vertices.size();
  data.vertices.emplace_back().position = point;
  if (last > 0) path.aim(last - 1);
  path.aim(last);
  if (last > 0) path.drawWhole(last - 1);
  path.drawWhole(last);
  if (data.isClosed && last > 1) path.turnMiter(0);
}

void removeLastVertex(MlineData& data, const MlineShape& shape) {
  data.vertices.pop_back();
  if (data.vertices.empty()) return;
  Path path(data, shape);
  const std::size_t last = data.vertices.size() - 1;
  if (last == 0 && !data.isClosed) return;
  path.aim(last);
  path.drawWhole(last);
  if (data.isClosed && last > 0) path.turnMiter(0);
}

void restyle(MlineData& data, const MlineStyleData& style) {
  if (style.elements.empty()) return;
  const MlineShape shape{distancesFrom(style, data), style.startAngleRad, style.endAngleRad};
  Path path(data, shape);
  for (std::size_t i = 0; i < data.vertices.size(); ++i) {
    if (data.vertices[i].elements.size() == shape.distances.size()) {
      path.turnMiter(i);
    } else {
      path.drawWhole(i);
    }
  }
}

void setClosed(MlineData& data, bool isClosed, const MlineShape& shape) {
  data.isClosed = isClosed;
  if (data.vertices.size() < 2) return;
  Path path(data, shape);
  path.aim(data.vertices.size() - 1);
  path.drawWhole(data.vertices.size() - 1);
  path.turnMiter(0);
}

}  // namespace torva::db

#include "draw/curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace torva::draw {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;

/// Reads points of which the parts come as code, code + 10, code + 20.
class PointList {
 public:
  explicit PointList(int code) : m_code(code) {}
  void read(const dxf::Group& group) {
    if (group.code == m_code) {
      points.push_back({group.realOr(0), 0, 0});
    } else if (group.code == m_code + 10 && !points.empty()) {
      points.back().y = group.realOr(0);
    } else if (group.code == m_code + 20 && !points.empty()) {
      points.back().z = group.realOr(0);
    }
  }
  std::vector<KdGePoint3d> points;

 private:
  int m_code;
};

struct Homogeneous {
  KdGeVector3d p;
  double w = 1;
};

Homogeneous mix(const Homogeneous& a, const Homogeneous& b, double t) {
  return {a.p * (1 - t) + b.p * t, a.w * (1 - t) + b.w * t};
}

}  // namespace

void drawLine(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  sketch.line(values.point(10), values.point(11), appearance);
}

void drawPoint(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  sketch.polyline({values.point(10)}, false, appearance);
}

void drawCircle(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  sketch.arc(circularArc(values.point(10), values.real(40), 0, 0), appearance);
}

void drawArc(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  const double start = radians(values.real(50)), end = radians(values.real(51));
  sketch.arc(circularArc(values.point(10), values.real(40), start, end), appearance);
}

void drawEllipse(const RecordValues& values, const KdGeVector3d& normal, Sketch& sketch, std::uint32_t appearance) {
  const KdGeVector3d major = values.vector(11);
  const KdGeVector3d minor = normal.normal().crossProduct(major) * values.real(40, 1);
  Arc arc = circularArc(values.point(10), 1, values.real(41, 0), values.real(42, kTurn));
  arc.xAxis = major;
  arc.yAxis = minor;
  sketch.arc(arc, appearance);
}

void drawFace(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  const KdGePoint3d corners[] = {values.point(10), values.point(11), values.point(12),
                                 values.has(13) ? values.point(13) : values.point(12)};
  const int invisibleEdges = values.integer(70);
  for (int i = 0; i < 4; ++i) {
    const bool isDot = corners[i].distanceTo(corners[(i + 1) % 4]) == 0;
    if ((invisibleEdges >> i & 1) == 0 && !isDot) sketch.line(corners[i], corners[(i + 1) % 4], appearance);
  }
}

void drawSolid(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  // The file names the corners row by row, so the last two are exchanged on the way around.
  const KdGePoint3d last = values.has(13) ? values.point(13) : values.point(12);
  sketch.fill({{values.point(10), values.point(11), last, values.point(12)}}, appearance);
}

void drawImageFrame(const RecordValues& values, Sketch& sketch, std::uint32_t appearance) {
  const KdGePoint3d origin = values.point(10);
  const KdGeVector3d along = values.vector(11) * values.real(13), up = values.vector(12) * values.real(23);
  sketch.polyline({origin, origin + along, origin + along + up, origin + up}, true, appearance);
}

void drawSpline(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance) {
  Spline spline;
  PointList controlPoints(10), fitPoints(11);
  for (const dxf::Group& group : groups) {
    if (group.code == 1001) break;
    if (group.code == 71) spline.degree = static_cast<int>(std::clamp<std::int64_t>(group.integerOr(3), 0, 100));
    if (group.code == 40) spline.knots.push_back(group.realOr(0));
    if (group.code == 41) spline.weights.push_back(group.realOr(1));
    controlPoints.read(group);
    fitPoints.read(group);
  }
  spline.controlPoints = std::move(controlPoints.points);
  if (spline.controlPoints.empty()) return sketch.curve(std::move(fitPoints.points), appearance);
  sketch.curve(spline.sample(), appearance);
}

void drawLeader(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance) {
  PointList vertices(10);
  for (const dxf::Group& group : groups) {
    if (group.code == 1001) break;
    vertices.read(group);
  }
  sketch.polyline(std::move(vertices.points), false, appearance);
}

std::vector<KdGePoint3d> Spline::sample() const {
  constexpr int kHighestDegree = 25;
  constexpr std::size_t kSamplesPerSpan = 16, kMostSamples = 8192;
  const std::size_t count = controlPoints.size(), order = static_cast<std::size_t>(degree) + 1;
  const bool fits = degree >= 1 && degree <= kHighestDegree && count >= order && knots.size() == count + order &&
                    std::is_sorted(knots.begin(), knots.end()) && knots[order - 1] < knots[count];
  if (!fits) return controlPoints;
  std::vector<Homogeneous> weighted(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double w = weights.size() == count && weights[i] > 0 ? weights[i] : 1;
    weighted[i] = {KdGeVector3d{controlPoints[i].x, controlPoints[i].y, controlPoints[i].z} * w, w};
  }
  const std::size_t perSpan = std::max<std::size_t>(1, std::min(kSamplesPerSpan, kMostSamples / count));
  std::vector<KdGePoint3d> points;
  std::vector<Homogeneous> work(order);
  const auto evaluate = [&](std::size_t span, double u) {
    for (std::size_t j = 0; j < order; ++j) work[j] = weighted[span - order + 1 + j];
    for (std::size_t r = 1; r < order; ++r) {
      for (std::size_t j = order - 1; j >= r; --j) {
        const std::size_t i = span - order + 1 + j;
        work[j] = mix(work[j - 1], work[j], (u - knots[i]) / (knots[i + order - r] - knots[i]));
      }
    }
    const Homogeneous& result = work[order - 1];
    points.push_back(KdGePoint3d{} + result.p * (1 / result.w));
  };
  for (std::size_t span = order - 1; span < count; ++span) {
    const double from = knots[span], to = knots[span + 1];
    if (!(from < to)) continue;
    for (std::size_t i = points.empty() ? 0 : 1; i <= perSpan; ++i) {
      evaluate(span, from + (to - from) * static_cast<double>(i) / static_cast<double>(perSpan));
    }
  }
  return points;
}

}  // namespace torva::draw

#include "draw/polylines.h"

#include <algorithm>
#include <cmath>

#include "db/polyline_flags.h"
#include "draw/record_values.h"

namespace torva::draw {
namespace {

constexpr double kSmallestBulge = 1e-9;

struct OldVertex {
  BulgeVertex at;
  int flags = 0;
  int face[4] = {};
};

std::vector<OldVertex> readVertices(const dxf::DrawingFile& file, dxf::RecordId record) {
  std::vector<OldVertex> vertices;
  forEachVertex(file, record, [&](dxf::RecordId id) {
    const RecordValues values(file.groups(id));
    vertices.push_back({{values.point(10), values.real(42)},
                        values.integer(70),
                        {values.integer(71), values.integer(72), values.integer(73), values.integer(74)}});
  });
  return vertices;
}

void drawMesh(const std::vector<OldVertex>& vertices, int rows, int columns, int flags, Sketch& sketch,
              std::uint32_t appearance) {
  if (rows < 1 || columns < 1) return;
  const std::size_t m = static_cast<std::size_t>(rows), n = static_cast<std::size_t>(columns);
  if (vertices.size() / n < m) return;
  for (std::size_t i = 0; i < m; ++i) {
    std::vector<KdGePoint3d> row;
    for (std::size_t j = 0; j < n; ++j) row.push_back(vertices[i * n + j].at.point);
    sketch.polyline(std::move(row), flags & db::kPolylineClosedAcross, appearance);
  }
  for (std::size_t j = 0; j < n; ++j) {
    std::vector<KdGePoint3d> column;
    for (std::size_t i = 0; i < m; ++i) column.push_back(vertices[i * n + j].at.point);
    sketch.polyline(std::move(column), flags & db::kPolylineClosed, appearance);
  }
}

void drawPolyface(const std::vector<OldVertex>& vertices, Sketch& sketch, std::uint32_t appearance) {
  std::vector<KdGePoint3d> points;
  for (const OldVertex& vertex : vertices) {
    if (vertex.flags & db::kVertexOfPolyface) points.push_back(vertex.at.point);
  }
  for (const OldVertex& vertex : vertices) {
    if (!db::isPolyfaceFace(vertex.flags)) continue;
    std::vector<KdGePoint3d> face;
    for (const int index : vertex.face) {
      // Negative numbers mark the edges that are not shown; faces are outlined whole all the same.
      const std::size_t position = static_cast<std::size_t>(std::abs(static_cast<long>(index)));
      if (position >= 1 && position <= points.size()) face.push_back(points[position - 1]);
    }
    sketch.polyline(std::move(face), true, appearance);
  }
}

}  // namespace

bool isBent(double bulge) {
  return std::abs(bulge) > kSmallestBulge;
}

Arc bulgeArc(const KdGePoint3d& from, const KdGePoint3d& to, double bulge) {
  const KdGeVector3d chord = to - from;
  const KdGeVector3d left{-chord.y, chord.x, 0};
  const KdGePoint3d center = from + chord * 0.5 + left * ((1 - bulge * bulge) / (4 * bulge));
  const KdGeVector3d radius = from - center;
  return {center, radius, {-radius.y, radius.x, 0}, 0, 4 * std::atan(bulge)};
}

void drawBulged(const std::vector<BulgeVertex>& vertices, bool isClosed, Sketch& sketch, std::uint32_t appearance) {
  const std::size_t count = vertices.size();
  if (count == 0) return;
  const bool isStraight = std::none_of(vertices.begin(), vertices.end(), [](const auto& v) { return isBent(v.bulge); });
  std::vector<KdGePoint3d> run;
  if (isStraight) {
    for (const BulgeVertex& vertex : vertices) run.push_back(vertex.point);
    return sketch.polyline(std::move(run), isClosed, appearance);
  }
  run.push_back(vertices.front().point);
  for (std::size_t i = 0; i < (isClosed ? count : count - 1); ++i) {
    const KdGePoint3d& next = vertices[(i + 1) % count].point;
    if (!isBent(vertices[i].bulge)) {
      run.push_back(next);
      continue;
    }
    if (run.size() > 1) sketch.polyline(std::move(run), false, appearance);
    sketch.arc(bulgeArc(vertices[i].point, next, vertices[i].bulge), appearance);
    run = {next};
  }
  if (run.size() > 1) sketch.polyline(std::move(run), false, appearance);
}

void drawLightweightPolyline(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance) {
  std::vector<BulgeVertex> vertices;
  double elevation = 0;
  bool isClosed = false;
  for (const dxf::Group& group : groups) {
    if (group.code == 1001) break;
    if (group.code == 10) vertices.push_back({{group.realOr(0), 0, elevation}, 0});
    if (group.code == 38) elevation = group.realOr(0);
    if (group.code == 70) isClosed = group.integerOr(0) & db::kPolylineClosed;
    if (vertices.empty()) continue;
    if (group.code == 20) vertices.back().point.y = group.realOr(0);
    if (group.code == 42) vertices.back().bulge = group.realOr(0);
  }
  drawBulged(vertices, isClosed, sketch, appearance);
}

void drawPolyline(const dxf::DrawingFile& file, dxf::RecordId record, Sketch& ocs, Sketch& world, std::uint32_t appearance) {
  const RecordValues values(file.groups(record));
  const int flags = values.integer(70);
  const std::vector<OldVertex> vertices = readVertices(file, record);
  if (flags & db::kPolyface) return drawPolyface(vertices, world, appearance);
  if (flags & db::kPolylineMesh) return drawMesh(vertices, values.integer(71), values.integer(72), flags, world, appearance);
  std::vector<BulgeVertex> path;
  for (const OldVertex& vertex : vertices) {
    if (db::isPolylinePoint(vertex.flags)) path.push_back(vertex.at);
  }
  if (flags & db::kPolylineInSpace) {
    for (BulgeVertex& vertex : path) vertex.bulge = 0;
    return drawBulged(path, flags & db::kPolylineClosed, world, appearance);
  }
  // A plane polyline lies at the elevation of its own record, whatever its vertices say.
  for (BulgeVertex& vertex : path) vertex.point.z = values.real(30);
  drawBulged(path, flags & db::kPolylineClosed, ocs, appearance);
}

}  // namespace torva::draw

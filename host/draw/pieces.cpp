#include "draw/pieces.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/text.h"
#include "db/new_entity.h"
#include "db/polyline_flags.h"
#include "db/record_groups.h"
#include "draw/entity_look.h"
#include "draw/mline_shape.h"
#include "draw/polylines.h"
#include "draw/record_values.h"
#include "draw/symbols.h"

namespace torva::draw {
namespace {

using dxf::RecordType;

constexpr double kDegrees = 180 / std::numbers::pi;
/// Axes of an arc that differ by less than this share, or from a right angle by less, make a circle.
constexpr double kCircleTolerance = 1e-9;
/// Chords that stand for a bent line that is no arc stray this share of its size from it.
constexpr double kChordTolerance = 1e-3;

// --- taking apart ---

/// The looks that the parts of a multiline have as entities of their own. Elements that look alike share one, so that lines
/// between them are not split in halves.
class MlineLooks {
 public:
  MlineLooks(const db::Database& database, dxf::RecordId mline)
      : m_database(database), m_own(db::readEntityProperties(database.file(), mline)) {}

  MlineAppearances of(const db::MlineStyleData& style) {
    MlineAppearances appearances;
    appearances.fill = indexOf(style.fillColor, L"CONTINUOUS");
    appearances.other = indexOf(m_own);
    for (const auto& element : style.elements) appearances.elements.push_back(indexOf(element.color, element.linetype));
    return appearances;
  }

  const db::EntityProperties& at(std::uint32_t index) const { return m_looks[index]; }

 private:
  std::uint32_t indexOf(const KdCmColor& color, const std::wstring& linetype) {
    db::EntityProperties look = m_own;
    if (!color.isByBlock()) look.color = color;
    if (!equalsIgnoringCase(linetype, L"BYBLOCK")) look.linetype = linetype.empty() ? L"BYLAYER" : linetype;
    // A linetype that the drawing lacks is drawn continuous, and must not be named by new entities.
    const bool isNamed = !equalsIgnoringCase(look.linetype, L"BYLAYER") && !equalsIgnoringCase(look.linetype, L"BYBLOCK");
    if (isNamed && m_database.findSymbol(RecordType::ltype, look.linetype) == dxf::kNoRecord) look.linetype = L"CONTINUOUS";
    return indexOf(look);
  }

  std::uint32_t indexOf(const db::EntityProperties& look) {
    const auto found = std::ranges::find(m_looks, look);
    const auto index = static_cast<std::uint32_t>(found - m_looks.begin());
    if (found == m_looks.end()) m_looks.push_back(look);
    return index;
  }

  const db::Database& m_database;
  const db::EntityProperties m_own;
  std::vector<db::EntityProperties> m_looks;
};

std::vector<Piece> mlinePieces(const db::Database& database, dxf::RecordId entity) {
  const db::MlineData& mline = database.mline(entity);
  const Symbols symbols(database);
  const db::MlineStyleData& style = symbols.mlineStyle(mline.styleHandle, mline.styleName);
  MlineLooks looks(database, entity);
  DisplayList list;
  Sketch sketch(list, {});
  drawMline(mline, style, looks.of(style), sketch);
  std::vector<Piece> pieces;
  for (Primitive& primitive : list.primitives) {
    pieces.push_back({std::move(primitive.shape), looks.at(primitive.appearance), 0, mline.normal});
  }
  return pieces;
}

std::vector<Piece> polylinePieces(const db::Database& database, dxf::RecordId entity) {
  constexpr int kThickness = 39;
  const dxf::DrawingFile& file = database.file();
  const KdGeVector3d extrusion = readLook(file, entity).extrusion;
  DisplayList list;
  Sketch world(list, {});
  Sketch ocs = world.within(geom::Transform::fromExtrusion(extrusion));
  if (file.type(entity) == RecordType::lwpolyline) {
    drawLightweightPolyline(file.groups(entity), ocs, 0);
  } else {
    drawPolyline(file, entity, ocs, world, 0);
  }
  const db::EntityProperties properties = db::readEntityProperties(file, entity);
  const double thickness = RecordValues(file.groups(entity)).real(kThickness);
  std::vector<Piece> pieces;
  for (Primitive& primitive : list.primitives) {
    pieces.push_back({std::move(primitive.shape), properties, thickness, extrusion});
  }
  return pieces;
}

bool isMesh(const dxf::DrawingFile& file, dxf::RecordId polyline) {
  return RecordValues(file.groups(polyline)).integer(70) & (db::kPolylineMesh | db::kPolyface);
}

// --- putting into the drawing ---

/// The direction of a plane, of the two the one that points up: most planes then have the world's.
KdGeVector3d upward(const KdGeVector3d& normal) {
  const KdGeVector3d unit = normal.normal();
  return unit.z < 0 ? -unit : unit;
}

bool isCircular(const Arc& arc) {
  const double x = arc.xAxis.dotProduct(arc.xAxis), y = arc.yAxis.dotProduct(arc.yAxis);
  return std::abs(x - y) <= kCircleTolerance * x && std::abs(arc.xAxis.dotProduct(arc.yAxis)) <= kCircleTolerance * x;
}

class PieceWriter {
 public:
  PieceWriter(db::Database& database, dxf::RecordId block, const Piece& piece)
      : m_database(database), m_block(block), m_piece(piece) {}

  Result<void> write() {
    std::visit(*this, m_piece.shape);
    return m_result;
  }

  void operator()(const Polyline& polyline) {
    const std::vector<KdGePoint3d>& points = polyline.points;
    for (std::size_t i = 1; i < points.size(); ++i) line(points[i - 1], points[i]);
    if (polyline.isClosed) line(points.back(), points.front());
  }

  void operator()(const Arc& arc) {
    const double radius = arc.xAxis.length();
    if (radius == 0) return;
    if (!isCircular(arc)) return (*this)(Polyline{flatten(arc, radius * kChordTolerance)});
    const KdGeVector3d axis = arc.xAxis.crossProduct(arc.yAxis) * (1 / (radius * radius)), extrusion = upward(axis);
    const bool isCounterClockwise = (axis.dotProduct(extrusion) > 0) == (arc.sweepRad > 0);
    const double first = degreesAt(arc, arc.startRad, extrusion), sweep = std::abs(arc.sweepRad) * kDegrees;
    db::NewEntity entity = begin("ARC");
    entity.beginPart("AcDbCircle");
    thickness(entity, extrusion);
    entity.point(10, geom::toExtrusion(arc.center, extrusion));
    entity.groups().real(40, radius);
    entity.extrusion(extrusion);
    entity.beginPart("AcDbArc");
    entity.groups().real(50, withinTurn(isCounterClockwise ? first : first - sweep));
    entity.groups().real(51, withinTurn(isCounterClockwise ? first + sweep : first));
    end(entity);
  }

  void operator()(const Fill& fill) {
    const KdGeVector3d extrusion = upward(m_piece.extrusion);
    std::vector<std::vector<KdGePoint3d>> loops = fill.loops;
    for (auto& loop : loops) {
      for (KdGePoint3d& point : loop) point = geom::toExtrusion(point, extrusion);
    }
    std::erase_if(loops, [](const auto& loop) { return !hasArea(loop); });
    if (loops.empty()) return;
    if (loops.size() == 1 && loops.front().size() <= 4) return solid(loops.front(), extrusion);
    hatch(loops, extrusion);
  }

  /// Nothing that is taken apart here has texts.
  void operator()(const Text&) {}

 private:
  db::NewEntity begin(std::string_view type) { return db::NewEntity(m_database, m_block, type, m_piece.properties); }

  void end(db::NewEntity& entity) {
    if (const auto record = entity.append(); !record) m_result = tl::unexpected(record.error());
  }

  void line(const KdGePoint3d& from, const KdGePoint3d& to) {
    if (from.distanceTo(to) == 0) return;
    db::NewEntity entity = begin("LINE");
    entity.beginPart("AcDbLine");
    thickness(entity, m_piece.extrusion);
    entity.point(10, from);
    entity.point(11, to);
    if (m_piece.thickness != 0) entity.extrusion(m_piece.extrusion);
    end(entity);
  }

  void thickness(db::NewEntity& entity, const KdGeVector3d& extrusion) const {
    const double along = m_piece.extrusion.dotProduct(extrusion) < 0 ? -m_piece.thickness : m_piece.thickness;
    if (along != 0) entity.groups().real(39, along);
  }

  static double degreesAt(const Arc& arc, double angleRad, const KdGeVector3d& extrusion) {
    const KdGePoint3d direction = geom::toExtrusion(KdGePoint3d() + (arc.at(angleRad) - arc.center), extrusion);
    return std::atan2(direction.y, direction.x) * kDegrees;
  }

  static double withinTurn(double degrees) {
    constexpr double kTurn = 360;
    return degrees - kTurn * std::floor(degrees / kTurn);
  }

  static bool hasArea(const std::vector<KdGePoint3d>& loop) {
    for (std::size_t i = 2; i < loop.size(); ++i) {
      if ((loop[i - 1] - loop[0]).crossProduct(loop[i] - loop[0]).length() > 0) return true;
    }
    return false;
  }

  void solid(const std::vector<KdGePoint3d>& corners, const KdGeVector3d& extrusion) {
    db::NewEntity entity = begin("SOLID");
    entity.beginPart("AcDbTrace");
    entity.point(10, corners[0]);
    entity.point(11, corners[1]);
    // The file names the corners row by row, so the last two are exchanged on the way around.
    entity.point(12, corners.back());
    entity.point(13, corners[2]);
    entity.extrusion(extrusion);
    end(entity);
  }

  void hatch(const std::vector<std::vector<KdGePoint3d>>& loops, const KdGeVector3d& extrusion) {
    db::NewEntity entity = begin("HATCH");
    dxf::RecordBuilder& groups = entity.groups();
    entity.beginPart("AcDbHatch");
    entity.point(10, {0, 0, loops.front().front().z});
    // Always there, unlike elsewhere.
    entity.point(210, KdGePoint3d() + extrusion);
    groups.name(2, "SOLID");
    groups.integer(70, 1);
    groups.integer(71, 0);
    groups.integer(91, static_cast<std::int64_t>(loops.size()));
    for (const auto& loop : loops) hatchPath(loop, groups);
    groups.integer(75, 0);
    groups.integer(76, 1);
    groups.integer(98, 0);
    end(entity);
  }

  static void hatchPath(const std::vector<KdGePoint3d>& loop, dxf::RecordBuilder& groups) {
    constexpr int kExternal = 1, kPolylinePath = 2;
    groups.integer(92, kExternal | kPolylinePath);
    groups.integer(72, 0);
    groups.integer(73, 1);
    groups.integer(93, static_cast<std::int64_t>(loop.size()));
    for (const KdGePoint3d& point : loop) {
      groups.real(10, point.x);
      groups.real(20, point.y);
    }
    groups.integer(97, 0);
  }

  db::Database& m_database;
  const dxf::RecordId m_block;
  const Piece& m_piece;
  Result<void> m_result;
};

}  // namespace

Result<std::vector<Piece>> piecesOf(const db::Database& database, dxf::RecordId entity) {
  const dxf::DrawingFile& file = database.file();
  switch (file.type(entity)) {
    case RecordType::mline:
      return mlinePieces(database, entity);
    case RecordType::polyline:
      if (isMesh(file, entity)) return fail(ErrorCode::notApplicable, "meshes cannot be taken apart");
      [[fallthrough]];
    case RecordType::lwpolyline:
      return polylinePieces(database, entity);
    default:
      return fail(ErrorCode::notApplicable, "only multilines and polylines can be taken apart");
  }
}

Result<void> appendPiece(db::Database& database, dxf::RecordId block, const Piece& piece) {
  return PieceWriter(database, block, piece).write();
}

}  // namespace torva::draw

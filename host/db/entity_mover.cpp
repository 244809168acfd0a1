#include "db/entity_mover.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "db/polyline_flags.h"
#include "db/record_groups.h"
#include "geom/transform.h"

namespace torva::db {

namespace {

using dxf::RecordType;

constexpr int kEmbeddedObject = 101, kFirstExtendedData = 1000, kExtendedDataPoint = 1011;
constexpr int kExtrusion = 210, kFlags = 70, kHeightOfLightweight = 38;

/// What of a point moves, and in which coordinate system it is given.
enum class PointKind {
  world,      // all of it, in the world
  own,        // all of it, in the entity's coordinate system
  plan,       // x and y, in the entity's coordinate system
  elevation,  // z alone, in the entity's coordinate system; x and y are there for form's sake
  height,     // a single group that is the z of all points
  pattern,    // x and y, of which y has the next code
};

struct PointCode {
  int code = 0;
  PointKind kind = PointKind::world;
};

/// Which groups of a type are points. Directions and sizes are not in it: a displacement leaves them as they are.
struct MovableType {
  RecordType type;
  std::array<PointCode, 6> points = {};
  int embeddedPoint = 0;  ///< In the embedded object (101) of the record, in world coordinates.

  std::span<const PointCode> codes() const {
    return {points.begin(), std::find_if(points.begin(), points.end(), [](const PointCode& p) { return p.code == 0; })};
  }
};

using enum PointKind;

constexpr MovableType kMovableTypes[] = {
    {RecordType::line, {{{10, world}, {11, world}}}},
    {RecordType::point, {{{10, world}}}},
    {RecordType::ray, {{{10, world}}}},
    {RecordType::xline, {{{10, world}}}},
    {RecordType::face3d, {{{10, world}, {11, world}, {12, world}, {13, world}}}},
    {RecordType::ellipse, {{{10, world}}}},
    {RecordType::leader, {{{10, world}}}},
    {RecordType::image, {{{10, world}}}},
    {RecordType::wipeout, {{{10, world}}}},
    {RecordType::spline, {{{10, world}, {11, world}}}},
    {RecordType::mline, {{{10, world}, {11, world}}}},
    {RecordType::mtext, {{{10, world}}}, 11},
    {RecordType::circle, {{{10, own}}}},
    {RecordType::arc, {{{10, own}}}},
    {RecordType::solid, {{{10, own}, {11, own}, {12, own}, {13, own}}}},
    {RecordType::trace, {{{10, own}, {11, own}, {12, own}, {13, own}}}},
    {RecordType::text, {{{10, own}, {11, own}}}},
    {RecordType::attdef, {{{10, own}, {11, own}}}, 10},
    {RecordType::attrib, {{{10, own}, {11, own}}}, 10},
    {RecordType::insert, {{{10, own}}}},
    {RecordType::lwpolyline, {{{10, plan}, {kHeightOfLightweight, height}}}},
    {RecordType::polyline, {{{10, elevation}}}},
    {RecordType::vertex, {{{10, own}}}},
    {RecordType::seqend},
    {RecordType::hatch, {{{10, plan}, {11, plan}, {43, pattern}}}},
    // Its block, which is what is drawn, has to be moved too; 12 places the block and stays.
    {RecordType::dimension, {{{10, world}, {11, own}, {13, world}, {14, world}, {15, world}, {16, own}}}},
};

// Polylines in space, meshes and polyfaces have their points in the world, and faces have none.
constexpr MovableType kPolylineInWorld{RecordType::polyline};
constexpr MovableType kVertexInWorld{RecordType::vertex, {{{10, world}}}};
constexpr MovableType kFaceVertex{RecordType::vertex};

const MovableType* movableType(RecordType type) {
  const auto found = std::ranges::find(kMovableTypes, type, &MovableType::type);
  return found == std::end(kMovableTypes) ? nullptr : found;
}

/// Tells where in a hatch codes stand for points: they mean other things from part to part.
class HatchParts {
 public:
  /// How the points of a code are given at this group, the next one of the record; nothing when it is none.
  std::optional<PointKind> kindOf(const dxf::Group& group, const PointCode& point) {
    if (point.kind == pattern) return m_part == Part::pattern ? std::optional(pattern) : std::nullopt;
    switch (m_part) {
      case Part::head:
        return point.code == 10 ? std::optional(elevation) : std::nullopt;
      case Part::edges:
        // The 11 of an ellipse is its axis.
        return point.code == 10 || m_edgeType != kEllipse ? std::optional(plan) : std::nullopt;
      default:
        return group.code != 11 && group.code != 21 ? std::optional(plan) : std::nullopt;
    }
  }

  void pass(const dxf::Group& group) {
    constexpr int kPathFlags = 92, kEdgeType = 72, kPatternStyle = 75, kPolylinePath = 2;
    if (group.code == kPathFlags && m_part != Part::pattern) {
      m_part = group.integerOr(0) & kPolylinePath ? Part::polyline : Part::edges;
    } else if (group.code == kEdgeType && m_part == Part::edges) {
      m_edgeType = group.integerOr(0);
    } else if (group.code == kPatternStyle) {
      m_part = Part::pattern;
    }
  }

 private:
  enum class Part { head, polyline, edges, pattern };
  static constexpr int kEllipse = 3;

  Part m_part = Part::head;
  std::int64_t m_edgeType = 0;
};

/// What has to be known of a record before its groups are gone through.
struct RecordFacts {
  KdGeVector3d extrusion{0, 0, 1};
  int flags = 0;
  std::array<int, 40> counts = {};  ///< Of the groups with codes below.

  explicit RecordFacts(dxf::Groups groups) {
    ApplicationGroups application;
    for (const dxf::Group& group : groups) {
      if (group.code == kEmbeddedObject || group.code >= kFirstExtendedData) return;
      if (application.contains(group)) continue;
      if (group.code >= 0 && group.code < static_cast<int>(counts.size())) ++counts[static_cast<std::size_t>(group.code)];
      if (group.code == kFlags) flags = static_cast<int>(group.integerOr(0));
      readExtrusion(group);
    }
  }

  int count(int code) const { return counts[static_cast<std::size_t>(code)]; }

 private:
  void readExtrusion(const dxf::Group& group) {
    if (group.code == kExtrusion) extrusion.x = group.realOr(0);
    if (group.code == kExtrusion + 10) extrusion.y = group.realOr(0);
    if (group.code == kExtrusion + 20) extrusion.z = group.realOr(1);
  }
};

/// Writes one record again with its points displaced.
class RecordMover {
 public:
  RecordMover(const dxf::DrawingFile& file, const MovableType& type, const RecordFacts& facts,
              const KdGeVector3d& worldShift, const KdGeVector3d& ownShift)
      : m_type(type), m_facts(facts), m_worldShift(worldShift), m_ownShift(ownShift), m_out(file) {}

  Result<std::string> run(dxf::Groups groups) {
    for (const dxf::Group& group : groups) {
      addMissingZ(group.code);
      addMissingHeight(group.code);
      const bool isOfApplication = m_application.contains(group);
      if (!isOfApplication && group.code == kEmbeddedObject) endOwnPart(Part::embedded);
      if (!isOfApplication && group.code >= kFirstExtendedData) endOwnPart(Part::extendedData);
      write(group, isOfApplication ? 0 : shiftOf(group));
    }
    addMissingZ(0);
    endOwnPart(Part::extendedData);
    if (!m_isFinite) return fail(ErrorCode::invalidValue, "its coordinates would be too large");
    return m_out.take();
  }

 private:
  enum class Part { own, embedded, extendedData };

  double shiftOf(const dxf::Group& group) {
    switch (m_part) {
      case Part::extendedData:
        return spatialShift(group.code - kExtendedDataPoint);
      case Part::embedded:
        return m_type.embeddedPoint ? spatialShift(group.code - m_type.embeddedPoint) : 0;
      case Part::own:
        break;
    }
    if (m_type.type == RecordType::hatch) m_hatch.pass(group);
    for (const PointCode& point : m_type.codes()) {
      if (const auto shift = shiftOf(group, point)) return *shift;
    }
    return 0;
  }

  /// Of a coordinate of a point in the world, `offset` being its code less that of the point.
  double spatialShift(int offset) const {
    if (offset == 0) return m_worldShift.x;
    if (offset == 10) return m_worldShift.y;
    return offset == 20 ? m_worldShift.z : 0;
  }

  std::optional<double> shiftOf(const dxf::Group& group, const PointCode& point) {
    std::optional<PointKind> kind = point.kind;
    if (m_type.type == RecordType::hatch) kind = m_hatch.kindOf(group, point);
    if (!kind) return std::nullopt;
    if (group.code < point.code) return std::nullopt;
    const int step = *kind == pattern ? 1 : 10;
    const int offset = group.code - point.code, axis = offset / step;
    if (offset % step != 0 || axis > 2) return std::nullopt;
    if (*kind == height) return axis == 0 ? std::optional(m_ownShift.z) : std::nullopt;
    if (*kind == world) {
      awaitZ(point.code, axis, m_worldShift.z);
      return spatialShift(offset);
    }
    const bool hasPlan = *kind != elevation, hasZ = *kind == own || *kind == elevation;
    if (axis == 2) return hasZ ? std::optional(m_ownShift.z) : std::nullopt;
    if (hasZ) awaitZ(point.code, axis, m_ownShift.z);
    if (!hasPlan) return 0;
    return axis == 0 ? m_ownShift.x : m_ownShift.y;
  }

  /// A point may go without its z, which then has to be added when it changes.
  void awaitZ(int pointCode, int axis, double shift) {
    if (axis == 1 && m_facts.count(pointCode + 20) < m_facts.count(pointCode)) m_missingZ = {pointCode + 20, shift};
  }

  void addMissingZ(int nextCode) {
    const auto [code, value] = std::exchange(m_missingZ, {});
    if (code != 0 && code != nextCode && value != 0) m_out.real(code, value);
  }

  void write(const dxf::Group& group, double shift) {
    const auto value = group.real();
    if (shift == 0 || !value) return m_out.copy(group);
    const double displaced = *value + shift;
    m_isFinite = m_isFinite && std::isfinite(displaced);
    if (displaced == *value) return m_out.copy(group);
    m_out.real(group.code, displaced);
  }

  void addMissingHeight(int nextCode) {
    if (m_type.type != RecordType::lwpolyline || m_part != Part::own || nextCode != 10) return;
    if (std::exchange(m_isHeightSettled, true) || m_facts.count(kHeightOfLightweight) > 0 || m_ownShift.z == 0) return;
    m_out.real(kHeightOfLightweight, m_ownShift.z);
  }

  void endOwnPart(Part next) {
    const bool isWithoutElevation = m_part == Part::own && m_type.type == RecordType::polyline && m_facts.count(10) == 0;
    if (isWithoutElevation && !m_type.codes().empty() && m_ownShift.z != 0) {
      m_out.real(10, 0);
      m_out.real(20, 0);
      m_out.real(30, m_ownShift.z);
    }
    m_part = next;
  }

  const MovableType& m_type;
  const RecordFacts& m_facts;
  const KdGeVector3d m_worldShift, m_ownShift;
  dxf::RecordBuilder m_out;
  ApplicationGroups m_application;
  HatchParts m_hatch;
  Part m_part = Part::own;
  std::pair<int, double> m_missingZ;
  bool m_isHeightSettled = false;
  bool m_isFinite = true;
};

}  // namespace

EntityMover::EntityMover(const dxf::DrawingFile& file, const KdGeVector3d& displacementWcs)
    : m_file(file), m_displacementWcs(displacementWcs) {}

bool EntityMover::knows(RecordType type) {
  return movableType(type) != nullptr;
}

Result<std::string> EntityMover::moved(RecordType type, std::string_view bytes) {
  const MovableType* row = movableType(type);
  if (!row) return fail(ErrorCode::notApplicable, "it is not known which of its values are points");
  const dxf::Groups groups = m_file.groupsOf(bytes);
  const RecordFacts facts(groups);
  KdGeVector3d extrusion = facts.extrusion;
  if (type == RecordType::polyline) {
    m_polylineExtrusion = facts.extrusion;
    m_isPlanePolyline = isPlanePolyline(facts.flags);
    if (!m_isPlanePolyline) row = &kPolylineInWorld;
  } else if (type == RecordType::vertex) {
    extrusion = m_polylineExtrusion;
    if (!m_isPlanePolyline) row = isPolyfaceFace(facts.flags) ? &kFaceVertex : &kVertexInWorld;
  }
  const KdGePoint3d origin;
  const KdGeVector3d ownShift = geom::toExtrusion(origin + m_displacementWcs, extrusion) - origin;
  return RecordMover(m_file, *row, facts, m_displacementWcs, ownShift).run(groups);
}

}  // namespace torva::db

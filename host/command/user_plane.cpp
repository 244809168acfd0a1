#include "command/user_plane.h"

#include <algorithm>
#include <cmath>

#include "command/variable_access.h"

namespace torva::command {

namespace {

constexpr double kAxisTolerance = 1e-6;  // of lengths and of the cosine between the axes

bool areAxes(const KdGeVector3d& x, const KdGeVector3d& y) {
  return std::abs(x.length() - 1) <= kAxisTolerance && std::abs(y.length() - 1) <= kAxisTolerance &&
         std::abs(x.dotProduct(y)) <= kAxisTolerance;
}

/// The direction square to both axes. That of a plane turned within the world's is the world's without rounding, so that
/// what is drawn in it has the plain normal.
KdGeVector3d zAxisOf(const KdGeVector3d& x, const KdGeVector3d& y) {
  const KdGeVector3d z = x.crossProduct(y);
  return z.x == 0 && z.y == 0 ? KdGeVector3d{0, 0, std::copysign(1.0, z.z)} : z.normal();
}

UserPlane planeOf(const db::SystemVariables& variables) {
  const KdGePoint3d zero;
  UserPlane plane;
  plane.elevation = variableOr(variables, L"ELEVATION", 0.0);
  plane.origin = variableOr(variables, L"UCSORG", zero);
  const KdGeVector3d x = variableOr(variables, L"UCSXDIR", zero) - zero;
  const KdGeVector3d y = variableOr(variables, L"UCSYDIR", zero) - zero;
  if (!areAxes(x, y)) return plane;
  plane.x = x;
  plane.y = y;
  plane.z = zAxisOf(x, y);
  return plane;
}

}  // namespace

KdGePoint3d UserPlane::toUser(const KdGePoint3d& wcs) const {
  const KdGeVector3d offset = wcs - origin;
  return {offset.dotProduct(x), offset.dotProduct(y), offset.dotProduct(z)};
}

KdGePoint3d orthoPoint(const KdGePoint3d& baseUcs, const KdGePoint3d& pointUcs) {
  const KdGeVector3d way = pointUcs - baseUcs;
  if (std::abs(way.x) >= std::abs(way.y)) return {pointUcs.x, baseUcs.y, baseUcs.z};
  return {baseUcs.x, pointUcs.y, baseUcs.z};
}

Result<void> writeUserPlane(const UserPlane& plane, db::Database& drawing, db::SystemVariables& variables) {
  if (drawing.file().section("HEADER") == dxf::kNoRecord) {
    return fail(ErrorCode::notApplicable, "the drawing has no header to keep a user coordinate system in");
  }
  const KdGePoint3d zero;
  variables.setInternally(L"UCSORG", plane.origin);
  variables.setInternally(L"UCSXDIR", zero + plane.x);
  variables.setInternally(L"UCSYDIR", zero + plane.y);
  const auto name = drawing.file().headerVariable("$UCSNAME");
  if (name.empty() || name.front().value.empty()) return {};
  dxf::RecordBuilder noName(drawing.file());
  noName.text(2, L"");
  drawing.setHeaderVariable("$UCSNAME", noName.take());
  return {};
}

const UserPlane& UserPlaneReader::read(const db::Database& drawing, const db::SystemVariables& variables) {
  if (!m_isRead || hasHeaderChanged(drawing)) m_plane = planeOf(variables);
  m_isRead = true;
  return m_plane;
}

bool UserPlaneReader::hasHeaderChanged(const db::Database& drawing) {
  const auto changes = drawing.changesSince(m_changesSeen);
  m_changesSeen = drawing.changeCount();
  return std::any_of(changes.begin(), changes.end(),
                     [&](dxf::RecordId record) { return drawing.file().type(record) == dxf::RecordType::section; });
}

}  // namespace torva::command

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
  plane.z = x.crossProduct(y);
  return plane;
}

}  // namespace

KdGePoint3d UserPlane::toUser(const KdGePoint3d& wcs) const {
  const KdGeVector3d offset = wcs - origin;
  return {offset.dotProduct(x), offset.dotProduct(y), offset.dotProduct(z)};
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

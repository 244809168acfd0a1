#pragma once

#include <cstddef>

#include "base/export.h"
#include "db/database.h"
#include "db/system_variables.h"

#include <kdrx/ge.h>

namespace torva::command {

/// The user coordinate system that answers are given in, and the height of points without one.
struct UserPlane {
  KdGePoint3d origin;
  KdGeVector3d x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
  double elevation = 0;

  KdGePoint3d toWorld(const KdGePoint3d& ucs) const { return origin + x * ucs.x + y * ucs.y + z * ucs.z; }
  KdGePoint3d toUser(const KdGePoint3d& wcs) const;
};

/// A point of user coordinates moved to the line through `baseUcs` along the x or y axis: the one on which it is farther
/// from the base, the x axis when both are equal. It is at the height of the base.
TORVA_API KdGePoint3d orthoPoint(const KdGePoint3d& baseUcs, const KdGePoint3d& pointUcs);

/// Makes a plane the drawing's user coordinate system; its elevation is not looked at. The name of a former one goes.
/// @return notApplicable when the drawing has no header
Result<void> writeUserPlane(const UserPlane& plane, db::Database& drawing, db::SystemVariables& variables);

/// Reads the user plane from the drawing's variables and keeps it until the drawing's header changes: points come by the
/// thousand, and each look into the header costs.
class UserPlaneReader {
 public:
  /// Axes in the drawing that are no axes (of no length, or not at right angles) count as those of the world.
  const UserPlane& read(const db::Database& drawing, const db::SystemVariables& variables);
  /// Forgets what was kept; for another drawing.
  void reset() { *this = {}; }

 private:
  bool hasHeaderChanged(const db::Database& drawing);

  UserPlane m_plane;
  bool m_isRead = false;
  std::size_t m_changesSeen = 0;
};

}  // namespace torva::command

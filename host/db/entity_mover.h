#pragma once

#include <string>

#include "base/result.h"
#include "dxf/drawing_file.h"

#include <kdrx/ge.h>

namespace torva::db {

/// Displaces entities in their records. What is no coordinate of a point, and every coordinate that stays, keeps its text.
class EntityMover {
 public:
  EntityMover(const dxf::DrawingFile& file, const KdGeVector3d& displacementWcs);

  /// Whether it is known which groups of a type are points.
  static bool knows(dxf::RecordType type);

  /// The bytes of a record after the displacement. The records of a polyline have to come in their order: its vertices lie
  /// in its coordinate system.
  /// @return notApplicable for a type that is not known; invalidValue when a coordinate would be no finite number
  Result<std::string> moved(dxf::RecordType type, std::string_view bytes);

 private:
  const dxf::DrawingFile& m_file;
  KdGeVector3d m_displacementWcs;
  KdGeVector3d m_polylineExtrusion{0, 0, 1};
  bool m_isPlanePolyline = true;
};

}  // namespace torva::db

#pragma once

#include <vector>

#include "draw/sketch.h"
#include "dxf/drawing_file.h"

namespace torva::draw {

/// A vertex of a polyline with the bulge of the segment that starts there: the tangent of a quarter of the arc's angle,
/// positive counter-clockwise, 0 for a straight segment.
struct BulgeVertex {
  KdGePoint3d point;
  double bulge = 0;
};

/// Whether a bulge bends a segment at all.
bool isBent(double bulge);

/// The arc from one point to another in a plane parallel to x-y. Requires: isBent(bulge).
Arc bulgeArc(const KdGePoint3d& from, const KdGePoint3d& to, double bulge);

/// Draws straight runs as polylines and bent segments as arcs.
void drawBulged(const std::vector<BulgeVertex>& vertices, bool isClosed, Sketch& sketch, std::uint32_t appearance);

void drawLightweightPolyline(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance);

/// Visits the VERTEX records of a POLYLINE, erased ones left out.
template <class Visit>
void forEachVertex(const dxf::DrawingFile& file, dxf::RecordId polyline, const Visit& visit) {
  for (dxf::RecordId id = file.next(polyline); id != dxf::kNoRecord; id = file.next(id)) {
    if (file.isErased(id)) continue;
    if (file.type(id) != dxf::RecordType::vertex) return;
    visit(id);
  }
}

/// A POLYLINE with the VERTEX records behind it: plane, in space, mesh or polyface.
/// @param ocs the sketch for plane polylines, in the entity's coordinate system
/// @param world the sketch for the others
void drawPolyline(const dxf::DrawingFile& file, dxf::RecordId record, Sketch& ocs, Sketch& world, std::uint32_t appearance);

}  // namespace torva::draw

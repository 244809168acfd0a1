#pragma once

#include <optional>
#include <vector>

#include "db/mline_data.h"
#include "db/mline_style_data.h"

namespace torva::db {

/// What a multiline's lists are computed from.
struct MlineShape {
  /// Distance of each element from the path, square to the segments, positive to the left of them.
  std::vector<double> distances;
  /// Direction of the open ends against their segment.
  double startAngleRad = 0, endAngleRad = 0;
};

/// The shape that style, scale and justification give. A multiline whose element count is not the style's (or without a
/// style) keeps the distances that its first vertex has, and square ends when it has no style.
MlineShape shapeOf(const MlineData& data, const std::optional<MlineStyleData>& style);

/// Length of the path through the vertices, back to the first one when it is closed.
double pathLength(const MlineData& data);

/// Changes of the vertex list. Segments that are new or run anew are drawn whole, their fill lists emptied; where only the
/// miter at a segment's start turns, the breaks stay where they are in the drawing. A segment without length takes the
/// direction of the one before it, or the world's x axis in the multiline's plane.
void appendVertex(MlineData& data, const KdGePoint3d& point, const MlineShape& shape);
/// Requires: there is a vertex.
void removeLastVertex(MlineData& data, const MlineShape& shape);
void setClosed(MlineData& data, bool isClosed, const MlineShape& shape);

/// Recomputes miters and distances of all vertices after a change of style, scale or justification. Breaks stay where they
/// are in the drawing, except at vertices that have another number of elements than the style: they are drawn whole. Nothing
/// is done for a style without elements.
void restyle(MlineData& data, const MlineStyleData& style);

}  // namespace torva::db

#pragma once

#include <span>
#include <vector>

#include "base/export.h"

#include <kdrx/ge.h>

namespace torva::draw {

/// Splits a path into the pieces that a linetype draws.
/// @param points the path, n >= 2; closed if the last equals the first
/// @param dashes positive dash, negative gap, 0 dot, in the unit of the points; empty: continuous
/// @param mostPieces the path is given whole when the pattern would cut it into more pieces
/// @return polylines of n >= 1 points, one point being a dot. The path whole for a pattern without length or without a gap.
TORVA_API std::vector<std::vector<KdGePoint3d>> splitIntoDashes(std::span<const KdGePoint3d> points,
                                                                std::span<const double> dashes, int mostPieces = 10'000);

}  // namespace torva::draw

#pragma once

#include <vector>

#include "db/mline_data.h"

namespace torva::db {

/// For every vertex of `source` the vertex of `target` that takes its place, -1 for one that is gone; rising throughout.
/// Vertices at the same position go together. Of equal numbers of vertices each keeps its place; else a vertex that has
/// moved goes with the one found where it is expected.
std::vector<int> alignVertices(const std::vector<MlineVertex>& source, const std::vector<MlineVertex>& target);

}  // namespace torva::db

#pragma once

#include <vector>

#include "base/result.h"
#include "db/database.h"
#include "db/entity_properties.h"
#include "draw/display_list.h"

namespace torva::draw {

/// One shape of an entity that is taken apart, with the properties that an entity of its own needs to look the same.
struct Piece {
  Shape shape;
  db::EntityProperties properties;
  double thickness = 0;  ///< Along `extrusion`.
  KdGeVector3d extrusion{0, 0, 1};
};

/// What an entity falls into: a multiline into all that is drawn of it, in drawing order, in the colors and linetypes of its
/// style (by layer stays by layer, by block becomes what the multiline has); a polyline into its segments.
/// @return notApplicable for entities that cannot be taken apart
Result<std::vector<Piece>> piecesOf(const db::Database& database, dxf::RecordId entity);

/// Appends entities that show a piece to a block: a LINE for each segment, an ARC, a SOLID, or for an area of more than four
/// corners a HATCH. What has no length or no area gives none.
/// @return notApplicable when the block has no place for entities
Result<void> appendPiece(db::Database& database, dxf::RecordId block, const Piece& piece);

}  // namespace torva::draw

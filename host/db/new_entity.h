#pragma once

#include "base/result.h"
#include "db/entity_properties.h"

#include <kdrx/ge.h>

namespace torva::db {

class Database;
class SystemVariables;

/// Puts the record of a new entity together, in the form of its drawing's version. Nothing is in the drawing before
/// append().
class NewEntity {
 public:
  /// Begins the record: name, handle, owner and fittingProperties().
  /// @param block the BLOCK_RECORD, BLOCK or SECTION record (see Database::blocks()) of the block that it is for
  NewEntity(Database& database, dxf::RecordId block, std::string_view type, EntityProperties properties);

  /// Begins a class part. Drawings older than R13 know no classes and get no mark.
  void beginPart(std::string_view classMark);
  /// The record so far, for more groups.
  dxf::RecordBuilder& groups() { return m_groups; }
  /// Adds a point, its coordinates in `code`, `code` + 10 and `code` + 20.
  void point(int code, const KdGePoint3d& point);
  /// Adds the direction of the entity's z axis, unless it is the world's.
  void extrusion(const KdGeVector3d& normal);

  /// Adds the entity at the end of its block. Not to be used after that. @return notApplicable when the block has no place
  Result<dxf::RecordId> append();

 private:
  Database& m_database;
  dxf::RecordId m_block;
  dxf::RecordBuilder m_groups;
};

/// What new entities get: the current layer, color, linetype, linetype scale and line weight.
EntityProperties currentProperties(const SystemVariables& variables);

/// The properties as far as the drawing has them: a layer or linetype that it lacks becomes "0" or by layer, and what its
/// version does not know its default.
EntityProperties fittingProperties(const Database& database, EntityProperties properties);

}  // namespace torva::db

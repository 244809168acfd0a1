#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/result.h"
#include "db/database.h"
#include "db/record_copy.h"

#include <kdrx/ge.h>

namespace torva::db {

/// Moves and copies entities by one displacement: with their parts, and dimensions with the block that they show. An entity
/// of which it is not known how to displace it stays as it is. Requires: no object is open.
class EntityDisplacement {
 public:
  EntityDisplacement(Database& database, const KdGeVector3d& displacementWcs)
      : m_database(database), m_displacementWcs(displacementWcs) {}

  /// @return notApplicable, also for a dimension that shares its block with others; invalidValue; see EntityMover
  Result<void> move(dxf::RecordId entity);
  /// Appends a displaced copy to the section that the entity stands in. It has handles of its own where the original has.
  Result<void> copy(dxf::RecordId entity);

 private:
  /// A record with its bytes after the displacement.
  struct Displaced {
    dxf::RecordId record = dxf::kNoRecord;
    std::string bytes;
  };

  Result<std::vector<Displaced>> displaced(const std::vector<dxf::RecordId>& records) const;
  /// A block as it was before the first change.
  struct Block {
    std::wstring name;
    dxf::RecordId symbol = dxf::kNoRecord;  ///< The BLOCK_RECORD; kNoRecord in old drawings.
    std::vector<dxf::RecordId> records;     ///< BLOCK to ENDBLK; empty when it is not whole.
    int dimensions = 0;                     ///< That show it.
  };

  /// The blocks that dimensions show, by their names in capitals. Every new block has the drawing search for all of them
  /// again, so they are looked up once.
  using Blocks = std::unordered_map<std::wstring, Block>;
  const Blocks& blocks();
  /// The block that a dimension shows; null for other entities and for a dimension without.
  const Block* shownBlock(dxf::RecordId entity);
  /// Adds a copy of a block, under a name of its own.
  void copyBlock(const Block& block, const std::vector<Displaced>& content, CopyNames& names);
  std::wstring newBlockName();

  Database& m_database;
  const KdGeVector3d m_displacementWcs;
  std::optional<Blocks> m_blocks;
  dxf::RecordId m_blockTable = dxf::kNoRecord;
  std::unordered_set<std::wstring> m_blockNames;  // of all blocks, in capitals
  int m_lastBlockNumber = 0;
};

}  // namespace torva::db

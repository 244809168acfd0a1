#pragma once

#include <map>
#include <optional>
#include <set>
#include <unordered_map>

#include "db/database.h"

namespace torva::db {

/// Where things are in a drawing: tables with their symbols, blocks, ends of sections. Each part is built when first asked
/// for, and forgotten when a record of its kind changes.
class Database::Structure {
 public:
  explicit Structure(const dxf::DrawingFile& file) : m_file(file) {}

  /// The TABLE record of a table by its name; kNoRecord when there is none.
  dxf::RecordId table(std::string_view name);
  const std::vector<dxf::RecordId>& symbols(dxf::RecordType type);
  dxf::RecordId symbol(dxf::RecordType type, std::wstring_view name);
  const std::set<dxf::RecordId>& lockedLayers();

  /// BLOCK records in the order of the file, and one by name, ignoring case; kNoRecord when there is none.
  const std::vector<dxf::RecordId>& blocks();
  dxf::RecordId block(std::wstring_view name);

  /// The root dictionary; kNoRecord when there is none.
  dxf::RecordId rootDictionary();

  /// The last record of a section before its end; of one without content the SECTION record. kNoRecord when there is no such
  /// section.
  dxf::RecordId lastOf(std::string_view section) const;
  /// The record before the ENDBLK of a block.
  dxf::RecordId lastOfBlock(dxf::RecordId block) const;

  /// Forgets what a change of a record can have made wrong.
  void forget(dxf::RecordId record);
  /// Follows a new record behind all others of its kind: a copy of many dimensions adds a block for each.
  void add(dxf::RecordId record);

 private:
  struct Tables {
    std::map<std::string, dxf::RecordId, std::less<>> tables;
    std::unordered_map<dxf::RecordType, std::vector<dxf::RecordId>> symbols;
    std::unordered_map<dxf::RecordType, std::unordered_map<std::wstring, dxf::RecordId>> byName;
  };
  struct Blocks {
    std::vector<dxf::RecordId> records;
    std::unordered_map<std::wstring, dxf::RecordId> byName;
  };

  bool isKnownTable(dxf::RecordId record) const;
  void addSymbol(Tables& tables, dxf::RecordId record);
  void addBlock(Blocks& blocks, dxf::RecordId record);
  const Tables& tables();
  const Blocks& blockIndex();

  const dxf::DrawingFile& m_file;
  std::optional<Tables> m_tables;
  std::optional<std::set<dxf::RecordId>> m_lockedLayers;
  std::optional<Blocks> m_blocks;
};

}  // namespace torva::db

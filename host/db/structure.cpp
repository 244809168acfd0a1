#include "db/structure.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "db/layers.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

using dxf::RecordId;
using dxf::RecordType;

bool endsSection(RecordType type) {
  return type == RecordType::endsec || type == RecordType::section || type == RecordType::eof;
}

/// Calls `visit` for each record of a section, erased ones left out.
template <class Visit>
void forEachIn(const dxf::DrawingFile& file, std::string_view section, Visit visit) {
  const RecordId head = file.section(section);
  if (head == dxf::kNoRecord) return;
  for (RecordId record = file.next(head); record != dxf::kNoRecord; record = file.next(record)) {
    if (endsSection(file.type(record))) return;
    if (!file.isErased(record)) visit(record);
  }
}

}  // namespace

const Database::Structure::Tables& Database::Structure::tables() {
  if (m_tables) return *m_tables;
  Tables& tables = m_tables.emplace();
  forEachIn(m_file, "TABLES", [&](RecordId record) {
    const RecordType type = m_file.type(record);
    if (type == RecordType::table) {
      const auto name = firstGroup(m_file.groups(record), 2);
      if (name) tables.tables.try_emplace(std::string(name->value), record);
    } else if (type != RecordType::endtab) {
      addSymbol(tables, record);
    }
  });
  return tables;
}

void Database::Structure::addSymbol(Tables& tables, RecordId record) {
  const RecordType type = m_file.type(record);
  tables.symbols[type].push_back(record);
  tables.byName[type].try_emplace(upperCase(firstText(m_file, record, 2)), record);
}

RecordId Database::Structure::table(std::string_view name) {
  const auto found = tables().tables.find(name);
  return found == tables().tables.end() ? dxf::kNoRecord : found->second;
}

const std::vector<RecordId>& Database::Structure::symbols(RecordType type) {
  static const std::vector<RecordId> kNone;
  const auto found = tables().symbols.find(type);
  return found == tables().symbols.end() ? kNone : found->second;
}

RecordId Database::Structure::symbol(RecordType type, std::wstring_view name) {
  const auto names = tables().byName.find(type);
  if (names == tables().byName.end()) return dxf::kNoRecord;
  const auto found = names->second.find(upperCase(name));
  return found == names->second.end() ? dxf::kNoRecord : found->second;
}

const std::set<RecordId>& Database::Structure::lockedLayers() {
  if (m_lockedLayers) return *m_lockedLayers;
  std::set<RecordId>& locked = m_lockedLayers.emplace();
  std::ranges::copy_if(symbols(RecordType::layer), std::inserter(locked, locked.end()),
                       [this](RecordId layer) { return isLockedLayer(m_file, layer); });
  return locked;
}

const Database::Structure::Blocks& Database::Structure::blockIndex() {
  if (m_blocks) return *m_blocks;
  Blocks& blocks = m_blocks.emplace();
  forEachIn(m_file, "BLOCKS", [&](RecordId record) {
    if (m_file.type(record) == RecordType::block) addBlock(blocks, record);
  });
  return blocks;
}

void Database::Structure::addBlock(Blocks& blocks, RecordId record) {
  blocks.records.push_back(record);
  blocks.byName.try_emplace(upperCase(firstText(m_file, record, 2)), record);
}

const std::vector<RecordId>& Database::Structure::blocks() {
  return blockIndex().records;
}

RecordId Database::Structure::block(std::wstring_view name) {
  const auto& byName = blockIndex().byName;
  const auto found = byName.find(upperCase(name));
  return found == byName.end() ? dxf::kNoRecord : found->second;
}

RecordId Database::Structure::rootDictionary() {
  const RecordId head = m_file.section("OBJECTS");
  if (head == dxf::kNoRecord) return dxf::kNoRecord;
  for (RecordId record = m_file.next(head); record != dxf::kNoRecord; record = m_file.next(record)) {
    const RecordType type = m_file.type(record);
    if (endsSection(type)) break;
    if (type == RecordType::dictionary && !m_file.isErased(record)) return record;
  }
  return dxf::kNoRecord;
}

RecordId Database::Structure::lastOf(std::string_view section) const {
  const RecordId head = m_file.section(section);
  if (head == dxf::kNoRecord) return head;
  // New records are added behind the same one each time, which keeps them in the order of their making.
  const RecordId last = m_file.sectionEnd(section) - 1;
  return last > head && m_file.type(last) == RecordType::endsec ? last - 1 : last;
}

RecordId Database::Structure::lastOfBlock(RecordId block) const {
  RecordId last = block;
  for (RecordId record = m_file.next(block); record != dxf::kNoRecord; record = m_file.next(record)) {
    const RecordType type = m_file.type(record);
    if (type == RecordType::endblk || type == RecordType::block || endsSection(type)) break;
    if (record < m_file.originalCount()) last = record;
  }
  return last;
}

void Database::Structure::forget(RecordId record) {
  const RecordType type = m_file.type(record);
  if (type > RecordType::blockRecord || isKnownTable(record)) return;
  m_tables.reset();
  m_lockedLayers.reset();
  if (type <= RecordType::eof) m_blocks.reset();
}

void Database::Structure::add(RecordId record) {
  const RecordType type = m_file.type(record);
  if (type == RecordType::block) {
    if (m_blocks) addBlock(*m_blocks, record);
  } else if (type >= RecordType::vport && type <= RecordType::blockRecord) {
    if (m_tables) addSymbol(*m_tables, record);
    if (type == RecordType::layer) m_lockedLayers.reset();
  } else if (type != RecordType::endblk) {
    forget(record);
  }
}

/// A table that is changed keeps its name and its symbols.
bool Database::Structure::isKnownTable(RecordId record) const {
  if (!m_tables || m_file.isErased(record)) return false;
  return std::ranges::any_of(m_tables->tables, [=](const auto& table) { return table.second == record; });
}

}  // namespace torva::db

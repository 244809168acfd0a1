#include "db/entity_displacement.h"

#include "base/text.h"
#include "db/entity_mover.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

using dxf::RecordId;
using dxf::RecordType;

bool bordersBlock(RecordType type) {
  return type == RecordType::block || type == RecordType::endblk;
}

/// BLOCK to ENDBLK, erased ones left out; empty when the drawing lacks one of them.
std::vector<RecordId> recordsOf(const dxf::DrawingFile& file, RecordId block) {
  std::vector<RecordId> records;
  for (RecordId record = block; record != dxf::kNoRecord; record = file.next(record)) {
    if (record != block && file.type(record) == RecordType::block) break;
    if (!file.isErased(record)) records.push_back(record);
    if (file.type(record) == RecordType::endblk) return records;
  }
  return {};
}

/// Gives the copy of a record a handle when the record has one.
void nameCopy(dxf::DrawingFile& file, RecordId record, CopyNames& names) {
  if (const dxf::Handle handle = file.handle(record); handle != 0) names.handles[handle] = file.newHandle();
}

}  // namespace

Result<void> EntityDisplacement::move(RecordId entity) {
  m_database.flush();
  auto parts = displaced(withParts(m_database.file(), entity));
  if (!parts) return tl::unexpected(parts.error());
  const Block* block = shownBlock(entity);
  if (block && block->dimensions > 1) return fail(ErrorCode::notApplicable, "other dimensions show the same block");
  auto content = displaced(block ? block->records : std::vector<RecordId>());
  if (!content) return tl::unexpected(content.error());
  for (std::vector<Displaced>* records : {&*content, &*parts}) {
    for (Displaced& record : *records) {
      if (!bordersBlock(m_database.file().type(record.record))) m_database.setBytes(record.record, std::move(record.bytes));
    }
  }
  return {};
}

Result<void> EntityDisplacement::copy(RecordId entity) {
  m_database.flush();
  dxf::DrawingFile& file = m_database.file();
  const auto parts = displaced(withParts(file, entity));
  if (!parts) return tl::unexpected(parts.error());
  const Block* block = shownBlock(entity);
  const auto content = displaced(block ? block->records : std::vector<RecordId>());
  if (!content) return tl::unexpected(content.error());
  CopyNames names;
  if (block) copyBlock(*block, *content, names);
  for (const Displaced& part : *parts) nameCopy(file, part.record, names);
  for (const Displaced& part : *parts) {
    m_database.appendToModelSpace(copiedRecord(file, file.type(part.record), part.bytes, names));
  }
  return {};
}

Result<std::vector<EntityDisplacement::Displaced>> EntityDisplacement::displaced(
    const std::vector<RecordId>& records) const {
  const dxf::DrawingFile& file = m_database.file();
  EntityMover mover(file, m_displacementWcs);
  std::vector<Displaced> result;
  for (const RecordId record : records) {
    if (bordersBlock(file.type(record))) {
      result.push_back({record, std::string(file.bytes(record))});
      continue;
    }
    auto bytes = mover.moved(file.type(record), file.bytes(record));
    if (!bytes) return tl::unexpected(bytes.error());
    result.push_back({record, std::move(*bytes)});
  }
  return result;
}

const EntityDisplacement::Blocks& EntityDisplacement::blocks() {
  if (m_blocks) return *m_blocks;
  m_blocks.emplace();
  m_blockTable = m_database.findTable("BLOCK_RECORD");
  const dxf::DrawingFile& file = m_database.file();
  for (RecordId record = 0; record < file.recordCount(); ++record) {
    if (file.type(record) != RecordType::dimension || file.isErased(record)) continue;
    ++(*m_blocks)[upperCase(firstText(file, record, 2))].dimensions;
  }
  for (const RecordId record : m_database.blocks()) {
    const std::wstring name = m_database.blockName(record);
    m_blockNames.insert(upperCase(name));
    const auto shown = m_blocks->find(upperCase(name));
    if (shown == m_blocks->end()) continue;
    shown->second.name = name;
    shown->second.records = recordsOf(file, m_database.findBlock(name));
    if (m_blockTable != dxf::kNoRecord && file.type(record) == RecordType::blockRecord) shown->second.symbol = record;
  }
  return *m_blocks;
}

const EntityDisplacement::Block* EntityDisplacement::shownBlock(RecordId entity) {
  const dxf::DrawingFile& file = m_database.file();
  if (file.type(entity) != RecordType::dimension) return nullptr;
  const auto found = blocks().find(upperCase(firstText(file, entity, 2)));
  return found == blocks().end() || found->second.records.empty() ? nullptr : &found->second;
}

void EntityDisplacement::copyBlock(const Block& block, const std::vector<Displaced>& content, CopyNames& names) {
  dxf::DrawingFile& file = m_database.file();
  names.block = block.name;
  names.newBlock = newBlockName();
  if (block.symbol != dxf::kNoRecord) nameCopy(file, block.symbol, names);
  for (const Displaced& record : content) nameCopy(file, record.record, names);
  if (block.symbol != dxf::kNoRecord) {
    m_database.appendToTable(m_blockTable, copiedRecord(file, RecordType::blockRecord, file.bytes(block.symbol), names));
  }
  for (const Displaced& record : content) {
    m_database.appendToBlocks(copiedRecord(file, file.type(record.record), record.bytes, names));
  }
}

std::wstring EntityDisplacement::newBlockName() {
  std::wstring name;
  do {
    name = L"*D" + std::to_wstring(++m_lastBlockNumber);
  } while (m_blockNames.contains(name));
  return name;
}

}  // namespace torva::db

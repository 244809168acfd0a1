// What is where in a drawing: blocks, tables, dictionaries, and the class of each record's object.

#include <array>

#include "base/text.h"
#include "db/database.h"
#include "db/dictionary_imp.h"
#include "db/new_entity.h"
#include "db/record_groups.h"
#include "db/structure.h"
#include "db/symbol_imp.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

namespace torva::db {

namespace {

constexpr std::wstring_view kModelSpaceName = L"*Model_Space";

bool isModelSpaceName(std::wstring_view name) {
  return equalsIgnoringCase(name, kModelSpaceName) || equalsIgnoringCase(name, L"$MODEL_SPACE");
}

/// The paper space whose entities stand among those of model space, marked by group 67. Others have a block of their own.
bool isPaperSpaceName(std::wstring_view name) {
  return equalsIgnoringCase(name, L"*Paper_Space") || equalsIgnoringCase(name, L"$PAPER_SPACE");
}

bool endsEntities(dxf::RecordType type) {
  using enum dxf::RecordType;
  return type == endsec || type == section || type == endblk || type == block || type == eof;
}

/// Looks at the part that all entities have, which comes before the entity's own class mark or its first point.
bool isInPaperSpace(dxf::Groups groups) {
  int classMarks = 0;
  for (const dxf::Group& group : groups) {
    if (group.code == 67) return group.integerOr(0) == 1;
    if (group.code == 10 || (group.code == 100 && ++classMarks == 2)) return false;
  }
  return false;
}

/// A table says how many entries a reader has to reckon with.
void raiseCount(Database& database, dxf::RecordId table, std::size_t count) {
  const dxf::DrawingFile& file = database.file();
  dxf::RecordBuilder out(file);
  bool isRaised = false;
  for (const dxf::Group& group : file.groups(table)) {
    const bool isTooLow = group.code == 70 && group.integerOr(0) < static_cast<std::int64_t>(count);
    if (isTooLow) {
      out.integer(70, static_cast<std::int64_t>(count));
    } else {
      out.copy(group);
    }
    isRaised = isRaised || isTooLow;
  }
  if (isRaised) database.setBytes(table, out.take());
}

}  // namespace

dxf::RecordId Database::modelSpace() const {
  const dxf::RecordId record = m_structure->symbol(dxf::RecordType::blockRecord, kModelSpaceName);
  return record != dxf::kNoRecord ? record : m_file.section("ENTITIES");
}

/// A drawing older than R13 has no such table; the SECTION record of BLOCKS stands for it, or failing that the end mark of
/// ENTITIES.
dxf::RecordId Database::blockTable() const {
  if (const dxf::RecordId table = findTable("BLOCK_RECORD"); table != dxf::kNoRecord) return table;
  if (const dxf::RecordId blocks = m_file.section("BLOCKS"); blocks != dxf::kNoRecord) return blocks;
  dxf::RecordId record = m_structure->lastOf("ENTITIES");
  while (record != dxf::kNoRecord && m_file.type(record) != dxf::RecordType::endsec) record = m_file.next(record);
  return record;
}

KdDbObjectId Database::blockTableId() const {
  return idOf(blockTable());
}
KdDbObjectId Database::layerTableId() const {
  return idOf(findTable("LAYER"));
}
KdDbObjectId Database::linetypeTableId() const {
  return idOf(findTable("LTYPE"));
}
KdDbObjectId Database::namedObjectsDictionaryId() const {
  return idOf(m_structure->rootDictionary());
}
KdDbObjectId Database::modelSpaceId() const {
  return idOf(modelSpace());
}

dxf::RecordId Database::findTable(std::string_view name) const {
  return m_structure->table(name);
}
dxf::RecordId Database::findBlock(std::wstring_view name) const {
  return m_structure->block(name);
}

dxf::RecordId Database::findSymbol(dxf::RecordType table, std::wstring_view name) const {
  return m_structure->symbol(table, name);
}

const std::set<dxf::RecordId>& Database::lockedLayers() const {
  return m_structure->lockedLayers();
}

const std::vector<dxf::RecordId>& Database::symbols(dxf::RecordType table) const {
  return m_structure->symbols(table);
}

const std::vector<DictionaryEntry>& Database::dictionary(dxf::RecordId record, std::vector<DictionaryEntry>& storage) const {
  const KdDbObject* object = loaded(record);
  if (object && object->isKindOf(KdDbDictionary::desc())) {
    return static_cast<const KdDbDictionaryImp*>(KdDbSystemInternals::getImpObject(object))->entries();
  }
  storage.clear();
  if (!object) storage = readDictionary(m_file, m_file.groups(record));
  return storage;
}

dxf::RecordId Database::findInDictionary(std::span<const std::wstring_view> path) const {
  dxf::RecordId record = m_structure->rootDictionary();
  for (const std::wstring_view name : path) {
    if (record == dxf::kNoRecord) return record;
    std::vector<DictionaryEntry> storage;
    const std::vector<DictionaryEntry>& entries = dictionary(record, storage);
    const auto found = findEntry(entries, name);
    if (found == entries.end()) return dxf::kNoRecord;
    record = m_file.find(found->handle);
    if (record != dxf::kNoRecord && m_file.isErased(record)) return dxf::kNoRecord;
  }
  return record;
}

std::wstring Database::blockName(dxf::RecordId block) const {
  switch (m_file.type(block)) {
    case dxf::RecordType::section:
      return std::wstring(block == m_file.section("ENTITIES") ? kModelSpaceName : L"");
    case dxf::RecordType::block:
    case dxf::RecordType::blockRecord:
      return firstText(m_file, block, 2);
    default:
      return {};
  }
}

std::vector<dxf::RecordId> Database::blocks() const {
  std::vector<dxf::RecordId> blocks = symbols(dxf::RecordType::blockRecord);
  const dxf::RecordId space = modelSpace();
  const bool hasRecords = !blocks.empty();
  if (space != dxf::kNoRecord && m_file.type(space) == dxf::RecordType::section) blocks.insert(blocks.begin(), space);
  if (hasRecords) return blocks;
  for (const dxf::RecordId block : m_structure->blocks()) {
    if (!isModelSpaceName(blockName(block))) blocks.push_back(block);
  }
  return blocks;
}

bool Database::isTopLevelEntity(dxf::RecordId record) const {
  const dxf::RecordId head = m_file.section("ENTITIES");
  const dxf::RecordId anchor = m_file.anchor(record);
  const bool isInSection = head != dxf::kNoRecord && anchor >= head && anchor <= m_structure->lastOf("ENTITIES");
  return isInSection && record != head && !isPartOfEntityBefore(m_file.type(record));
}

dxf::RecordId Database::blockOfEntity(dxf::RecordId entity) const {
  if (!isTopLevelEntity(entity)) return dxf::kNoRecord;
  if (!isInPaperSpace(m_file.groups(entity))) return modelSpace();
  const dxf::RecordId record = m_structure->symbol(dxf::RecordType::blockRecord, L"*Paper_Space");
  return record != dxf::kNoRecord ? record : m_structure->block(L"$PAPER_SPACE");
}

void Database::forEachEntity(const std::function<void(dxf::RecordId)>& visit) const {
  const dxf::RecordId head = m_file.section("ENTITIES");
  if (head == dxf::kNoRecord) return;
  for (dxf::RecordId record = m_file.next(head); record != dxf::kNoRecord; record = m_file.next(record)) {
    const dxf::RecordType type = m_file.type(record);
    if (endsEntities(type)) return;
    if (!isPartOfEntityBefore(type) && !m_file.isErased(record)) visit(record);
  }
}

void Database::forEachEntityOf(Space space, const std::function<void(dxf::RecordId)>& visit) const {
  forEachEntity([&](dxf::RecordId record) {
    if (isInPaperSpace(m_file.groups(record)) == (space == Space::paper)) visit(record);
  });
}

void Database::forEachModelSpaceEntity(const std::function<void(dxf::RecordId)>& visit) const {
  forEachEntityOf(Space::model, visit);
}

void Database::forEachBlockEntity(dxf::RecordId block, const std::function<void(dxf::RecordId)>& visit) const {
  const std::wstring name = blockName(block);
  if (isModelSpaceName(name)) forEachEntityOf(Space::model, visit);
  if (isPaperSpaceName(name)) forEachEntityOf(Space::paper, visit);
  const bool isBlock = m_file.type(block) == dxf::RecordType::block;
  const dxf::RecordId head = isBlock ? block : findBlock(name);
  if (head == dxf::kNoRecord) return;
  for (dxf::RecordId record = m_file.next(head); record != dxf::kNoRecord; record = m_file.next(record)) {
    const dxf::RecordType type = m_file.type(record);
    if (endsEntities(type)) return;
    if (!isPartOfEntityBefore(type) && !m_file.isErased(record)) visit(record);
  }
}

bool Database::isPaperSpaceAmongEntities(dxf::RecordId block) const {
  return isPaperSpaceName(blockName(block));
}

dxf::RecordId Database::appendToModelSpace(std::string bytes) {
  const dxf::RecordId last = m_structure->lastOf("ENTITIES");
  return last == dxf::kNoRecord ? last : insert(last, std::move(bytes));
}

dxf::RecordId Database::appendToBlock(dxf::RecordId block, std::string bytes) {
  const std::wstring name = blockName(block);
  if (isModelSpaceName(name) || isPaperSpaceName(name)) return appendToModelSpace(std::move(bytes));
  const dxf::RecordId head = findBlock(name);
  return head == dxf::kNoRecord ? head : insert(m_structure->lastOfBlock(head), std::move(bytes));
}

dxf::RecordId Database::appendToTable(dxf::RecordId table, std::string bytes) {
  // Behind the last original one: what was added before stands there too, in the order of its making.
  dxf::RecordId last = table;
  while (last + 1 < m_file.originalCount()) {
    const dxf::RecordType type = m_file.type(last + 1);
    if (type == dxf::RecordType::endtab || type == dxf::RecordType::table || endsEntities(type)) break;
    ++last;
  }
  const dxf::RecordId record = insert(last, std::move(bytes));
  raiseCount(*this, table, symbols(m_file.type(record)).size());
  return record;
}

dxf::RecordId Database::appendToBlocks(std::string bytes) {
  const dxf::RecordId last = m_structure->lastOf("BLOCKS");
  return last == dxf::kNoRecord ? last : insert(last, std::move(bytes));
}

dxf::RecordId Database::appendToObjects(std::string bytes) {
  const dxf::RecordId last = m_structure->lastOf("OBJECTS");
  return last == dxf::kNoRecord ? last : insert(last, std::move(bytes));
}

std::unique_ptr<KdDbObject> Database::makeObject(dxf::RecordId record) const {
  using enum dxf::RecordType;
  using Internals = KdDbSystemInternals;
  const dxf::RecordType type = m_file.type(record);
  const bool isMark = type == table || type == section || type == endsec;  // what can stand for the block table
  if (isMark && record == blockTable()) return Internals::make<KdDbBlockTable>(std::make_unique<TableImp>());
  switch (type) {
    case mline:
      return std::make_unique<KdDbMline>();
    case mlineStyle:
      return std::make_unique<KdDbMlineStyle>();
    case dictionary:
    case dictionaryWithDefault:
      return KdDbDictionaryImp::makeObject();
    case layer:
      return Internals::make<KdDbLayerTableRecord>(std::make_unique<SymbolImp>());
    case ltype:
      return Internals::make<KdDbLinetypeTableRecord>(std::make_unique<LinetypeImp>());
    case block:
    case blockRecord:
      return Internals::make<KdDbBlockTableRecord>(std::make_unique<SymbolImp>());
    case vport:
    case style:
    case view:
    case ucs:
    case appid:
    case dimstyle:
      return Internals::make<KdDbSymbolTableRecord>(std::make_unique<SymbolImp>());
    case table:
      if (record == findTable("LAYER")) return Internals::make<KdDbLayerTable>(std::make_unique<TableImp>());
      if (record == findTable("LTYPE")) return Internals::make<KdDbLinetypeTable>(std::make_unique<TableImp>());
      return Internals::make<KdDbSymbolTable>(std::make_unique<TableImp>());
    case section:
      if (record == modelSpace()) return Internals::make<KdDbBlockTableRecord>(std::make_unique<SymbolImp>());
      [[fallthrough]];
    default:
      return isEntity(m_file, record) ? Internals::make<KdDbEntity>(std::make_unique<KdDbObjectImp>())
                                      : Internals::make<KdDbObject>(std::make_unique<KdDbObjectImp>());
  }
}

KdStatus Database::adoptObject(KdDbObject& object, dxf::RecordId dictionary) {
  if (!object.isKindOf(KdDbMlineStyle::desc())) return KdStatus::wrongClass;
  if (m_file.section("OBJECTS") == dxf::kNoRecord) return KdStatus::notApplicable;
  const dxf::Handle owner = m_file.handle(dictionary);
  dxf::RecordBuilder bytes(m_file);
  bytes.name(0, "MLINESTYLE");
  bytes.handle(5, m_file.newHandle());
  bytes.name(102, "{ACAD_REACTORS");
  bytes.handle(330, owner);
  bytes.name(102, "}");
  bytes.handle(330, owner);
  bytes.name(100, "AcDbMlineStyle");
  adopt(object, appendToObjects(bytes.take()));
  return KdStatus::ok;
}

KdStatus Database::adoptEntity(KdDbEntity& entity, dxf::RecordId block) {
  if (!entity.isKindOf(KdDbMline::desc())) return KdStatus::wrongClass;
  if (m_file.version() == dxf::Version::r12) return KdStatus::notApplicable;
  EntityProperties properties;
  properties.layer = KdDbSystemInternals::getImpObject(&entity)->layerName();
  NewEntity head(*this, block, "MLINE", properties);
  head.beginPart("AcDbMline");
  const auto record = head.append();
  if (!record) return KdStatus::notApplicable;
  adopt(entity, *record);
  return KdStatus::ok;
}

}  // namespace torva::db

#include "base/text.h"
#include "db/database.h"
#include "db/layers.h"
#include "db/record_groups.h"
#include "db/symbol_imp.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_tables.h>

namespace torva::db {

namespace {

struct TableKind {
  std::string_view name;
  dxf::RecordType symbols;
};

constexpr TableKind kTables[] = {
    {"VPORT", dxf::RecordType::vport},
    {"LTYPE", dxf::RecordType::ltype},
    {"LAYER", dxf::RecordType::layer},
    {"STYLE", dxf::RecordType::style},
    {"VIEW", dxf::RecordType::view},
    {"UCS", dxf::RecordType::ucs},
    {"APPID", dxf::RecordType::appid},
    {"DIMSTYLE", dxf::RecordType::dimstyle},
    {"BLOCK_RECORD", dxf::RecordType::blockRecord},
};

}  // namespace

void SymbolImp::read() {
  m_name = database()->blockName(record());
  if (m_name.empty()) m_name = firstText(file(), record(), 2);
}

void LinetypeImp::read() {
  SymbolImp::read();
  m_dashes.clear();
  for (const dxf::Group& group : file().groups(record())) {
    if (group.code == 49) m_dashes.push_back(group.realOr(0));
  }
}

void TableImp::read() {
  // The block table of an old drawing is no TABLE record.
  m_symbols = dxf::RecordType::blockRecord;
  if (file().type(record()) != dxf::RecordType::table) return;
  m_symbols = dxf::RecordType::none;
  const auto name = firstGroup(file().groups(record()), 2);
  for (const TableKind& kind : kTables) {
    if (name && name->value == kind.name) m_symbols = kind.symbols;
  }
}

}  // namespace torva::db

using torva::db::Database;
using torva::dxf::kNoRecord;
using torva::dxf::RecordId;
using torva::dxf::RecordType;

namespace {

template <class Imp>
const Imp& impOf(const KdDbObject& object) {
  return static_cast<const Imp&>(*KdDbSystemInternals::getImpObject(&object));
}

const Database& databaseOf(const KdDbObject& object) {
  return *KdDbSystemInternals::getImpObject(&object)->database();
}

RecordId findBlockRecord(const Database& database, const std::wstring& name) {
  for (const RecordId block : database.blocks()) {
    if (torva::equalsIgnoringCase(database.blockName(block), name)) return block;
  }
  return kNoRecord;
}

/// Erased symbols are in no index; the records from the table to its end are looked through.
RecordId findErasedSymbol(const Database& database, RecordId table, const std::wstring& name) {
  const torva::dxf::DrawingFile& file = database.file();
  for (RecordId record = file.next(table); record != kNoRecord; record = file.next(record)) {
    const RecordType type = file.type(record);
    if (type == RecordType::endtab || type == RecordType::endsec || type == RecordType::eof) break;
    if (file.isErased(record) && torva::equalsIgnoringCase(torva::db::firstText(file, record, 2), name)) return record;
  }
  return kNoRecord;
}

torva::db::LayerData layerOf(const KdDbObject& object) {
  const KdDbObjectImp& imp = impOf<KdDbObjectImp>(object);
  return torva::db::readLayer(imp.file(), imp.record());
}

class BlockEntities final : public KdDbBlockTableRecordIterator {
 public:
  BlockEntities(Database& database, RecordId block) : m_database(database) {
    database.forEachBlockEntity(block, [this](RecordId record) { m_records.push_back(record); });
  }

  bool done() const override { return m_index >= m_records.size(); }
  void step() override { ++m_index; }
  KdDbObjectId entityId() const override { return done() ? KdDbObjectId() : m_database.idOf(m_records[m_index]); }
  const KdRxClass* entityClass() const override {
    const bool isMline = !done() && m_database.file().type(m_records[m_index]) == RecordType::mline;
    return isMline ? KdDbMline::desc() : KdDbEntity::desc();
  }
  KdStatus getEntity(KdDbEntity*& entity, KdOpenMode mode) const override {
    KdDbObject* object = nullptr;
    const KdStatus status = m_database.openUnlessLocked(object, entityId(), mode, false);
    if (status != KdStatus::ok) return status;
    if (!object->isKindOf(KdDbEntity::desc())) {
      object->close();
      return KdStatus::wrongClass;
    }
    entity = static_cast<KdDbEntity*>(object);
    return KdStatus::ok;
  }

 private:
  Database& m_database;
  std::vector<RecordId> m_records;
  std::size_t m_index = 0;
};

class Blocks final : public KdDbBlockTableIterator {
 public:
  explicit Blocks(Database& database) : m_database(database), m_records(database.blocks()) {}

  bool done() const override { return m_index >= m_records.size(); }
  void step() override { ++m_index; }
  KdDbObjectId recordId() const override { return done() ? KdDbObjectId() : m_database.idOf(m_records[m_index]); }
  KdStatus getRecord(KdDbBlockTableRecord*& record, KdOpenMode mode) const override {
    KdDbObject* object = nullptr;
    const KdStatus status = m_database.openObject(object, recordId(), mode, false);
    if (status == KdStatus::ok) record = static_cast<KdDbBlockTableRecord*>(object);
    return status;
  }

 private:
  Database& m_database;
  std::vector<RecordId> m_records;
  std::size_t m_index = 0;
};

}  // namespace

const std::wstring& KdDbSymbolTableRecord::name() const {
  return impOf<torva::db::SymbolImp>(*this).name();
}

bool KdDbSymbolTable::has(const std::wstring& name) const {
  KdDbObjectId id;
  return getAt(name, id) == KdStatus::ok;
}

KdStatus KdDbSymbolTable::getAt(const std::wstring& name, KdDbObjectId& id, bool getErased) const {
  const auto& imp = impOf<torva::db::TableImp>(*this);
  const Database& database = databaseOf(*this);
  RecordId record =
      imp.symbols() == RecordType::blockRecord ? findBlockRecord(database, name) : database.findSymbol(imp.symbols(), name);
  if (record == kNoRecord && getErased) record = findErasedSymbol(database, imp.record(), name);
  if (record == kNoRecord) return KdStatus::keyNotFound;
  id = database.idOf(record);
  return KdStatus::ok;
}

bool KdDbLayerTableRecord::isOff() const {
  return layerOf(*this).isOff;
}
bool KdDbLayerTableRecord::isFrozen() const {
  return layerOf(*this).isFrozen;
}
bool KdDbLayerTableRecord::isLocked() const {
  return layerOf(*this).isLocked;
}
KdCmColor KdDbLayerTableRecord::color() const {
  return layerOf(*this).color;
}

KdDbObjectId KdDbLayerTableRecord::linetypeId() const {
  const Database& database = databaseOf(*this);
  return database.idOf(database.findSymbol(RecordType::ltype, layerOf(*this).linetype));
}

int KdDbLinetypeTableRecord::numDashes() const {
  return static_cast<int>(impOf<torva::db::LinetypeImp>(*this).dashes().size());
}

double KdDbLinetypeTableRecord::dashLengthAt(int index) const {
  const std::vector<double>& dashes = impOf<torva::db::LinetypeImp>(*this).dashes();
  return index >= 0 && index < static_cast<int>(dashes.size()) ? dashes[static_cast<std::size_t>(index)] : 0;
}

KdDbBlockTableRecordIterator::~KdDbBlockTableRecordIterator() = default;
KdDbBlockTableIterator::~KdDbBlockTableIterator() = default;

std::unique_ptr<KdDbBlockTableRecordIterator> KdDbBlockTableRecord::newIterator() const {
  return std::make_unique<BlockEntities>(*m_imp->database(), m_imp->record());
}

KdStatus KdDbBlockTableRecord::appendEntity(KdDbEntity* entity, KdDbObjectId& id) {
  if (!entity) return KdStatus::nullPointer;
  if (!m_imp->isWritable()) return KdStatus::notOpen;
  if (entity->database()) return KdStatus::alreadyInDatabase;
  const KdStatus status = m_imp->database()->adoptEntity(*entity, m_imp->record());
  if (status == KdStatus::ok) id = entity->objectId();
  return status;
}

std::unique_ptr<KdDbBlockTableIterator> KdDbBlockTable::newIterator() const {
  return std::make_unique<Blocks>(*m_imp->database());
}

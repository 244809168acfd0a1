#include "base/current.h"
#include "db/database.h"
#include "db/mline_styles.h"

#include <kdrx/db_database.h>

using torva::Current;
using torva::db::Database;

namespace {

constexpr int kHalf = 32;

/// Runs a function of the programming interface; nothing may be thrown across it.
template <class Function, class Status>
Status guarded(Function function, Status failed) noexcept {
  try {
    return function();
  } catch (...) {
    return failed;
  }
}

class MlineIterator final : public KdDbMlineIterator {
 public:
  explicit MlineIterator(const Database& database) : m_database(database), m_mlines(database.mlines()) {}

  bool done() const override { return m_index >= m_mlines->all().size(); }
  void step() override { ++m_index; }
  KdDbObjectId mlineId() const override {
    return done() ? KdDbObjectId() : m_database.idOf(m_mlines->all()[m_index].record);
  }
  KdDbObjectId styleId() const override {
    return done() ? KdDbObjectId() : m_database.idOf(torva::db::mlineStyleOf(m_database, m_mlines->all()[m_index]));
  }

 private:
  const Database& m_database;
  const std::shared_ptr<const torva::db::MlineIndex> m_mlines;
  std::size_t m_index = 0;
};

}  // namespace

KdDbMlineIterator::~KdDbMlineIterator() = default;
KdDbDatabase::~KdDbDatabase() = default;

KdStatus KdDbDatabase::getBlockTable(KdDbBlockTable*& table, KdOpenMode mode) {
  KdDbObject* object = nullptr;
  const KdStatus status = static_cast<Database*>(this)->openObject(object, blockTableId(), mode, false);
  if (status == KdStatus::ok) table = static_cast<KdDbBlockTable*>(object);
  return status;
}

std::unique_ptr<KdDbMlineIterator> KdDbDatabase::newMlineIterator() const {
  return std::make_unique<MlineIterator>(static_cast<const Database&>(*this));
}

KdDbDatabase* kddbWorkingDatabase() noexcept {
  return Current<Database>::get();
}

KdStatus kddbOpenObject(KdDbObject*& object, KdDbObjectId id, KdOpenMode mode, bool openErased) noexcept {
  const auto open = [&] {
    if (id.isNull()) return KdStatus::nullObjectId;
    Database* database = Current<Database>::get();
    return database ? database->openUnlessLocked(object, id, mode, openErased) : KdStatus::unknownObjectId;
  };
  return guarded(open, KdStatus::unknownObjectId);
}

KdStatus kddbGetObjectId(KdDbObjectId& id, const KdName name) noexcept {
  if (!name) return KdStatus::nullPointer;
  if (name[0] == 0 && name[1] == 0) return KdStatus::nullObjectId;
  const auto word = static_cast<std::uint64_t>(name[0]) << kHalf | static_cast<std::uint32_t>(name[1]);
  const Database* database = Current<Database>::get();
  if (!database || database->recordOf(KdDbObjectId(word)) == torva::dxf::kNoRecord) return KdStatus::unknownObjectId;
  id = KdDbObjectId(word);
  return KdStatus::ok;
}

KdStatus kddbGetName(KdName name, KdDbObjectId id) noexcept {
  if (!name) return KdStatus::nullPointer;
  if (id.isNull()) return KdStatus::nullObjectId;
  const Database* database = Current<Database>::get();
  if (!database || database->recordOf(id) == torva::dxf::kNoRecord) return KdStatus::unknownObjectId;
  name[0] = static_cast<long>(id.word() >> kHalf);
  name[1] = static_cast<long>(static_cast<std::uint32_t>(id.word()));
  return KdStatus::ok;
}

void kddbNextUndoStep() noexcept {
  const auto next = [] {
    if (Database* database = Current<Database>::get()) database->nextUndoStep();
    return true;
  };
  (void)guarded(next, false);
}

int kddbNamedObjDict(KdName name) noexcept {
  const auto find = [&] {
    const Database* database = Current<Database>::get();
    const bool isFound = database && kddbGetName(name, database->namedObjectsDictionaryId()) == KdStatus::ok;
    return isFound ? kKdInputNormal : kKdInputError;
  };
  return guarded(find, kKdInputError);
}

int kddbDictSearch(const KdName dictionary, const wchar_t* key, KdResbuf** entry) noexcept {
  const auto search = [&] {
    if (!key || !entry) return kKdInputError;
    KdDbObjectId id;
    KdDbDictionary* object = nullptr;
    if (kddbGetObjectId(id, dictionary) != KdStatus::ok) return kKdInputError;
    if (kddbOpenObject(object, id, KdOpenMode::forRead) != KdStatus::ok) return kKdInputError;
    const KdStatus status = object->getAt(key, id);
    object->close();
    KdName name = {0, 0};
    if (status != KdStatus::ok || kddbGetName(name, id) != KdStatus::ok) return kKdInputError;
    *entry = new KdResbuf;
    (*entry)->restype = kKdResultName;
    (*entry)->value.name[0] = name[0];
    (*entry)->value.name[1] = name[1];
    return kKdInputNormal;
  };
  return guarded(search, kKdInputError);
}

#include <algorithm>

#include "base/text.h"
#include "db/database.h"
#include "db/dictionary_imp.h"

#include <kdrx/db_dictionary.h>

using torva::db::DictionaryEntry;

namespace {

using Entries = std::vector<DictionaryEntry>;

KdDbDictionaryImp& impOf(const KdDbDictionary& dictionary) {
  return static_cast<KdDbDictionaryImp&>(*KdDbSystemInternals::getImpObject(&dictionary));
}

class DictionaryIterator final : public KdDbDictionaryIterator {
 public:
  explicit DictionaryIterator(const KdDbDictionaryImp& imp) : m_imp(imp) {}

  bool done() const override { return m_index >= m_imp.entries().size(); }
  void next() override { ++m_index; }
  std::wstring name() const override { return done() ? std::wstring() : m_imp.entries()[m_index].name; }
  KdDbObjectId objectId() const override {
    return done() ? KdDbObjectId() : m_imp.database()->idOfHandle(m_imp.entries()[m_index].handle);
  }

 private:
  const KdDbDictionaryImp& m_imp;
  std::size_t m_index = 0;
};

}  // namespace

std::unique_ptr<KdDbObject> KdDbDictionaryImp::makeObject() {
  return std::unique_ptr<KdDbObject>(new KdDbDictionary);
}

std::vector<DictionaryEntry>& KdDbDictionaryImp::change() {
  touch();
  return m_entries;
}

torva::dxf::RecordText KdDbDictionaryImp::write() const {
  return torva::db::writeDictionary(file(), file().bytes(record()), m_entries);
}

KdDbDictionaryIterator::~KdDbDictionaryIterator() = default;

KdDbDictionary::KdDbDictionary() : KdDbObject(std::make_unique<KdDbDictionaryImp>()) {}
KdDbDictionary::~KdDbDictionary() = default;

int KdDbDictionary::numEntries() const {
  return static_cast<int>(impOf(*this).entries().size());
}

bool KdDbDictionary::has(const std::wstring& name) const {
  const Entries& entries = impOf(*this).entries();
  return torva::db::findEntry(entries, name) != entries.end();
}

KdStatus KdDbDictionary::getAt(const std::wstring& name, KdDbObjectId& id) const {
  const KdDbDictionaryImp& imp = impOf(*this);
  const auto found = torva::db::findEntry(imp.entries(), name);
  if (found == imp.entries().end()) return KdStatus::keyNotFound;
  id = imp.database()->idOfHandle(found->handle);
  return KdStatus::ok;
}

KdStatus KdDbDictionary::nameAt(KdDbObjectId id, std::wstring& name) const {
  const KdDbDictionaryImp& imp = impOf(*this);
  const torva::dxf::RecordId record = imp.database()->recordOf(id);
  if (record == torva::dxf::kNoRecord) return KdStatus::keyNotFound;
  const auto found = std::ranges::find(imp.entries(), imp.file().handle(record), &DictionaryEntry::handle);
  if (found == imp.entries().end()) return KdStatus::keyNotFound;
  name = found->name;
  return KdStatus::ok;
}

KdStatus KdDbDictionary::setAt(const std::wstring& name, KdDbObject* object, KdDbObjectId& id) {
  KdDbDictionaryImp& imp = impOf(*this);
  if (!object) return KdStatus::nullPointer;
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (name.empty()) return KdStatus::invalidInput;
  if (object->database()) return KdStatus::alreadyInDatabase;
  if (const KdStatus status = imp.database()->adoptObject(*object, imp.record()); status != KdStatus::ok) return status;
  id = object->objectId();
  const torva::dxf::Handle handle = object->handle();
  Entries& entries = imp.change();
  const auto found = torva::db::findEntry(entries, name);
  if (found == entries.end()) {
    entries.push_back({name, handle});
  } else {
    const torva::dxf::Handle former =
        std::exchange(entries[static_cast<std::size_t>(found - entries.begin())].handle, handle);
    imp.database()->noteUnnamed(imp.file().find(former));
  }
  return KdStatus::ok;
}

KdStatus KdDbDictionary::remove(const std::wstring& name) {
  KdDbDictionaryImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  const auto found = torva::db::findEntry(imp.entries(), name);
  if (found == imp.entries().end()) return KdStatus::keyNotFound;
  const auto index = found - imp.entries().begin();
  imp.database()->noteUnnamed(imp.file().find(found->handle));
  Entries& entries = imp.change();
  entries.erase(entries.begin() + index);
  return KdStatus::ok;
}

KdStatus KdDbDictionary::setName(const std::wstring& oldName, const std::wstring& newName) {
  KdDbDictionaryImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (newName.empty()) return KdStatus::invalidInput;
  const auto found = torva::db::findEntry(imp.entries(), oldName);
  if (found == imp.entries().end()) return KdStatus::keyNotFound;
  const auto other = torva::db::findEntry(imp.entries(), newName);
  if (other != imp.entries().end() && other != found) return KdStatus::duplicateKey;
  imp.change()[static_cast<std::size_t>(found - imp.entries().begin())].name = newName;
  return KdStatus::ok;
}

std::unique_ptr<KdDbDictionaryIterator> KdDbDictionary::newIterator() const {
  return std::make_unique<DictionaryIterator>(impOf(*this));
}

#include "db/entity_erasure.h"

#include <array>

#include "db/opened.h"
#include "db/record_groups.h"

#include <kdrx/db_dictionary.h>

namespace torva::db {

namespace {

constexpr int kFirstOwnerCode = 350, kLastOwnerCode = 369;  // soft and hard owners
constexpr int kGroupMember = 340;

void noteOwned(const dxf::DrawingFile& file, dxf::RecordId owner, std::vector<dxf::RecordId>& noted) {
  for (const dxf::Group& group : file.groups(owner)) {
    if (group.code < kFirstOwnerCode || group.code > kLastOwnerCode) continue;
    const dxf::RecordId owned = file.find(group.handle().value_or(0));
    if (owned == dxf::kNoRecord || isEntity(file, owned)) continue;
    if (ownerHandle(file.groups(owned)) == file.handle(owner)) noted.push_back(owned);
  }
}

/// Erases a record with its parts, and the objects that these name as their own and that name them as their owners.
void eraseWithOwned(Database& database, dxf::RecordId record) {
  const dxf::DrawingFile& file = database.file();
  std::vector<dxf::RecordId> waiting = {record};
  while (!waiting.empty()) {
    const dxf::RecordId owner = waiting.back();
    waiting.pop_back();
    if (file.isErased(owner)) continue;
    for (const dxf::RecordId part : withParts(file, owner)) noteOwned(file, part, waiting);
    database.setErased(owner, true);
  }
}

std::vector<dxf::RecordId> groupRecords(const Database& database) {
  constexpr std::array<std::wstring_view, 1> kGroups = {L"ACAD_GROUP"};
  const dxf::DrawingFile& file = database.file();
  std::vector<DictionaryEntry> storage;
  std::vector<dxf::RecordId> groups;
  const dxf::RecordId dictionary = database.findInDictionary(kGroups);
  if (dictionary == dxf::kNoRecord) return groups;
  for (const DictionaryEntry& entry : database.dictionary(dictionary, storage)) {
    const dxf::RecordId group = file.find(entry.handle);
    if (group != dxf::kNoRecord && !file.isErased(group) && file.typeName(group) == "GROUP") groups.push_back(group);
  }
  return groups;
}

/// Takes a group out of the dictionary that names it, and erases it.
void eraseGroup(Database& database, dxf::RecordId group) {
  const dxf::Handle owner = ownerHandle(database.file().groups(group));
  const Opened<KdDbDictionary> dictionary(database, database.idOfHandle(owner), KdOpenMode::forWrite);
  std::wstring name;
  if (dictionary && dictionary->nameAt(database.idOf(group), name) == KdStatus::ok) (void)dictionary->remove(name);
  eraseWithOwned(database, group);
}

void takeOutErasedMembers(Database& database, dxf::RecordId record) {
  const dxf::DrawingFile& file = database.file();
  dxf::RecordBuilder kept(file);
  bool hasMembers = false, hasLostMembers = false;
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == kGroupMember) {
      const dxf::RecordId member = file.find(group.handle().value_or(0));
      if (member != dxf::kNoRecord && file.isErased(member)) {
        hasLostMembers = true;
        continue;
      }
      hasMembers = true;
    }
    kept.copy(group);
  }
  if (!hasLostMembers) return;
  if (!hasMembers) return eraseGroup(database, record);
  database.setBytes(record, kept.take());
}

}  // namespace

void eraseEntities(Database& database, std::span<const dxf::RecordId> entities) {
  database.flush();
  for (const dxf::RecordId entity : entities) eraseWithOwned(database, entity);
  for (const dxf::RecordId group : groupRecords(database)) takeOutErasedMembers(database, group);
}

}  // namespace torva::db

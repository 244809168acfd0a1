#include "db/mline_styles.h"

#include <array>

#include "base/text.h"
#include "db/database.h"
#include "db/dictionary_imp.h"
#include "db/mline_imp.h"
#include "db/opened.h"
#include "db/system_variables.h"

#include <kdrx/db_mline_style.h>

namespace torva::db {

namespace {

/// Makes an empty dictionary under a name of the root dictionary.
void addDictionary(Database& database, KdDbDictionary& root, std::wstring_view name) {
  const dxf::Handle handle = database.file().newHandle();
  dxf::RecordBuilder bytes(database.file());
  bytes.name(0, "DICTIONARY");
  bytes.handle(5, handle);
  bytes.name(102, "{ACAD_REACTORS");
  bytes.handle(330, root.handle());
  bytes.name(102, "}");
  bytes.handle(330, root.handle());
  bytes.name(100, "AcDbDictionary");
  if (database.file().version() >= dxf::Version::r2000) bytes.integer(281, 1);
  database.appendToObjects(bytes.take());
  static_cast<KdDbDictionaryImp*>(KdDbSystemInternals::getImpObject(&root))
      ->change()
      .push_back({std::wstring(name), handle});
}

KdDbObjectId styleDictionary(const Database& database) {
  return database.idOf(database.findInDictionary(std::array{kMlineStyleDictionary}));
}

/// The style with a handle; kNoRecord when there is none, or no longer.
dxf::RecordId livingStyle(const Database& database, dxf::Handle handle) {
  const dxf::DrawingFile& file = database.file();
  const dxf::RecordId style = handle == 0 ? dxf::kNoRecord : file.find(handle);
  const bool isAlive = style != dxf::kNoRecord && file.type(style) == dxf::RecordType::mlineStyle && !file.isErased(style);
  return isAlive ? style : dxf::kNoRecord;
}

}  // namespace

dxf::RecordId findMlineStyle(const Database& database, std::wstring_view name) {
  const dxf::RecordId record = database.findInDictionary(std::array{kMlineStyleDictionary, name});
  return record != dxf::kNoRecord && database.file().type(record) == dxf::RecordType::mlineStyle ? record : dxf::kNoRecord;
}

dxf::RecordId mlineStyleOf(const Database& database, dxf::Handle handle, std::wstring_view name) {
  if (const dxf::RecordId byHandle = livingStyle(database, handle); byHandle != dxf::kNoRecord) return byHandle;
  const dxf::RecordId byName = findMlineStyle(database, name);
  return byName != dxf::kNoRecord ? byName : findMlineStyle(database, kStandardMlineStyle);
}

dxf::RecordId mlineStyleOf(const Database& database, const MlineIndex::Entry& mline) {
  const dxf::RecordId byHandle = livingStyle(database, mline.styleHandle);
  return byHandle != dxf::kNoRecord ? byHandle : mlineStyleOf(database, 0, database.mline(mline.record).styleName);
}

void renameInMlines(Database& database, dxf::RecordId style, const std::wstring& former, const std::wstring& name) {
  const auto usesStyle = [&](const MlineIndex::Entry& mline) {
    const dxf::RecordId byHandle = livingStyle(database, mline.styleHandle);
    if (byHandle != dxf::kNoRecord) return byHandle == style;
    return equalsIgnoringCase(database.mline(mline.record).styleName, former);
  };
  const auto mlines = database.mlines();
  std::vector<dxf::RecordId> users;
  for (const MlineIndex::Entry& mline : mlines->all()) {
    if (usesStyle(mline) && database.mline(mline.record).styleName != name) users.push_back(mline.record);
  }
  for (const dxf::RecordId user : users) {
    const Opened<KdDbMline> mline(database, database.idOf(user), KdOpenMode::forWrite);
    if (mline) static_cast<MlineImp*>(KdDbSystemInternals::getImpObject(&*mline))->change().styleName = name;
  }
}

std::vector<std::wstring> mlineStyleNames(const Database& database) {
  std::vector<std::wstring> names;
  const dxf::RecordId record = database.recordOf(styleDictionary(database));
  if (record == dxf::kNoRecord) return names;
  std::vector<DictionaryEntry> storage;
  for (const DictionaryEntry& entry : database.dictionary(record, storage)) {
    if (findMlineStyle(database, entry.name) != dxf::kNoRecord) names.push_back(entry.name);
  }
  return names;
}

std::wstring currentMlineStyle(const Database& database, const SystemVariables& variables) {
  const auto current = variables.get(L"CMLSTYLE");
  const auto* name = current ? std::get_if<std::wstring>(&*current) : nullptr;
  const bool exists = name && findMlineStyle(database, *name) != dxf::kNoRecord;
  return exists ? *name : std::wstring(kStandardMlineStyle);
}

Result<dxf::RecordId> makeStandardMlineStyle(Database& database) {
  constexpr double kHalfWidth = 0.5;
  if (const dxf::RecordId style = findMlineStyle(database, kStandardMlineStyle); style != dxf::kNoRecord) return style;
  if (styleDictionary(database).isNull()) {
    const Opened<KdDbDictionary> root(database, database.namedObjectsDictionaryId(), KdOpenMode::forWrite);
    if (!root) return fail(ErrorCode::notApplicable, "the drawing has no place for multiline styles");
    addDictionary(database, *root, kMlineStyleDictionary);
  }
  const Opened<KdDbDictionary> styles(database, styleDictionary(database), KdOpenMode::forWrite);
  auto style = std::make_unique<KdDbMlineStyle>();
  KdDbObjectId id;
  int index = 0;
  const std::wstring name(kStandardMlineStyle);
  const bool isMade =
      styles && style->setName(name) == KdStatus::ok && style->addElement(index, kHalfWidth, {}, {}) == KdStatus::ok &&
      style->addElement(index, -kHalfWidth, {}, {}) == KdStatus::ok && styles->setAt(name, style.get(), id) == KdStatus::ok;
  if (!isMade) return fail(ErrorCode::notApplicable, "the drawing's multiline styles cannot be changed");
  style.release()->close();
  return database.recordOf(id);
}

}  // namespace torva::db

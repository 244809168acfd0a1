#include "mlstyle/names/StyleNames.h"

#include <algorithm>

#include "mlstyle/OpenedObject.h"

#include <kdrx/db_dictionary.h>

#include <QtCore/QChar>

namespace {

constexpr std::wstring_view kForbidden = L"~`!@#%^&*()=+[]\\{}|:;'\"<>?/,.";

bool isLetterOrDigit(wchar_t c) {
  const auto code = static_cast<unsigned>(c);
  return QChar::isLetterOrNumber(code) || QChar::isMark(code);
}

}  // namespace

bool IsNewStyleName(const std::wstring& name) {
  const auto isAllowed = [](wchar_t c) { return isLetterOrDigit(c) || c == L'$' || c == L'-' || c == L'_'; };
  // What a language's letters are is not ours to say, so the second test stands even where the first one refuses all of
  // these.
  return std::ranges::all_of(name, isAllowed) && name.find_first_of(kForbidden) == name.npos;
}

bool IsRenamedStyleName(const std::wstring& name) {
  return std::ranges::all_of(name, isLetterOrDigit);
}

void AddStyleNames(CComboBox& box, KdDbObjectId dictionary, EStyleNames which) {
  const COpenedObject<KdDbDictionary> styles(dictionary, KdOpenMode::forRead);
  if (!styles) return;
  for (const auto entry = styles->newIterator(); !entry->done(); entry->next()) {
    std::wstring name;
    const bool isThere = styles->nameAt(entry->objectId(), name) == KdStatus::ok;
    if (isThere || which == EStyleNames::all) box.AddString(entry->name().c_str());
  }
}

bool HasStyleName(KdDbObjectId dictionary, const std::wstring& name) {
  const COpenedObject<KdDbDictionary> styles(dictionary, KdOpenMode::forRead);
  return styles && styles->has(name);
}

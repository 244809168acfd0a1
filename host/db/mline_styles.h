#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "db/mline_index.h"
#include "dxf/record.h"

namespace torva::db {

class Database;
class SystemVariables;

/// The style that every drawing with multilines has.
inline constexpr std::wstring_view kStandardMlineStyle = L"STANDARD";

/// The dictionary of multiline styles, an entry of the root dictionary.
inline constexpr std::wstring_view kMlineStyleDictionary = L"ACAD_MLINESTYLE";

/// The multiline style of a name, ignoring case; kNoRecord when there is none.
dxf::RecordId findMlineStyle(const Database& database, std::wstring_view name);

/// The style that a multiline names: by handle, if that is dead by name, else STANDARD; kNoRecord when there is none of
/// these.
dxf::RecordId mlineStyleOf(const Database& database, dxf::Handle handle, std::wstring_view name);
/// The same for a multiline of the index, which is read only when its handle is dead.
dxf::RecordId mlineStyleOf(const Database& database, const MlineIndex::Entry& mline);

/// Has the multilines of a style name it, beside its handle, by its new name. One that is open elsewhere keeps the former
/// name.
void renameInMlines(Database& database, dxf::RecordId style, const std::wstring& former, const std::wstring& name);

/// Name of the style that new multilines get: the current one, or STANDARD where the drawing does not have it.
std::wstring currentMlineStyle(const Database& database, const SystemVariables& variables);

/// Names of all multiline styles in the order of their dictionary.
std::vector<std::wstring> mlineStyleNames(const Database& database);

/// The style STANDARD; one of two elements, one unit apart and by layer, is made with its dictionary when there is none.
/// @return notApplicable when the drawing has no place for objects; nothing is changed then
Result<dxf::RecordId> makeStandardMlineStyle(Database& database);

}  // namespace torva::db

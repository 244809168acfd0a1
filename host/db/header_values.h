#pragma once

#include <optional>

#include "db/variable_table.h"
#include "dxf/drawing_file.h"

namespace torva::db {

/// A variable's value in a drawing's header; nothing when the header does not have it or has it unreadable.
std::optional<VariableValue> readHeaderValue(const dxf::DrawingFile& file, const VariableInfo& variable);

/// Writes a variable into the drawing's header. Requires: the value has the variable's type.
/// @return notApplicable when the drawing has no header
Result<void> writeHeaderValue(Database& drawing, const VariableInfo& variable, const VariableValue& value);

/// The color number for a text as CECOLOR has it: "BYLAYER", "BYBLOCK" or "1" to "255", in any case; nothing for another.
std::optional<int> colorIndexOf(std::wstring_view text);

}  // namespace torva::db

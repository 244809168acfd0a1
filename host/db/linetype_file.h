#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "dxf/record.h"

namespace torva::db {

class Database;

struct LinetypeDefinition {
  std::wstring name;
  std::wstring description;
  std::vector<double> dashes;  ///< Drawing units: positive a dash, negative a gap, 0 a dot.
};

/// The definition of a linetype (name ignoring case) in the text of a linetype file, UTF-8: a line "*NAME,description", then
/// a line "A,dash,gap,..." of 2 to 12 numbers, the first not negative. Empty lines and those that begin with ";" are passed
/// over.
/// @return unknownName when the text has no such linetype, invalidValue with its line when the definition cannot be read
TORVA_API Result<LinetypeDefinition> readLinetype(std::string_view content, std::wstring_view name);

/// Loads a linetype from a file into a drawing; one that the drawing has stays as it is.
/// @return the linetype's record; errors are those of readLinetype(), fileNotFound, fileNotReadable, and notApplicable when
///   the drawing has no linetype table; nothing is changed then
Result<dxf::RecordId> loadLinetype(Database& database, const std::string& path, const std::wstring& name);

}  // namespace torva::db

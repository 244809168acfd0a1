#pragma once

#include <string>
#include <vector>

#include "dxf/drawing_file.h"

namespace torva::db {

struct DictionaryEntry {
  std::wstring name;
  dxf::Handle handle = 0;

  bool operator==(const DictionaryEntry&) const = default;
};

/// Reads the entries of a DICTIONARY record in their order. A name without a handle is no entry.
std::vector<DictionaryEntry> readDictionary(const dxf::DrawingFile& file, dxf::Groups groups);

/// The bytes of a whole DICTIONARY record with other entries. What did not change keeps its text; groups that the host does
/// not know stay where they stood. New entries come after the last one there is.
std::string writeDictionary(const dxf::DrawingFile& file, std::string_view bytes,
                            const std::vector<DictionaryEntry>& entries);

/// The entry of a name, ignoring case; end() when there is none.
std::vector<DictionaryEntry>::const_iterator findEntry(const std::vector<DictionaryEntry>& entries, std::wstring_view name);

}  // namespace torva::db

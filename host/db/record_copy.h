#pragma once

#include <string>
#include <unordered_map>

#include "dxf/drawing_file.h"

namespace torva::db {

/// What copies are called that stand for their originals in each other's records.
struct CopyNames {
  std::unordered_map<dxf::Handle, dxf::Handle> handles;  ///< Of the copies by those of the originals.
  std::wstring block, newBlock;                          ///< A block that is copied too; empty for none.
};

/// The bytes of a record as those of its copy. Handles and the block's name become those of the copies; what belongs to the
/// original alone (what it owns, its extension dictionary, reactors, the boundary of an associative hatch, the annotation of
/// a leader) is left out.
std::string copiedRecord(const dxf::DrawingFile& file, dxf::RecordType type, std::string_view bytes, const CopyNames& names);

}  // namespace torva::db

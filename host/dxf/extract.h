#pragma once

#include <span>
#include <string>

#include "dxf/drawing_file.h"

namespace torva::dxf {

/// The bytes of a drawing that has this one's header and form, and of its other records only the given ones, as they would
/// be saved. Handles that name others lead nowhere there.
/// @param entities of the ENTITIES section, each with the records of its own that follow it
/// @param objects of the OBJECTS section
std::string extract(const DrawingFile& file, std::span<const RecordId> entities, std::span<const RecordId> objects);

}  // namespace torva::dxf

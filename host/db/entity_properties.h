#pragma once

#include <string>

#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>

namespace torva::db {

/// What every entity has besides its shape. The numbers are those of drawing files.
struct EntityProperties {
  std::wstring layer = L"0";
  std::wstring linetype = L"BYLAYER";
  KdCmColor color;
  double linetypeScale = 1;
  int lineWeight = -1;   ///< In 1/100 mm; -1 by layer, -2 by block, -3 default.
  int transparency = 0;  ///< Group 440 as stored; 0 by layer.
  bool isInvisible = false;

  bool operator==(const EntityProperties&) const = default;
};

/// Reads the common part of an entity; what the record lacks keeps its default.
EntityProperties readEntityProperties(const dxf::DrawingFile& file, dxf::RecordId record);

/// The bytes of a whole entity record with other properties; groups whose value did not change keep their text.
std::string writeEntityProperties(const dxf::DrawingFile& file, std::string_view bytes, const EntityProperties& properties);

}  // namespace torva::db

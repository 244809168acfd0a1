#pragma once

#include <optional>
#include <string>

#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>

namespace torva::db {

class Database;

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

/// Properties that entities are to have from now on; the others stay.
struct EntityPropertyChange {
  std::optional<std::wstring> layer, linetype;
  std::optional<KdCmColor> color;
  std::optional<int> lineWeight;
};

/// Changes an entity's record. The vertices and the end mark that are parts of it come along to another layer where they
/// stand on the layer of their entity; attributes have properties of their own and keep them. Requires: no object of it is
/// open; the names are those of the drawing.
void changeEntityProperties(Database& database, dxf::RecordId entity, const EntityPropertyChange& change);

}  // namespace torva::db

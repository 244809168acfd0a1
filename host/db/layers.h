#pragma once

#include <string>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>

namespace torva::db {

class Database;

/// What a layer says about the entities on it.
struct LayerData {
  std::wstring name;
  KdCmColor color = KdCmColor::byIndex(7);
  std::wstring linetype = L"Continuous";
  bool isOff = false;
  bool isFrozen = false;
  bool isLocked = false;

  bool operator==(const LayerData&) const = default;
};

/// Reads a LAYER record; what it lacks keeps its default.
LayerData readLayer(const dxf::DrawingFile& file, dxf::RecordId record);

/// All layers of a drawing in their order, erased ones left out.
TORVA_API std::vector<LayerData> readLayers(const Database& database);

/// Whether a LAYER record says that the layer is locked.
bool isLockedLayer(const dxf::DrawingFile& file, dxf::RecordId layer);

/// Whether an entity's record puts it on a locked layer, where commands leave entities as they are.
bool isOnLockedLayer(const Database& database, dxf::RecordId entity);

/// Changes a layer, its name excepted. Groups whose value does not change keep their text.
void changeLayer(Database& database, dxf::RecordId record, const LayerData& layer);

/// Adds a layer with the properties that new layers have.
/// @return invalidValue for a name that no layer can have in this version of drawings, notApplicable when the drawing has no
///   layer table. Requires: there is no layer of that name.
Result<dxf::RecordId> addLayer(Database& database, const std::wstring& name);

}  // namespace torva::db

#pragma once

#include <string>
#include <string_view>

#include "draw/display_list.h"
#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>
#include <kdrx/ge.h>

namespace torva::draw {

class Symbols;

/// The color index that stands for black on light and white on dark ground.
inline constexpr int kForegroundIndex = 7;

/// What every entity says of its looks, as it stands in the record.
struct EntityLook {
  std::string_view layer = "0";
  KdCmColor color;            ///< By layer at first.
  std::string_view linetype;  ///< Empty: by layer.
  double linetypeScale = 1;
  int lineweight = -1;  ///< 1/100 mm; -1 by layer, -2 by block, -3 default.
  bool isHidden = false;
  KdGeVector3d extrusion{0, 0, 1};
};

/// The views in the result are valid while the record's bytes are.
EntityLook readLook(const dxf::DrawingFile& file, dxf::RecordId record);

/// A resolved way to stroke and fill.
struct Pen {
  std::uint32_t rgb = 0;
  bool isForeground = true;
  std::wstring linetype;  ///< Empty: continuous.
  int lineweight = -3;
  double dashScale = 1;  ///< LTSCALE times the entity's own factor.
};

/// What "by block" and layer 0 stand for inside a block: the insert's pen and layer.
struct BlockPen {
  std::string_view layer;
  Pen pen;
};

/// The layer that counts for an entity: layer 0 inside a block means the insert's.
std::string_view effectiveLayer(const EntityLook& look, const BlockPen* block);

/// Resolves by layer and by block; `block` is null at top level, where by block means foreground and continuous.
Pen resolvePen(const EntityLook& look, const BlockPen* block, const dxf::DrawingFile& file, const Symbols& symbols);

/// A pen like `pen` in another color, which may be by layer (of `layer`) or by block (that of `pen`).
Pen withColor(const Pen& pen, const KdCmColor& color, std::string_view layer, const Symbols& symbols);

/// A pen like `pen` in another linetype: BYLAYER (of `layer`), BYBLOCK (that of `pen`) or a name.
Pen withLinetype(const Pen& pen, std::wstring_view linetype, std::string_view layer, const Symbols& symbols);

Appearance appearanceOf(const Pen& pen, const Symbols& symbols);

}  // namespace torva::draw

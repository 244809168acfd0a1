#pragma once

#include "base/export.h"
#include "draw/display_list.h"
#include "view/view.h"

#include <QPainter>

namespace torva::paint {

/// How something stands out above the picture.
enum class OverlayLook {
  highlight,  ///< What the cursor is on: a broad translucent line.
  selection,  ///< What is selected: dashes above its own color.
  ghost,      ///< What would be: translucent.
};

/// Paints a display list above a picture, with a painter whose unit is the view's pixel.
/// @param pixelRatio device pixels to a pixel of the desktop; lines and dashes grow with it
TORVA_API void paintOverlay(QPainter& painter, const draw::DisplayList& list, const view::View& view, OverlayLook look,
                            double pixelRatio = 1);

}  // namespace torva::paint

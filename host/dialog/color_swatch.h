#pragma once

#include "base/export.h"

#include <kdrx/cm_color.h>

#include <QtGui/QIcon>

class QPainter;

namespace torva::dialog {

/// Side of the icons of colors, in Qt's pixels.
inline constexpr int kSwatchPx = 14;

/// Paints a color in a frame. What is by layer or by block has an empty one; white, which is black on paper, is half of
/// each.
void paintSwatch(QPainter& painter, const QRect& area, const KdCmColor& color);
/// That as an icon, for plain screens and for those of twice the resolution.
TORVA_API QIcon swatchIcon(const KdCmColor& color);

}  // namespace torva::dialog

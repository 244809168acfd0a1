#pragma once

#include <cstdint>

#include <kdrx/export.h>

#include <QtGui/QPixmap>

class KdDbMlineStyle;

/// A picture of a multiline style: a sample multiline of two segments, whole, on transparent ground and in the colors of the
/// user's desktop where the style's are by layer or index 7. The drawing and its system variables stay as they are.
/// @param style any, of a drawing or not
/// @param size in Qt's pixels
/// @param devicePixelRatio pixels of the screen in one of Qt's, a side
/// @return null for an empty size and when the drawing has no current layer
QPixmap stylePicture(const KdDbMlineStyle& style, QSize size, double devicePixelRatio);

/// The same for who only knows this library by its names.
/// @param width, height in pixels
/// @return the address of a QImage, which belongs to the caller, who deletes it; 0 when there is no picture
extern "C" KDRX_API std::int64_t VEX_MlstyleBitmap(int width, int height, KdDbMlineStyle* style) noexcept;

#pragma once

#include <kdrx/export.h>

#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

class KdDbMline;
class KdDbMlineStyle;

/// How a picture is made.
struct KdPictureLook {
  QSize size;                   ///< In Qt's pixels.
  double devicePixelRatio = 1;  ///< Pixels of the screen in one of Qt's, a side; > 0.
  QColor foreground;            ///< Of what is black on white paper: color index 7.
  double linetypeScale = 1;     ///< How many of Qt's pixels a dash one unit long has.
};

/// A picture of a multiline in a style, on transparent ground: seen from above, whole, as large as there is room. Both may
/// stand outside of any drawing. Of the multiline count its vertices and their lists alone, which are to have an element for
/// each of the style's. What is by layer is as on the current layer of the working drawing, linetypes are those of the
/// working drawing; it is not changed, nor are its system variables. Dashes too short or too long to be recognised are shown
/// longer or shorter.
/// @return null for a size that is empty and when there is no working drawing, or no current layer in it
KDRX_API QImage kdrxMlinePicture(const KdDbMline& mline, const KdDbMlineStyle& style, const KdPictureLook& look) noexcept;

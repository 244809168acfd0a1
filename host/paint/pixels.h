#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

namespace torva::paint {

/// Moves the content of a 32-bit image; what is uncovered keeps what was there.
void shift(QImage& image, const QPoint& by);

/// Copies a rectangle from one 32-bit image to the same place in another of the same size. Requires: it lies in both.
void copy(const QImage& from, QImage& to, const QRect& rect);

/// Gives all pixels of a rectangle that lie within `area` a color. Requires: `area` lies in the image.
void fillPixels(QImage& image, const QRect& area, const QRect& rect, QRgb color);

}  // namespace torva::paint

#include "paint/pixels.h"

#include <algorithm>
#include <cstring>

namespace torva::paint {
namespace {

constexpr int kBytes = 4;  // a pixel

}  // namespace

void shift(QImage& image, const QPoint& by) {
  const int width = image.width() - std::abs(by.x()), height = image.height() - std::abs(by.y());
  if (width <= 0 || height <= 0) return;
  const int fromX = std::max(0, -by.x()), toX = std::max(0, by.x());
  for (int i = 0; i < height; ++i) {
    // Rows that are still to be read must not be written over.
    const int toY = by.y() > 0 ? image.height() - 1 - i : i;
    std::memmove(image.scanLine(toY) + toX * kBytes, image.constScanLine(toY - by.y()) + fromX * kBytes,
                 static_cast<std::size_t>(width) * kBytes);
  }
}

void copy(const QImage& from, QImage& to, const QRect& rect) {
  for (int y = rect.top(); y <= rect.bottom(); ++y) {
    std::memcpy(to.scanLine(y) + rect.left() * kBytes, from.constScanLine(y) + rect.left() * kBytes,
                static_cast<std::size_t>(rect.width()) * kBytes);
  }
}

void fillPixels(QImage& image, const QRect& area, const QRect& rect, QRgb color) {
  const QRect seen = rect & area;
  for (int y = seen.top(); y <= seen.bottom(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::fill(line + seen.left(), line + seen.right() + 1, color);
  }
}

}  // namespace torva::paint

#include "dialog/color_swatch.h"

#include <QtGui/QPainter>

namespace torva::dialog {
namespace {

constexpr int kForegroundIndex = 7;

QPixmap swatchOf(const KdCmColor& color, int scale) {
  QPixmap swatch(kSwatchPx * scale, kSwatchPx * scale);
  swatch.setDevicePixelRatio(scale);
  swatch.fill(Qt::transparent);
  QPainter painter(&swatch);
  paintSwatch(painter, {0, 1, kSwatchPx, kSwatchPx - 2}, color);
  return swatch;
}

}  // namespace

void paintSwatch(QPainter& painter, const QRect& area, const KdCmColor& color) {
  const QRectF frame = QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5);
  const bool isShown = !color.isByLayer() && !color.isByBlock();
  if (isShown) painter.fillRect(frame, QColor(QRgb(color.rgb() | 0xFF000000u)));
  if (isShown && !color.isTrueColor() && color.colorIndex() == kForegroundIndex) {
    painter.fillRect(frame.adjusted(frame.width() / 2, 0, 0, 0), Qt::black);
  }
  painter.setPen(QPen(Qt::darkGray, 1));
  painter.drawRect(frame);
}

QIcon swatchIcon(const KdCmColor& color) {
  QIcon icon;
  for (const int scale : {1, 2}) icon.addPixmap(swatchOf(color, scale));
  return icon;
}

}  // namespace torva::dialog

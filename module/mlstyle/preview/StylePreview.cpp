#include "mlstyle/preview/StylePreview.h"

#include "mlstyle/preview/SampleMline.h"

#include <kdrx/ed.h>
#include <kdrx/ui/picture.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>

namespace {

/// How long a dash of an inch is shown: linetypes are made for paper, in inches or in millimetres.
constexpr double kPixelsPerInch = 50, kMillimetresPerInch = 25.4;

/// How many pixels a dash one unit long has.
double linetypeScale() {
  KdResbuf measurement;
  const bool isKnown = kdedGetVar(L"MEASUREMENT", &measurement) == kKdInputNormal;
  return isKnown && measurement.value.shortInteger != 0 ? kPixelsPerInch / kMillimetresPerInch : kPixelsPerInch;
}

QImage pictureOf(const KdDbMlineStyle& style, QSize size, double devicePixelRatio) {
  if (size.isEmpty()) return {};
  const QColor foreground = QGuiApplication::palette().color(QPalette::Text);
  return kdrxMlinePicture(*makeSampleMline(style, size.width(), size.height()), style,
                          {size, devicePixelRatio, foreground, linetypeScale()});
}

}  // namespace

QPixmap stylePicture(const KdDbMlineStyle& style, QSize size, double devicePixelRatio) {
  return QPixmap::fromImage(pictureOf(style, size, devicePixelRatio));
}

std::int64_t VEX_MlstyleBitmap(int width, int height, KdDbMlineStyle* style) noexcept {
  try {
    const QImage picture = style ? pictureOf(*style, {width, height}, 1) : QImage();
    return picture.isNull() ? 0 : reinterpret_cast<std::int64_t>(new QImage(picture));
  } catch (const std::exception&) {
    return 0;
  }
}

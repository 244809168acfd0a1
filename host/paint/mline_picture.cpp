#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "db/database.h"
#include "draw/drawer.h"
#include "paint/painter.h"

#include <kdrx/ed.h>
#include <kdrx/ui/picture.h>

namespace torva::paint {
namespace {

/// Room around the multiline, for the width of its lines too, in Qt's pixels.
constexpr double kMargin = 6;
/// Length of a linetype's pattern, as a share of the picture's width, below which its dashes run together and above which
/// too few of them are seen.
constexpr double kShortestPatternShare = 0.04, kLongestPatternShare = 0.25;

/// The record of the current layer; kNoRecord when there is none.
dxf::RecordId currentLayer(const db::Database& database) {
  KdResbuf name;
  if (kdedGetVar(L"CLAYER", &name) != kKdInputNormal || name.restype != kKdResultString) return dxf::kNoRecord;
  const dxf::RecordId layer = database.findSymbol(dxf::RecordType::layer, name.value.string);
  kdutDelString(name.value.string);
  return layer;
}

std::optional<draw::DisplayList> listOf(const KdDbMline& mline, const KdDbMlineStyle& style) {
  const auto* database = static_cast<const db::Database*>(kddbWorkingDatabase());
  const dxf::RecordId layer = database ? currentLayer(*database) : dxf::kNoRecord;
  if (layer == dxf::kNoRecord) return std::nullopt;
  draw::DisplayList list;
  draw::Drawer(*database).draw(mline, style, layer, list);
  return list;
}

/// A plan view that shows all of a list, a margin away from the edges of a picture.
view::View viewOf(const draw::DisplayList& list, const QSize& sizePx, int marginPx) {
  view::View view;
  view.resize(sizePx.width() - 2 * marginPx, sizePx.height() - 2 * marginPx);
  geom::Box3 box;
  for (const draw::Primitive& primitive : list.primitives) box.add(draw::extents(primitive.shape));
  view.fit(box);
  return view;
}

/// Brings the length of a pattern to what its scale says, as far as it can be recognised in a picture of a width.
void scaleDashes(std::vector<double>& dashes, double scalePx, double unitsPerPixel, double widthPx) {
  const double length =
      std::transform_reduce(dashes.begin(), dashes.end(), 0.0, std::plus<>(), [](double dash) { return std::abs(dash); });
  if (length <= 0) return;
  const double shortestPx = kShortestPatternShare * widthPx, longestPx = kLongestPatternShare * widthPx;
  const double lengthPx = std::clamp(length * scalePx, shortestPx, longestPx);
  for (double& dash : dashes) dash *= lengthPx * unitsPerPixel / length;
}

QImage paintPicture(const draw::DisplayList& list, const view::View& view, const QSize& sizePx, int marginPx,
                    const KdPictureLook& look) {
  QImage picture(sizePx, QImage::Format_ARGB32_Premultiplied);
  if (picture.isNull()) return picture;
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(marginPx, marginPx);
  PaintStyle style;
  style.foreground = look.foreground.rgb();
  style.strokes = Strokes::weighted;
  style.pixelsPerMm *= look.devicePixelRatio;
  TextOutlines outlines;
  Painter(painter, view, outlines, style, QRectF(QPointF(-marginPx, -marginPx), sizePx)).paint(list);
  painter.end();
  picture.setDevicePixelRatio(look.devicePixelRatio);
  return picture;
}

QImage mlinePicture(const KdDbMline& mline, const KdDbMlineStyle& style, const KdPictureLook& look) {
  std::optional<draw::DisplayList> list = look.size.isEmpty() ? std::nullopt : listOf(mline, style);
  if (!list) return {};
  const QSize sizePx = look.size * look.devicePixelRatio;
  const int marginPx = static_cast<int>(std::lround(kMargin * look.devicePixelRatio));
  const view::View view = viewOf(*list, sizePx, marginPx);
  for (draw::Appearance& appearance : list->appearances) {
    scaleDashes(appearance.dashes, look.linetypeScale * look.devicePixelRatio, view.unitsPerPixel(1), sizePx.width());
  }
  return paintPicture(*list, view, sizePx, marginPx, look);
}

}  // namespace
}  // namespace torva::paint

QImage kdrxMlinePicture(const KdDbMline& mline, const KdDbMlineStyle& style, const KdPictureLook& look) noexcept {
  try {
    return torva::paint::mlinePicture(mline, style, look);
  } catch (const std::exception&) {
    return {};
  }
}

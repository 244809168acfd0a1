#include "paint/painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "draw/dashes.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLineF>
#include <QTransform>

namespace torva::paint {
namespace {

constexpr double kPixelsPerMm = 96 / 25.4;
constexpr int kDefaultWeight = 25, kDefaultWeightMark = -3;  // hundredths of a millimetre
/// Lines are cut off this far outside the picture: beyond it the painter's own arithmetic fails.
constexpr double kMargin = 1000;
/// Dashes shorter than this many pixels cannot be told from a continuous line.
constexpr double kShortestPattern = 2;
constexpr double kChordTolerancePx = 0.1;
/// Texts lower than this are painted as a line.
constexpr double kSmallestTextPx = 2;
constexpr int kFontPixels = 100;

QColor colorOf(const draw::Appearance& appearance) {
  return appearance.isForeground ? QColor(Qt::black) : QColor(QRgb(appearance.rgb | 0xFF000000u));
}

double widthOf(const draw::Appearance& appearance) {
  const int weight =
      appearance.lineweightHundredthsMm == kDefaultWeightMark ? kDefaultWeight : appearance.lineweightHundredthsMm;
  return std::max(1.0, weight * kPixelsPerMm / 100);
}

double patternLength(const std::vector<double>& dashes) {
  double length = 0;
  for (const double dash : dashes) length += std::abs(dash);
  return length;
}

/// Narrows [from, to] to where start + t step lies within [low, high].
bool clip(double start, double step, double low, double high, double& from, double& to) {
  if (step == 0) return start >= low && start <= high;
  const double a = (low - start) / step, b = (high - start) / step;
  from = std::max(from, std::min(a, b));
  to = std::min(to, std::max(a, b));
  return from <= to;
}

bool clipTo(const QRectF& area, QLineF& line) {
  double from = 0, to = 1;
  const bool isSeen = clip(line.x1(), line.dx(), area.left(), area.right(), from, to) &&
                      clip(line.y1(), line.dy(), area.top(), area.bottom(), from, to);
  if (isSeen) line = QLineF(line.pointAt(from), line.pointAt(to));
  return isSeen;
}

void appendLine(QPainterPath& path, const QLineF& line) {
  if (path.elementCount() == 0 || path.currentPosition() != line.p1()) path.moveTo(line.p1());
  path.lineTo(line.p2());
}

}  // namespace

Painter::Painter(QPainter& painter, const view::View& view)
    : m_painter(painter), m_view(view), m_pixelsPerUnit(1 / view.unitsPerPixel(1)) {}

void Painter::paint(const draw::DisplayList& list) {
  m_painter.setRenderHint(QPainter::Antialiasing);
  for (const draw::Primitive& primitive : list.primitives) {
    if (!isInSight(draw::extents(primitive.shape))) continue;
    const draw::Appearance& appearance = list.appearances[primitive.appearance];
    if (const auto* polyline = std::get_if<draw::Polyline>(&primitive.shape)) stroke(*polyline, appearance);
    if (const auto* arc = std::get_if<draw::Arc>(&primitive.shape)) stroke(*arc, appearance);
    if (const auto* area = std::get_if<draw::Fill>(&primitive.shape)) fill(*area, appearance);
    if (const auto* text = std::get_if<draw::Text>(&primitive.shape)) write(*text, appearance);
  }
}

void Painter::stroke(const draw::Polyline& polyline, const draw::Appearance& appearance) {
  std::vector<KdGePoint3d> points = polyline.points;
  if (polyline.isClosed) points.push_back(points.front());
  strokePath(points, appearance);
}

void Painter::stroke(const draw::Arc& arc, const draw::Appearance& appearance) {
  const bool isLarge = std::max(arc.xAxis.length(), arc.yAxis.length()) * m_pixelsPerUnit > kMargin;
  if (isLarge || !appearance.dashes.empty())
    return strokePath(flatten(arc, kChordTolerancePx / m_pixelsPerUnit), appearance);
  constexpr double kDegrees = 180 / std::numbers::pi;
  const QRectF unitCircle(-1, -1, 2, 2);
  QPainterPath path;
  path.arcMoveTo(unitCircle, arc.startRad * kDegrees);
  path.arcTo(unitCircle, arc.startRad * kDegrees, arc.sweepRad * kDegrees);
  // The unit circle's y axis points down in Qt.
  const QPointF center = pixel(arc.center), x = pixelOffset(arc.xAxis), y = -pixelOffset(arc.yAxis);
  strokePixels(QTransform(x.x(), x.y(), y.x(), y.y(), center.x(), center.y()).map(path), appearance);
}

void Painter::fill(const draw::Fill& fill, const draw::Appearance& appearance) {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  for (const auto& loop : fill.loops) {
    QPolygonF polygon;
    for (const KdGePoint3d& p : loop) polygon << pixel(p);
    path.addPolygon(polygon);
    path.closeSubpath();
  }
  // The thin border closes the seams between areas that share an edge.
  constexpr double kSeamPx = 0.5;
  m_painter.setPen(QPen(colorOf(appearance), kSeamPx));
  m_painter.setBrush(colorOf(appearance));
  m_painter.drawPath(path);
}

void Painter::write(const draw::Text& text, const draw::Appearance& appearance) {
  const double nominalWidth = draw::nominalTextWidth(text.text);
  const QPointF origin = pixel(text.origin), along = pixelOffset(text.xAxis), up = pixelOffset(text.yAxis);
  QFont font(QStringLiteral("sans-serif"));
  font.setPixelSize(kFontPixels);
  const QString letters = QString::fromStdWString(text.text);
  const QFontMetricsF metrics(font);
  const double advance = metrics.horizontalAdvance(letters), capHeight = metrics.capHeight();
  const bool isReadable = std::hypot(up.x(), up.y()) >= kSmallestTextPx && advance > 0 && capHeight > 0;
  if (!isReadable) {
    const QPointF middle = origin + up / 2;
    QPainterPath line(middle);
    line.lineTo(middle + along * nominalWidth);
    return strokePixels(line, appearance);
  }
  QPainterPath path;
  path.addText(0, 0, font, letters);
  // The line becomes as long as its nominal width, so that what is painted is what can be picked.
  const QPointF x = along * (nominalWidth / advance), y = up * (-1 / capHeight);
  m_painter.setPen(Qt::NoPen);
  m_painter.setBrush(colorOf(appearance));
  m_painter.drawPath(QTransform(x.x(), x.y(), y.x(), y.y(), origin.x(), origin.y()).map(path));
}

void Painter::strokePath(const std::vector<KdGePoint3d>& points, const draw::Appearance& appearance) {
  const bool hasPattern = patternLength(appearance.dashes) * m_pixelsPerUnit >= kShortestPattern;
  const QRectF area = QRectF(0, 0, m_view.widthPx(), m_view.heightPx()).adjusted(-kMargin, -kMargin, kMargin, kMargin);
  QPainterPath path;
  const auto append = [&](const std::vector<KdGePoint3d>& piece) {
    for (std::size_t i = 0; i + 1 < piece.size(); ++i) {
      QLineF line(pixel(piece[i]), pixel(piece[i + 1]));
      if (clipTo(area, line)) appendLine(path, line);
    }
    if (piece.size() != 1) return;
    path.moveTo(pixel(piece.front()));
    path.lineTo(pixel(piece.front()) + QPointF(0.01, 0));  // a dot: a line without length is not painted
  };
  if (hasPattern && points.size() > 1) {
    for (const auto& dash : draw::splitIntoDashes(points, appearance.dashes)) append(dash);
  } else {
    append(points);
  }
  strokePixels(path, appearance);
}

void Painter::strokePixels(const QPainterPath& path, const draw::Appearance& appearance) {
  QPen pen(colorOf(appearance), widthOf(appearance));
  pen.setCapStyle(Qt::RoundCap);
  pen.setJoinStyle(Qt::RoundJoin);
  m_painter.setPen(pen);
  m_painter.setBrush(Qt::NoBrush);
  m_painter.drawPath(path);
}

QPointF Painter::pixel(const KdGePoint3d& world) const {
  const KdGePoint3d p = m_view.toDisplay(world);
  const KdGePoint3d c = m_view.centerDcs();
  return {m_view.widthPx() / 2.0 + (p.x - c.x) * m_pixelsPerUnit, m_view.heightPx() / 2.0 - (p.y - c.y) * m_pixelsPerUnit};
}

QPointF Painter::pixelOffset(const KdGeVector3d& v) const {
  const KdGePoint3d origin = m_view.toDisplay({}), tip = m_view.toDisplay(KdGePoint3d{} + v);
  return {(tip.x - origin.x) * m_pixelsPerUnit, (origin.y - tip.y) * m_pixelsPerUnit};
}

bool Painter::isInSight(const geom::Box3& boxWcs) const {
  if (boxWcs.isEmpty()) return false;
  geom::Box3 box;
  for (const double x : {boxWcs.min.x, boxWcs.max.x}) {
    for (const double y : {boxWcs.min.y, boxWcs.max.y}) {
      for (const double z : {boxWcs.min.z, boxWcs.max.z}) box.add(m_view.toDisplay({x, y, z}));
    }
  }
  const KdGePoint3d c = m_view.centerDcs();
  const double halfWidth = m_view.width() / 2, halfHeight = m_view.height() / 2;
  return box.min.x <= c.x + halfWidth && box.max.x >= c.x - halfWidth && box.min.y <= c.y + halfHeight &&
         box.max.y >= c.y - halfHeight;
}

}  // namespace torva::paint

#include "paint/painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "draw/dashes.h"

#include <QLineF>
#include <QTransform>

namespace torva::paint {
namespace {

constexpr int kDefaultWeight = 25, kDefaultWeightMark = -3;  // hundredths of a millimetre
/// Lines are cut off this far outside the picture: beyond it the painter's own arithmetic fails.
constexpr double kMargin = 1000;
/// Dashes shorter than this many pixels cannot be told from a continuous line.
constexpr double kShortestPattern = 2;
constexpr double kChordTolerancePx = 0.1;

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

/// Moves a line along an axis to the middle of its pixels, where it is one pixel wide, not two half covered ones.
void sharpen(QLineF& line) {
  constexpr double kAlongAxisPx = 0.01;
  // Round coordinates often lie just between two pixels: rounding must not choose.
  constexpr double kBiasPx = 1.0 / 1024;
  const auto middle = [](double value) { return std::floor(value + kBiasPx) + 0.5; };
  const double x = middle(line.x1()), y = middle(line.y1());
  if (std::abs(line.dx()) < kAlongAxisPx) line = {x, line.y1(), x, line.y2()};
  if (std::abs(line.dy()) < kAlongAxisPx) line = {line.x1(), y, line.x2(), y};
}

void appendLine(QPainterPath& path, const QLineF& line) {
  if (path.elementCount() == 0 || path.currentPosition() != line.p1()) path.moveTo(line.p1());
  path.lineTo(line.p2());
}

/// A line without length is not painted.
const QPointF kDot(0.01, 0);

}  // namespace

double PaintStyle::widthPx(const draw::Appearance& appearance) const {
  if (marking) return std::max(1.0, marking->widthPx);
  const int weight =
      appearance.lineweightHundredthsMm == kDefaultWeightMark ? kDefaultWeight : appearance.lineweightHundredthsMm;
  return std::max(1.0, weight * pixelsPerMm / 100);
}

double PaintStyle::reachPx() const {
  constexpr double kHairlineReachPx = 2;  // half a pixel and rounding
  constexpr double kHeaviestMm = 2.11;
  return kHairlineReachPx + (strokes == Strokes::hairlines ? 0 : kHeaviestMm * pixelsPerMm / 2);
}

Painter::Painter(QPainter& painter, const view::View& view, TextOutlines& outlines, const PaintStyle& style,
                 const QRectF& area)
    : m_painter(painter),
      m_outlines(outlines),
      m_style(style),
      m_pixel(view),
      m_area(area),
      m_lineArea(QRectF(0, 0, view.widthPx(), view.heightPx()).adjusted(-kMargin, -kMargin, kMargin, kMargin)) {
  m_painter.setRenderHint(QPainter::Antialiasing, m_style.edges == Edges::smooth);
}

Painter::~Painter() {
  flush();
}

void Painter::paint(const draw::DisplayList& list) {
  for (const draw::Primitive& primitive : list.primitives) paint(primitive, list.appearances[primitive.appearance]);
}

void Painter::paint(const draw::Primitive& primitive, const draw::Appearance& appearance) {
  if (const auto* polyline = std::get_if<draw::Polyline>(&primitive.shape)) return stroke(*polyline, appearance);
  if (!isInSight(primitive.shape)) return;
  if (const auto* arc = std::get_if<draw::Arc>(&primitive.shape)) stroke(*arc, appearance);
  if (const auto* area = std::get_if<draw::Fill>(&primitive.shape)) fill(*area, appearance);
  if (const auto* text = std::get_if<draw::Text>(&primitive.shape)) write(*text, appearance);
}

void Painter::flush() {
  if (m_hairlines.isEmpty()) return;
  m_painter.setPen(QPen(m_hairlineColor, 0));
  m_painter.drawLines(m_hairlines);
  m_hairlines.clear();
}

void Painter::stroke(const draw::Polyline& polyline, const draw::Appearance& appearance) {
  strokePath(polyline.points, polyline.isClosed, appearance);
}

void Painter::stroke(const draw::Arc& arc, const draw::Appearance& appearance) {
  const bool isLarge = std::max(arc.xAxis.length(), arc.yAxis.length()) * m_pixel.pixelsPerUnit() > kMargin;
  if (isLarge || !appearance.dashes.empty() || isHairline(appearance))
    return strokePath(flatten(arc, kChordTolerancePx / m_pixel.pixelsPerUnit()), false, appearance);
  constexpr double kDegrees = 180 / std::numbers::pi;
  const QRectF unitCircle(-1, -1, 2, 2);
  QPainterPath path;
  path.arcMoveTo(unitCircle, arc.startRad * kDegrees);
  path.arcTo(unitCircle, arc.startRad * kDegrees, arc.sweepRad * kDegrees);
  // The unit circle's y axis points down in Qt.
  const QPointF center = m_pixel(arc.center), x = m_pixel(arc.xAxis), y = -m_pixel(arc.yAxis);
  strokeCurve(QTransform(x.x(), x.y(), y.x(), y.y(), center.x(), center.y()).map(path), appearance);
}

void Painter::fill(const draw::Fill& fill, const draw::Appearance& appearance) {
  flush();
  // The thin border closes the seams between areas that share an edge.
  constexpr double kSeamPx = 0.5;
  m_painter.setPen(QPen(colorOf(appearance), m_style.edges == Edges::smooth ? kSeamPx : 0));
  m_painter.setBrush(colorOf(appearance));
  if (fill.loops.size() == 1) {
    QPolygonF polygon;
    for (const KdGePoint3d& p : fill.loops.front()) polygon << m_pixel(p);
    m_painter.drawPolygon(polygon, Qt::OddEvenFill);
    return;
  }
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  for (const auto& loop : fill.loops) {
    QPolygonF polygon;
    for (const KdGePoint3d& p : loop) polygon << m_pixel(p);
    path.addPolygon(polygon);
    path.closeSubpath();
  }
  m_painter.drawPath(path);
}

void Painter::write(const draw::Text& text, const draw::Appearance& appearance) {
  const double nominalWidth = draw::nominalTextWidth(text.text);
  const bool isReadable = text.yAxis.length() * m_pixel.pixelsPerUnit() >= m_style.smallestTextPx;
  const bool hasLetters = isReadable && m_outlines.capHeight() > 0 && m_outlines.of(text.text).advance > 0;
  if (!hasLetters) {
    const KdGePoint3d middle = text.origin + text.yAxis * 0.5;
    return strokePath({middle, middle + text.xAxis * nominalWidth}, false, {appearance.rgb, appearance.isForeground, {}});
  }
  flush();
  const TextOutlines::Outline& outline = m_outlines.of(text.text);
  // The line becomes as long as its nominal width, so that what is painted is what can be picked.
  const QPointF origin = m_pixel(text.origin);
  const QPointF x = m_pixel(text.xAxis) * (nominalWidth / outline.advance);
  const QPointF y = m_pixel(text.yAxis) * (-1 / m_outlines.capHeight());
  m_painter.setPen(Qt::NoPen);
  m_painter.setBrush(colorOf(appearance));
  m_painter.setRenderHint(QPainter::Antialiasing);
  m_painter.drawPath(QTransform(x.x(), x.y(), y.x(), y.y(), origin.x(), origin.y()).map(outline.path));
  m_painter.setRenderHint(QPainter::Antialiasing, m_style.edges == Edges::smooth);
}

void Painter::strokePath(const std::vector<KdGePoint3d>& points, bool isClosed, const draw::Appearance& appearance) {
  if (!takePoints(points, isClosed)) return;
  const bool hasPattern =
      patternLength(appearance.dashes) * m_pixel.pixelsPerUnit() >= kShortestPattern && points.size() > 1;
  if (!hasPattern) return strokePixels(appearance);
  std::vector<KdGePoint3d> path = points;
  if (isClosed) path.push_back(path.front());
  for (const auto& dash : draw::splitIntoDashes(path, appearance.dashes)) {
    if (takePoints(dash, false)) strokePixels(appearance);
  }
}

bool Painter::takePoints(const std::vector<KdGePoint3d>& points, bool isClosed) {
  m_points.clear();
  double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
  for (const KdGePoint3d& p : points) {
    const QPointF pixel = m_pixel(p);
    left = std::min(left, pixel.x()), right = std::max(right, pixel.x());
    top = std::min(top, pixel.y()), bottom = std::max(bottom, pixel.y());
    m_points.append(pixel);
  }
  if (isClosed) m_points.append(QPointF(m_points.front()));
  if (m_points.size() == 1) m_points.append(m_points.front() + kDot);
  return left <= m_area.right() && right >= m_area.left() && top <= m_area.bottom() && bottom >= m_area.top();
}

void Painter::strokePixels(const draw::Appearance& appearance) {
  if (isHairline(appearance)) {
    const QColor color = colorOf(appearance);
    if (color != m_hairlineColor) flush();
    m_hairlineColor = color;
    for (int i = 1; i < m_points.size(); ++i) {
      QLineF line(m_points[i - 1], m_points[i]);
      if (!clipTo(m_lineArea, line)) continue;
      sharpen(line);
      m_hairlines.append(line);
    }
    return;
  }
  QPainterPath path;
  for (int i = 1; i < m_points.size(); ++i) {
    QLineF line(m_points[i - 1], m_points[i]);
    if (clipTo(m_lineArea, line)) appendLine(path, line);
  }
  strokeCurve(path, appearance);
}

void Painter::strokeCurve(const QPainterPath& path, const draw::Appearance& appearance) {
  flush();
  m_painter.setPen(penOf(appearance));
  m_painter.setBrush(Qt::NoBrush);
  m_painter.drawPath(path);
}

bool Painter::isHairline(const draw::Appearance& appearance) const {
  if (m_style.marking) return m_style.marking->dashesPx.empty() && m_style.marking->widthPx <= 1;
  return m_style.strokes == Strokes::hairlines || (m_style.strokes == Strokes::weighted && m_style.widthPx(appearance) <= 1);
}

bool Painter::isInSight(const draw::Shape& shape) const {
  const geom::Box3 box = draw::extents(shape);
  if (box.isEmpty()) return false;
  const QRectF r = m_pixel(box);
  return r.left() <= m_area.right() && r.right() >= m_area.left() && r.top() <= m_area.bottom() &&
         r.bottom() >= m_area.top();
}

QColor Painter::colorOf(const draw::Appearance& appearance) const {
  if (m_style.marking) return m_style.marking->color;
  return QColor(appearance.isForeground ? m_style.foreground : QRgb(appearance.rgb | 0xFF000000u));
}

QPen Painter::penOf(const draw::Appearance& appearance) const {
  const double width = m_style.widthPx(appearance);
  QPen pen(colorOf(appearance), width);
  pen.setCapStyle(Qt::RoundCap);
  pen.setJoinStyle(Qt::RoundJoin);
  if (!m_style.marking || m_style.marking->dashesPx.empty()) return pen;
  QVector<qreal> pattern;  // in widths of the pen
  for (const double dash : m_style.marking->dashesPx) pattern.append(dash / width);
  pen.setCapStyle(Qt::FlatCap);
  pen.setDashPattern(pattern);
  return pen;
}

}  // namespace torva::paint

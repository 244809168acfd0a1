#pragma once

#include <optional>
#include <vector>

#include "draw/display_list.h"
#include "paint/pixel_map.h"
#include "paint/text_outlines.h"
#include "view/view.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QVector>

namespace torva::paint {

enum class Strokes {
  paper,      ///< As wide as the lineweight says, a pixel at least, with round ends and corners.
  hairlines,  ///< A pixel wide, whatever the lineweight.
  weighted,   ///< Hairlines, but as on paper where the lineweight is more than a pixel.
};

enum class Edges { smooth, jagged };

/// A look that all shapes get instead of their own.
struct Marking {
  QColor color;
  double widthPx = 1;
  std::vector<double> dashesPx = {};  ///< Dash and gap in turns; empty: continuous.
};

/// How display lists are painted; by default as on white paper.
struct PaintStyle {
  QRgb foreground = 0xFF000000;  ///< Of shapes in foreground color.
  Strokes strokes = Strokes::paper;
  Edges edges = Edges::smooth;  ///< Of lines and areas; letters are always smooth.
  double pixelsPerMm = 96 / 25.4;
  double smallestTextPx = 2;  ///< Height of capitals below which a text is painted as a line.
  std::optional<Marking> marking = {};

  /// Width of the strokes of an appearance, at least 1.
  double widthPx(const draw::Appearance& appearance) const;
  /// How far strokes may reach beyond the boxes of what is painted.
  double reachPx() const;
};

/// Paints what a view shows with a QPainter whose unit is the view's pixel, the origin at the upper left. Hairlines of one
/// color that follow each other are painted together: the last of them at flush() or when this object ends.
class Painter {
 public:
  /// What lies outside of `area`, a rectangle of pixels, is passed over. All arguments but the last two must outlive this
  /// object.
  Painter(QPainter& painter, const view::View& view, TextOutlines& outlines, const PaintStyle& style, const QRectF& area);
  ~Painter();

  /// Paints all primitives in their order.
  void paint(const draw::DisplayList& list);
  /// Paints one of them.
  void paint(const draw::Primitive& primitive, const draw::Appearance& appearance);
  void flush();

 private:
  void stroke(const draw::Polyline& polyline, const draw::Appearance& appearance);
  void stroke(const draw::Arc& arc, const draw::Appearance& appearance);
  void fill(const draw::Fill& fill, const draw::Appearance& appearance);
  void write(const draw::Text& text, const draw::Appearance& appearance);
  void strokePath(const std::vector<KdGePoint3d>& points, bool isClosed, const draw::Appearance& appearance);
  void strokePixels(const draw::Appearance& appearance);
  void strokeCurve(const QPainterPath& path, const draw::Appearance& appearance);

  /// Maps a path to m_points; false when it lies out of sight.
  bool takePoints(const std::vector<KdGePoint3d>& points, bool isClosed);
  bool isHairline(const draw::Appearance& appearance) const;
  bool isInSight(const draw::Shape& shape) const;
  QColor colorOf(const draw::Appearance& appearance) const;
  QPen penOf(const draw::Appearance& appearance) const;

  QPainter& m_painter;
  TextOutlines& m_outlines;
  const PaintStyle m_style;
  const PixelMap m_pixel;
  const QRectF m_area;      // what is painted
  const QRectF m_lineArea;  // where lines are cut off
  QPolygonF m_points;       // of the path at hand
  QVector<QLineF> m_hairlines;
  QColor m_hairlineColor;
};

}  // namespace torva::paint

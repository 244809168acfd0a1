#pragma once

#include "draw/display_list.h"
#include "view/view.h"

#include <QPainter>
#include <QPainterPath>

namespace torva::paint {

/// Paints what a view shows with a QPainter whose unit is the view's pixel, the origin at the upper left.
class Painter {
 public:
  /// Both must outlive this object.
  Painter(QPainter& painter, const view::View& view);

  /// Paints all primitives in their order. Foreground color is black.
  void paint(const draw::DisplayList& list);

 private:
  void stroke(const draw::Polyline& polyline, const draw::Appearance& appearance);
  void stroke(const draw::Arc& arc, const draw::Appearance& appearance);
  void fill(const draw::Fill& fill, const draw::Appearance& appearance);
  void write(const draw::Text& text, const draw::Appearance& appearance);
  void strokePath(const std::vector<KdGePoint3d>& points, const draw::Appearance& appearance);
  void strokePixels(const QPainterPath& path, const draw::Appearance& appearance);

  QPointF pixel(const KdGePoint3d& world) const;
  QPointF pixelOffset(const KdGeVector3d& v) const;
  bool isInSight(const geom::Box3& boxWcs) const;

  QPainter& m_painter;
  const view::View& m_view;
  double m_pixelsPerUnit;
};

}  // namespace torva::paint

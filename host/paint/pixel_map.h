#pragma once

#include "geom/box.h"
#include "view/view.h"

#include <QPointF>
#include <QRectF>

namespace torva::paint {

/// From the world to the pixels of a view: origin at the upper left, y down.
class PixelMap {
 public:
  explicit PixelMap(const view::View& view);

  QPointF operator()(const KdGePoint3d& world) const { return m_middlePx + (*this)(world - m_middle); }
  QPointF operator()(const KdGeVector3d& v) const { return m_x * v.x + m_y * v.y + m_z * v.z; }
  /// The rectangle that a box fills. Requires: the box is not empty.
  QRectF operator()(const geom::Box3& boxWcs) const;

  double pixelsPerUnit() const { return m_pixelsPerUnit; }

 private:
  double m_pixelsPerUnit;
  KdGePoint3d m_middle;  // of the view, in the world
  QPointF m_middlePx;
  QPointF m_x, m_y, m_z;  // of the world, in pixels a unit
};

}  // namespace torva::paint

#include "paint/pixel_map.h"

#include <cmath>

namespace torva::paint {

PixelMap::PixelMap(const view::View& view)
    : m_pixelsPerUnit(1 / view.unitsPerPixel(1)),
      m_middle(view.toWorld(view.centerDcs())),
      m_middlePx(view.widthPx() / 2.0, view.heightPx() / 2.0) {
  const KdGePoint3d origin = view.toDisplay({});
  const auto axis = [&](const KdGePoint3d& tip) {
    const KdGeVector3d v = view.toDisplay(tip) - origin;
    return QPointF(v.x, -v.y) * m_pixelsPerUnit;
  };
  m_x = axis({1, 0, 0}), m_y = axis({0, 1, 0}), m_z = axis({0, 0, 1});
}

QRectF PixelMap::operator()(const geom::Box3& boxWcs) const {
  const KdGeVector3d half = (boxWcs.max - boxWcs.min) * 0.5;
  const QPointF center = (*this)(boxWcs.min + half);
  const double reachX = std::abs(m_x.x()) * half.x + std::abs(m_y.x()) * half.y + std::abs(m_z.x()) * half.z;
  const double reachY = std::abs(m_x.y()) * half.x + std::abs(m_y.y()) * half.y + std::abs(m_z.y()) * half.z;
  return {center.x() - reachX, center.y() - reachY, 2 * reachX, 2 * reachY};
}

}  // namespace torva::paint

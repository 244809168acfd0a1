#include "paint/region_painter.h"

#include <algorithm>
#include <cmath>

#include "paint/pixels.h"

namespace torva::paint {
namespace {

/// What is found at once without a break that is felt.
constexpr std::size_t kMostFound = 20'000;
/// Records looked at in one go where all are looked at.
constexpr std::size_t kScanned = 5'000;
/// Regions smaller than this are not painted in parts.
constexpr int kSmallestRegionPx = 64;
/// Looking at the clock after each of them would cost more than painting them.
constexpr int kDotsPerLook = 64, kPrimitivesPerLook = 64;
/// Up to this size a box says all that can be seen.
constexpr double kDotPx = 1;
/// Up to this length the box of an entity that is as thin as a dot is painted as a line.
constexpr double kShortLinePx = 4;
int floorPx(double value) {
  return static_cast<int>(std::floor(value));
}

/// The pixels of the entity's box when they say all that can be seen; empty when not.
QRect dotOf(const QRectF& box) {
  const double most = std::max(box.width(), box.height()), least = std::min(box.width(), box.height());
  if (least > kDotPx || most > kShortLinePx) return {};
  const QPointF center = box.center();
  const int left = floorPx(box.width() > kDotPx ? box.left() : center.x());
  const int top = floorPx(box.height() > kDotPx ? box.top() : center.y());
  const int right = floorPx(box.width() > kDotPx ? box.right() : center.x());
  const int bottom = floorPx(box.height() > kDotPx ? box.bottom() : center.y());
  return {QPoint(left, top), QPoint(right, bottom)};
}

}  // namespace

bool RegionPainter::find(const Canvas& canvas) {
  const double reach = canvas.style.reachPx(), unit = canvas.view.unitsPerPixel(1);
  const KdGePoint3d upperLeft =
      canvas.view.centerDcs() + KdGeVector3d{-canvas.view.width() / 2, canvas.view.height() / 2, 0};
  const view::PickWindow window{
      upperLeft + KdGeVector3d{(m_rect.left() - reach) * unit, -(m_rect.bottom() + 1 + reach) * unit, 0},
      upperLeft + KdGeVector3d{(m_rect.right() + 1 + reach) * unit, -(m_rect.top() - reach) * unit, 0}};
  // In a view that is not straight from above every region costs a look at the whole drawing, so there are no parts.
  const bool isPlan = canvas.view.isPlan();
  if (isPlan && canvas.picker.query(window, canvas.view, kMostFound, m_entities)) return true;
  m_entities.clear();
  m_scanFrom = 0;
  return !isPlan || std::max(m_rect.width(), m_rect.height()) <= kSmallestRegionPx;
}

bool RegionPainter::fetch(const Canvas& canvas) {
  if (m_next < m_entities.size()) return true;
  if (m_scanFrom == dxf::kNoRecord) return false;
  m_scanFrom = canvas.picker.scan(m_scanFrom, kScanned, m_entities);
  m_next = 0;
  const PixelMap pixel(canvas.view);
  const double reach = canvas.style.reachPx();
  const QRectF area = QRectF(m_rect).adjusted(-reach, -reach, reach, reach);
  std::erase_if(m_entities, [&](const view::BoxedEntity& entity) {
    const QRectF box = pixel(entity.box.box());
    return box.right() < area.left() || box.left() > area.right() || box.bottom() < area.top() || box.top() > area.bottom();
  });
  return true;
}

bool RegionPainter::paint(const Canvas& canvas, QImage& image, Clock::time_point end) {
  QPainter qpainter(&image);
  qpainter.setClipRect(m_rect);
  if (!m_isBegun) fillPixels(image, m_rect, m_rect, canvas.background);
  m_isBegun = true;
  const double reach = canvas.style.reachPx();
  Painter painter(qpainter, canvas.view, canvas.outlines, canvas.style,
                  QRectF(m_rect).adjusted(-reach, -reach, reach, reach));
  const PixelMap pixel(canvas.view);
  int dots = 0;
  while (fetch(canvas)) {
    for (; m_next < m_entities.size(); m_next += m_nextPrimitive == 0) {
      const view::BoxedEntity& entity = m_entities[m_next];
      const QRect dot = dotOf(pixel(entity.box.box()));
      if (dot.isValid()) {
        painter.flush();
        const draw::Appearance own = canvas.picker.drawer().ownColor(entity.id);
        fillPixels(image, m_rect, dot, own.isForeground ? canvas.style.foreground : own.rgb | 0xFF000000u);
        if (++dots % kDotsPerLook != 0) continue;
      } else {
        paintShapes(entity.id, canvas, painter, end);
      }
      if (Clock::now() < end) continue;
      m_next += m_nextPrimitive == 0;
      return m_next == m_entities.size() && m_scanFrom == dxf::kNoRecord;
    }
    if (Clock::now() >= end) return m_scanFrom == dxf::kNoRecord;
  }
  return true;
}

void RegionPainter::paintShapes(dxf::RecordId entity, const Canvas& canvas, Painter& painter, Clock::time_point end) {
  const draw::DisplayList& list = canvas.cache.of(entity);
  for (; m_nextPrimitive < list.primitives.size(); ++m_nextPrimitive) {
    const draw::Primitive& primitive = list.primitives[m_nextPrimitive];
    painter.paint(primitive, list.appearances[primitive.appearance]);
    const bool isLookDue = m_nextPrimitive % kPrimitivesPerLook == kPrimitivesPerLook - 1;
    if (!isLookDue || m_nextPrimitive + 1 == list.primitives.size()) continue;
    painter.flush();
    if (Clock::now() < end) continue;
    ++m_nextPrimitive;
    return;
  }
  m_nextPrimitive = 0;
}

}  // namespace torva::paint

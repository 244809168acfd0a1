#pragma once

#include <chrono>
#include <vector>

#include "paint/display_cache.h"
#include "paint/painter.h"
#include "view/picker.h"

#include <QImage>
#include <QRect>

namespace torva::paint {

using Clock = std::chrono::steady_clock;

/// What painting a region needs of the picture.
struct Canvas {
  view::Picker& picker;
  DisplayCache& cache;
  TextOutlines& outlines;
  const view::View& view;
  const PaintStyle& style;
  QRgb background;
};

/// Paints a rectangle of a picture in slices of time, entities in drawing order.
class RegionPainter {
 public:
  explicit RegionPainter(const QRect& rect) : m_rect(rect) {}

  const QRect& rect() const { return m_rect; }

  /// Finds what is to be painted. False when it is so much that the region should be painted in parts; painting it as a
  /// whole is possible nevertheless.
  bool find(const Canvas& canvas);

  /// Goes on until all is painted or the time is over; at least a little is done.
  /// @return whether all is painted
  bool paint(const Canvas& canvas, QImage& image, Clock::time_point end);

  /// Follows a picture that is moved in whole pixels; what leaves it is given up.
  void moveBy(const QPoint& offset, const QRect& picture) { m_rect = m_rect.translated(offset) & picture; }

 private:
  bool fetch(const Canvas& canvas);
  void paintShapes(dxf::RecordId entity, const Canvas& canvas, Painter& painter, Clock::time_point end);

  QRect m_rect;
  bool m_isBegun = false;
  std::vector<view::BoxedEntity> m_entities;  // still to be painted, from m_next on
  std::size_t m_next = 0, m_nextPrimitive = 0;
  dxf::RecordId m_scanFrom = dxf::kNoRecord;  // where to fetch more
};

}  // namespace torva::paint

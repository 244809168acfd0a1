#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include "base/export.h"
#include "paint/display_cache.h"
#include "paint/painter.h"
#include "paint/region_painter.h"
#include "view/picker.h"

#include <QImage>
#include <QRect>

namespace torva::paint {

/// What the user can set of a canvas.
struct CanvasLook {
  QRgb background = 0xFF20252B;
  bool showsLineweights = false;
  double pixelRatio = 1;  ///< Device pixels to a pixel of the desktop.

  bool operator==(const CanvasLook&) const = default;
};

/// The picture of model space that a canvas shows, painted in slices of time.
///
/// Entities are painted in drawing order within a region; what an entity covers is covered in the finished picture as if all
/// had been painted in one go. While it is not finished, some regions show the picture before: shifted, or scaled to the new
/// view. An entity that fills a pixel or less is a dot, one that fills little more a short line, of the entity's own color;
/// texts too small to be read are lines. A picture that was panned is the same as one painted afresh, apart from a
/// slanting line that crosses the border of a region: there it may be rounded to the pixel beside.
class TORVA_API CanvasPicture {
 public:
  /// `picker` must outlive this object. Requires: a QGuiApplication.
  explicit CanvasPicture(view::Picker& picker);

  void setLook(const CanvasLook& look);
  /// Memory that display lists of entities are kept in, beside the picture itself.
  void setMemoryLimit(std::size_t bytes);

  /// Shows a view whose pixels are device pixels. Moved by whole pixels, the picture is kept and what is uncovered painted.
  void show(const view::View& view);

  /// Takes in what was changed in the drawing, then paints for about `budget`: at most a few milliseconds more, unless a
  /// single entity needs more than that to be described. When more than a few entities changed (layers, blocks), the index
  /// is built anew first.
  /// @return whether the picture is complete
  bool advance(std::chrono::microseconds budget);

  /// Whether all that was known at the last advance() or show() is painted.
  bool isComplete() const { return !m_region && m_pending.empty(); }

  /// The picture, as large as the view; null before the first show(). Valid until the next call of another function.
  const QImage& image();

 private:
  void noticeChanges();
  void noticeChanged(const view::Changes& changes);
  bool pan(const view::View& view);
  void repaintAll();
  void add(const QRect& rect);
  void addParts(const QRect& rect);
  void finishRegion();
  /// Makes the picture one of the present view, by scaling, when it is still one of an earlier view.
  void bringUpToView();
  PaintStyle style() const;
  QRect wholePicture() const { return QRect(0, 0, m_view.widthPx(), m_view.heightPx()); }

  view::Picker& m_picker;
  DisplayCache m_cache;
  TextOutlines m_outlines;
  CanvasLook m_look;
  view::ChangeMark m_mark;
  // As it is painted: the view shown, but at whole pixels from the one that was painted in full.
  view::View m_view, m_paintedInFull;
  QPoint m_pannedPx;           // between the two
  QImage m_picture, m_canvas;  // what is shown, and where regions are painted
  view::View m_pictureView;    // the one that m_picture shows; of it and m_view the size may differ
  bool m_isStale = true;       // m_picture shows an earlier view
  std::vector<QRect> m_pending;
  std::optional<RegionPainter> m_region;  // being painted
};

}  // namespace torva::paint

#include "paint/canvas_picture.h"

#include <algorithm>
#include <cmath>

#include "paint/pixels.h"

#include <QRegion>

namespace torva::paint {
namespace {

/// How far a pan may be from whole pixels.
constexpr double kPanTolerancePx = 0.01;
/// Beyond this many pixels from the picture painted in full, rounding would tell.
constexpr double kMostPannedPx = 1e6;
/// Above this many changed boxes everything is painted anew.
constexpr std::size_t kMostChanged = 1000;
constexpr double kSmallestTextPx = 4;
constexpr double kPixelsPerMm = 96 / 25.4;
constexpr int kHalfLight = 128;

bool areAlike(const view::View& a, const view::View& b) {
  return a.widthPx() == b.widthPx() && a.heightPx() == b.heightPx() && a.height() == b.height() && a.isParallelTo(b);
}

/// How far the picture moves from one view to another like it, in pixels.
QPointF offsetPx(const view::View& from, const view::View& to) {
  const KdGeVector3d offset = to.centerDcs() - from.centerDcs();
  return QPointF(-offset.x, offset.y) / from.unitsPerPixel(1);
}

/// Where the picture of a view lies in that of a parallel one.
QRectF placeOf(const view::View& inner, const view::View& outer) {
  const KdGeVector3d offset = inner.centerDcs() - outer.centerDcs();
  const double unit = outer.unitsPerPixel(1);
  const QPointF center(outer.widthPx() / 2.0 + offset.x / unit, outer.heightPx() / 2.0 - offset.y / unit);
  const QSizeF size(inner.width() / unit, inner.height() / unit);
  return {center - QPointF(size.width() / 2, size.height() / 2), size};
}

QImage blank(const view::View& view, QRgb color) {
  QImage image(view.widthPx(), view.heightPx(), QImage::Format_RGB32);
  image.fill(color);
  return image;
}

}  // namespace

CanvasPicture::CanvasPicture(view::Picker& picker) : m_picker(picker), m_cache(picker.drawer()) {}

void CanvasPicture::setLook(const CanvasLook& look) {
  if (look == m_look) return;
  m_look = look;
  repaintAll();
}

void CanvasPicture::setMemoryLimit(std::size_t bytes) {
  m_cache.setLimit(bytes);
}

void CanvasPicture::show(const view::View& view) {
  if (!m_picture.isNull() && pan(view)) return;
  m_view = m_paintedInFull = view;
  m_pannedPx = {};
  m_isStale = true;
  if (m_picture.isNull()) {
    m_picture = blank(view, m_look.background);
    m_pictureView = view;
    m_isStale = false;
  }
  if (m_canvas.size() != wholePicture().size()) m_canvas = blank(view, m_look.background);
  repaintAll();
}

bool CanvasPicture::pan(const view::View& view) {
  if (m_isStale || !areAlike(m_paintedInFull, view)) return false;
  const QPointF exact = offsetPx(m_paintedInFull, view);
  if (std::abs(exact.x()) > kMostPannedPx || std::abs(exact.y()) > kMostPannedPx) return false;
  const QPoint panned = exact.toPoint(), by = panned - m_pannedPx;
  const QPointF off = exact - panned;
  if (std::abs(off.x()) > kPanTolerancePx || std::abs(off.y()) > kPanTolerancePx) return false;
  if (by.isNull()) return true;
  const QRect whole = wholePicture(), kept = whole & whole.translated(by);
  if (kept.isEmpty()) return false;
  // The sum of many small errors would show: the view is computed from the one painted in full.
  const double unit = m_paintedInFull.unitsPerPixel(1);
  m_view.set(m_paintedInFull.centerDcs() + KdGeVector3d{-panned.x() * unit, panned.y() * unit, 0}, view.height());
  m_pictureView = m_view;
  m_pannedPx = panned;
  shift(m_picture, by);
  for (QRect& rect : m_pending) rect = rect.translated(by) & whole;
  std::erase_if(m_pending, [](const QRect& rect) { return rect.isEmpty(); });
  if (m_region) {
    shift(m_canvas, by);
    m_region->moveBy(by, whole);
    if (m_region->rect().isEmpty()) m_region.reset();
  }
  for (const QRect& strip : QRegion(whole) - QRegion(kept)) {
    fillPixels(m_picture, whole, strip, m_look.background);
    m_pending.push_back(strip);
  }
  return true;
}

void CanvasPicture::repaintAll() {
  m_region.reset();
  m_pending.clear();
  if (!m_picture.isNull()) m_pending.push_back(wholePicture());
}

bool CanvasPicture::advance(std::chrono::microseconds budget) {
  const Clock::time_point end = Clock::now() + budget;
  if (m_picture.isNull()) return true;
  noticeChanges();
  const PaintStyle paintStyle = style();
  const Canvas canvas{m_picker, m_cache, m_outlines, m_view, paintStyle, m_look.background};
  while (!isComplete()) {
    if (!m_region) {
      m_region.emplace(m_pending.back());
      m_pending.pop_back();
      if (!m_region->find(canvas)) addParts(m_region->rect());
    }
    if (m_region && m_region->paint(canvas, m_canvas, end)) finishRegion();
    if (Clock::now() >= end) break;
  }
  return isComplete();
}

void CanvasPicture::finishRegion() {
  const QRect rect = m_region->rect();
  m_region.reset();
  if (rect == wholePicture()) {
    m_picture.swap(m_canvas);
    if (m_canvas.size() != m_picture.size()) m_canvas = blank(m_view, m_look.background);
    m_pictureView = m_view;
    m_isStale = false;
    return;
  }
  bringUpToView();
  copy(m_canvas, m_picture, rect);
}

void CanvasPicture::addParts(const QRect& rect) {
  const int width = (rect.width() + 1) / 2, height = (rect.height() + 1) / 2;
  const QRect first(rect.left(), rect.top(), width, height);
  m_region.reset();
  // Taken from the end: the upper left part comes first.
  for (const QPoint& step : {QPoint(width, height), QPoint(0, height), QPoint(width, 0), QPoint(0, 0)}) {
    const QRect part = first.translated(step) & rect;
    if (!part.isEmpty()) m_pending.push_back(part);
  }
}

const QImage& CanvasPicture::image() {
  bringUpToView();
  return m_picture;
}

void CanvasPicture::bringUpToView() {
  if (!m_isStale) return;
  QImage image = blank(m_view, m_look.background);
  const QRectF place = placeOf(m_pictureView, m_view), seen = place & QRectF(wholePicture());
  if (m_view.isParallelTo(m_pictureView) && !seen.isEmpty()) {
    const double scaleX = m_picture.width() / place.width(), scaleY = m_picture.height() / place.height();
    const QRectF source((seen.left() - place.left()) * scaleX, (seen.top() - place.top()) * scaleY, seen.width() * scaleX,
                        seen.height() * scaleY);
    QPainter(&image).drawImage(seen, m_picture, source);
  }
  m_picture = image;
  m_pictureView = m_view;
  m_isStale = false;
}

void CanvasPicture::noticeChanges() {
  const view::Changes changes = m_picker.changesSince(m_mark);
  if (!changes.areAll) return noticeChanged(changes);
  m_cache.clear();
  repaintAll();
}

void CanvasPicture::noticeChanged(const view::Changes& changes) {
  const PixelMap pixel(m_view);
  const double reach = style().reachPx();
  QRegion changed;
  for (const view::BoxedEntity& entity : changes.entities) {
    m_cache.forget(entity.id);
    if (entity.box.isEmpty()) continue;
    const QRectF box = pixel(entity.box.box()).adjusted(-reach, -reach, reach, reach) & QRectF(wholePicture());
    if (!box.isEmpty() && changes.entities.size() <= kMostChanged) changed += box.toAlignedRect() & wholePicture();
  }
  if (changes.entities.size() > kMostChanged) return repaintAll();
  for (const QRect& rect : changed) add(rect);
}

void CanvasPicture::add(const QRect& rect) {
  if (m_region && m_region->rect().intersects(rect)) {
    m_pending.push_back(m_region->rect());
    m_region.reset();
  }
  const bool isPending = std::any_of(m_pending.begin(), m_pending.end(), [&](const QRect& r) { return r.contains(rect); });
  if (!isPending) m_pending.push_back(rect);
}

PaintStyle CanvasPicture::style() const {
  PaintStyle style;
  style.foreground = qGray(m_look.background) < kHalfLight ? 0xFFFFFFFF : 0xFF000000;
  style.strokes = m_look.showsLineweights ? Strokes::weighted : Strokes::hairlines;
  style.edges = Edges::smooth;
  style.pixelsPerMm = kPixelsPerMm * m_look.pixelRatio;
  style.smallestTextPx = kSmallestTextPx;
  return style;
}

}  // namespace torva::paint

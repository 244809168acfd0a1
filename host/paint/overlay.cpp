#include "paint/overlay.h"

#include "paint/painter.h"

namespace torva::paint {
namespace {

// Seen on dark and on light ground.
const QColor kHighlight(0x33, 0x99, 0xFF, 0x80), kSelection(0x1E, 0x90, 0xFF), kGhost(0x2E, 0xA0, 0x6E, 0xB0);

Marking markingOf(OverlayLook look, double pixelRatio) {
  switch (look) {
    case OverlayLook::highlight:
      return {kHighlight, 5 * pixelRatio};
    case OverlayLook::selection:
      return {kSelection, 2 * pixelRatio, {6 * pixelRatio, 4 * pixelRatio}};
    case OverlayLook::ghost:
      return {kGhost, 1.5 * pixelRatio};
  }
  return {};
}

}  // namespace

void paintOverlay(QPainter& painter, const draw::DisplayList& list, const view::View& view, OverlayLook look,
                  double pixelRatio) {
  TextOutlines outlines;
  const PaintStyle style{.marking = markingOf(look, pixelRatio)};
  Painter(painter, view, outlines, style, QRectF(0, 0, view.widthPx(), view.heightPx())).paint(list);
}

}  // namespace torva::paint

#pragma once

#include <optional>

#include "draw/display_list.h"
#include "view/view.h"

namespace torva::view {

/// A square in the plane of a view.
struct PickSquare {
  KdGePoint3d centerDcs;
  double halfSide = 0;
};

/// A rectangle in the plane of a view. Requires: min <= max.
struct PickWindow {
  KdGePoint3d minDcs, maxDcs;
};

/// What of an entity has to lie in a window.
enum class WindowRule {
  whole,  ///< All that is shown of it.
  part,   ///< Any of it; the border of the window belongs to it.
};

/// Distance from the square's center to what a display list shows, in the plane of the view; nothing when no part of it
/// meets the square (its border included). 0 inside filled areas. Linetypes do not count: their gaps are picked like their
/// dashes. A text is met by its rectangle and measured to the base line, the middle and the top of its letters, which stand
/// for their strokes.
std::optional<double> distanceIfMet(const draw::DisplayList& list, const View& view, const PickSquare& square);

/// Whether what a display list shows lies in a window, by the same outlines. False for an empty list.
bool liesIn(const draw::DisplayList& list, const View& view, const PickWindow& window, WindowRule rule);

}  // namespace torva::view

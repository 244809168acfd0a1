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

/// Distance from the square's center to what a display list shows, in the plane of the view; nothing when no part of it
/// meets the square (its border included). 0 inside filled areas. Linetypes do not count: their gaps are picked like their
/// dashes. A text is met by its rectangle and measured to the base line, the middle and the top of its letters, which stand
/// for their strokes.
std::optional<double> distanceIfMet(const draw::DisplayList& list, const View& view, const PickSquare& square);

}  // namespace torva::view

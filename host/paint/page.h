#pragma once

#include "base/export.h"
#include "draw/display_list.h"
#include "view/view.h"

#include <QPainter>

namespace torva::paint {

/// Paints a display list as on paper, white ground included, with a painter whose unit is the view's pixel.
TORVA_API void paintPage(QPainter& painter, const draw::DisplayList& list, const view::View& view);

}  // namespace torva::paint

#pragma once

#include "base/export.h"
#include "draw/display_list.h"

namespace torva::command {

class Editor;

/// What a plot of the present view is made of: all that the view shows of entities on layers that are plotted.
TORVA_API draw::DisplayList plotContent(Editor& editor);

}  // namespace torva::command

#pragma once

namespace torva::command {

class Editor;

/// Changes what the view shows: a centre and a height, all that is drawn, a window, or a factor.
void zoomCommand(Editor& editor);

}  // namespace torva::command

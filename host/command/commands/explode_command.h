#pragma once

namespace torva::command {

class Editor;

/// Takes the selected entities apart: multilines and polylines into lines, arcs and filled areas.
void explodeCommand(Editor& editor);

}  // namespace torva::command

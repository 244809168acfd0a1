#pragma once

namespace torva::command {

class Editor;

/// Draws lines from point to point, each an entity of its own; Enter at the first prompt goes on from the last point. Enter
/// and ^C end it and keep what is drawn.
void lineCommand(Editor& editor);

}  // namespace torva::command

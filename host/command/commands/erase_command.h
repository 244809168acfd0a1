#pragma once

namespace torva::command {

class Editor;

/// Erases the selected entities.
void eraseCommand(Editor& editor);

}  // namespace torva::command

#pragma once

namespace torva::command {

class Editor;

/// Moves the selected entities from a base point to a second one.
void moveCommand(Editor& editor);
/// Copies the selected entities likewise.
void copyCommand(Editor& editor);

}  // namespace torva::command

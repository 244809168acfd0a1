#pragma once

namespace torva::command {

class Editor;

/// Takes the last command back.
void uCommand(Editor& editor);
/// Takes back as many commands as the user says.
void undoCommand(Editor& editor);
/// Brings again what was taken back last.
void redoCommand(Editor& editor);

}  // namespace torva::command

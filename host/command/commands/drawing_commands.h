#pragma once

namespace torva::command {

class Editor;

/// Opens a drawing. Asks first whether unsaved changes of the present one may be lost.
void openCommand(Editor& editor);
/// Begins a new drawing, likewise.
void newCommand(Editor& editor);
/// Saves under the drawing's own name; a drawing without one is asked for a name as SAVEAS does.
void qsaveCommand(Editor& editor);
/// Saves under another name, which becomes the drawing's. Asks before another file is replaced.
void saveasCommand(Editor& editor);
/// Ends the program. Asks first whether unsaved changes may be lost.
void quitCommand(Editor& editor);

}  // namespace torva::command

#pragma once

namespace torva::command {

class Editor;

/// Draws a multiline from point to point in the current style, scale and justification, which its options change. Enter and
/// ^C end it and keep what is drawn.
void mlineCommand(Editor& editor);

}  // namespace torva::command

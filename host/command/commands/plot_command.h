#pragma once

namespace torva::command {

class Editor;

/// Plots what the view shows into a file; its extension (svg, png, pdf) says the format.
void plotCommand(Editor& editor);

}  // namespace torva::command

#pragma once

namespace torva::command {

class Editor;

/// Changes the user coordinate system: to the world's, to another origin, turned about its z axis, or back to the former
/// one.
void ucsCommand(Editor& editor);

}  // namespace torva::command

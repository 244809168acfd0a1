#pragma once

namespace torva::command {

class Editor;

/// Lists the commands that can be given.
void helpCommand(Editor& editor);

}  // namespace torva::command

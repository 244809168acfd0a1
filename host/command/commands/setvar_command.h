#pragma once

#include <string>

namespace torva::command {

class Editor;

/// Asks for a system variable and its new value; `?` lists all of them.
void setvarCommand(Editor& editor);
/// Asks for the new value of one variable, which is shown only when it cannot be set. Requires: the variable exists.
void setVariable(Editor& editor, const std::wstring& name);

}  // namespace torva::command

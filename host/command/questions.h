#pragma once

#include <string>

namespace torva::command {

class Editor;

/// Asks a yes-no question, "No" being the answer to Enter. False also when the user cancels.
bool isConfirmed(Editor& editor, const std::wstring& question);

}  // namespace torva::command

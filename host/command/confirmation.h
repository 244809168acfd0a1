#pragma once

#include <string>

namespace torva::command {

class Editor;

/// How a yes-no question was answered; "No" is the answer to Enter.
enum class Confirmation { yes, no, cancelled };
Confirmation askConfirmation(Editor& editor, const std::wstring& question);

/// The same for callers to whom a cancel is a no.
bool isConfirmed(Editor& editor, const std::wstring& question);

}  // namespace torva::command

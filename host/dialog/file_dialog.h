#pragma once

#include <optional>
#include <string>

#include "base/export.h"
#include "command/file_request.h"

namespace torva::dialog {

/// Lets the user choose a file in a dialog over the window in front. A file to be written that exists is taken without a
/// question: who writes it knows what becomes of it.
TORVA_API std::optional<std::wstring> chooseFile(const command::FileRequest& request);

}  // namespace torva::dialog

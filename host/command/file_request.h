#pragma once

#include <functional>
#include <optional>
#include <string>

namespace torva::command {

enum class FileUse { read, write };

/// A file that is asked for.
struct FileRequest {
  std::wstring title;
  std::wstring start;      ///< The file that is offered, or with '/' at its end the folder; empty: none.
  std::wstring extension;  ///< Without its point; empty: any.
  FileUse use = FileUse::read;

  bool offersFile() const { return !start.empty() && start.back() != L'/'; }
};

/// Lets the user choose a file. @return nothing when the user would rather not
using FileChooser = std::function<std::optional<std::wstring>(const FileRequest&)>;

/// A path with the extension, which is appended when the file's name has none.
std::wstring withExtension(const std::wstring& path, const std::wstring& extension);

}  // namespace torva::command

#include "command/file_request.h"

#include "command/editor.h"

namespace torva::command {

std::wstring withExtension(const std::wstring& path, const std::wstring& extension) {
  const std::size_t name = path.rfind(L'/') + 1;
  if (extension.empty() || path.size() == name || path.find(L'.', name) != std::wstring::npos) return path;
  return path + L'.' + extension;
}

int Editor::getFile(const FileRequest& request, std::wstring& path) {
  std::wstring answer;
  if (m_fileChooser) {
    const auto chosen = m_fileChooser(request);
    if (!chosen) return kKdInputCancel;
    answer = *chosen;
  } else {
    const std::wstring offered = request.offersFile() ? L" <" + request.start + L">" : std::wstring();
    const int status = getString(request.title + offered + L": ", Blanks::belongToAnswer, answer);
    if (status != kKdInputNormal && status != kKdInputNone) return status;
    if (answer.empty() && request.offersFile()) answer = request.start;
  }
  if (answer.empty()) return kKdInputNone;
  path = withExtension(answer, request.extension);
  return kKdInputNormal;
}

}  // namespace torva::command

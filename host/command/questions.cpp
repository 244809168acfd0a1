#include "command/questions.h"

#include "command/editor.h"

namespace torva::command {

bool isConfirmed(Editor& editor, const std::wstring& question) {
  if (editor.initGet(kKdInitGetNone, L"Yes No") != kKdInputNormal) return false;
  std::wstring answer;
  return editor.getKeyword(question + L" [Yes/No] <No>: ", answer) == kKdInputNormal && answer == L"Yes";
}

}  // namespace torva::command

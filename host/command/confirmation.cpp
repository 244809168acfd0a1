#include "command/confirmation.h"

#include "command/editor.h"

namespace torva::command {

Confirmation askConfirmation(Editor& editor, const std::wstring& question) {
  if (editor.initGet(kKdInitGetNone, L"Yes No") != kKdInputNormal) return Confirmation::no;
  std::wstring answer;
  const int status = editor.getKeyword(question + L" [Yes/No] <No>: ", answer);
  if (status == kKdInputCancel) return Confirmation::cancelled;
  return status == kKdInputNormal && answer == L"Yes" ? Confirmation::yes : Confirmation::no;
}

bool isConfirmed(Editor& editor, const std::wstring& question) {
  return askConfirmation(editor, question) == Confirmation::yes;
}

}  // namespace torva::command

#include "command/commands/undo_commands.h"

#include "command/editor.h"

namespace torva::command {

void uCommand(Editor& editor) {
  const auto name = editor.database().undo();
  editor.print(name ? *name + L" taken back." : L"Nothing to take back.");
}

void undoCommand(Editor& editor) {
  int count = 1;
  if (editor.initGet(kKdNoZero | kKdNoNegative, nullptr) != kKdInputNormal) return;
  const int status = editor.getInteger(L"Number of commands to take back <1>: ", count);
  if (status != kKdInputNormal && status != kKdInputNone) return;
  for (int i = 0; i < count; ++i) {
    const auto name = editor.database().undo();
    if (!name) return editor.print(L"Nothing more to take back.");
    editor.print(*name + L" taken back.");
  }
}

void redoCommand(Editor& editor) {
  const auto name = editor.database().redo();
  editor.print(name ? *name + L" done again." : L"Nothing to do again.");
}

}  // namespace torva::command

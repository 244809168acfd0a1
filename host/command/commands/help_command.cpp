#include "command/commands/help_command.h"

#include "command/editor.h"

namespace torva::command {

namespace {

constexpr std::size_t kLineWidth = 80;

}  // namespace

void helpCommand(Editor& editor) {
  editor.print(L"Commands, besides those of modules that are loaded when first needed:");
  std::wstring line;
  for (const std::wstring& name : editor.commands().names()) {
    if (line.size() + name.size() > kLineWidth) {
      editor.print(line);
      line.clear();
    }
    line += L"  " + name;
  }
  editor.print(line);
  editor.print(L"The name of a system variable sets it; SETVAR ? lists them.");
}

}  // namespace torva::command

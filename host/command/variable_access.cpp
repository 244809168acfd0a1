#include "command/variable_access.h"

#include "command/editor.h"

namespace torva::command {

void storeVariable(Editor& editor, std::wstring_view name, const db::VariableValue& value) {
  if (const auto done = editor.variables().set(name, value); !done) editor.report(done.error(), Fault::script);
}

}  // namespace torva::command

#pragma once

#include "command/command_stack.h"

namespace torva::command {

class Editor;

/// Adds the host's own commands, as group "TORVA_BUILT_IN". Both must outlive the commands' last use.
void registerBuiltInCommands(CommandStack& commands, Editor& editor);

}  // namespace torva::command

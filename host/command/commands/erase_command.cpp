#include "command/commands/erase_command.h"

#include "command/editor.h"
#include "command/selection.h"
#include "db/entity_erasure.h"

namespace torva::command {

void eraseCommand(Editor& editor) {
  db::eraseEntities(editor.database(), selectObjects(editor, SelectionUse::change));
}

}  // namespace torva::command

#include "command/built_in_commands.h"

#include "command/commands/chprop_command.h"
#include "command/commands/circle_command.h"
#include "command/commands/drawing_commands.h"
#include "command/commands/erase_command.h"
#include "command/commands/explode_command.h"
#include "command/commands/help_command.h"
#include "command/commands/layer_command.h"
#include "command/commands/line_command.h"
#include "command/commands/list_command.h"
#include "command/commands/mline_command.h"
#include "command/commands/move_commands.h"
#include "command/commands/plot_command.h"
#include "command/commands/setvar_command.h"
#include "command/commands/ucs_command.h"
#include "command/commands/undo_commands.h"
#include "command/commands/zoom_command.h"

namespace torva::command {

namespace {

struct BuiltIn {
  const wchar_t* name;
  void (*run)(Editor&);
  int flags = 0;
};

constexpr BuiltIn kBuiltIns[] = {
    {L"-LAYER", layerCommand},
    {L"?", helpCommand},
    {L"CHPROP", chpropCommand},
    {L"CIRCLE", circleCommand},
    {L"COPY", copyCommand},
    {L"ERASE", eraseCommand},
    {L"EXPLODE", explodeCommand},
    {L"HELP", helpCommand},
    {L"LAYER", layerCommand},
    {L"LINE", lineCommand},
    {L"LIST", listCommand},
    {L"MLINE", mlineCommand},
    {L"MOVE", moveCommand},
    {L"NEW", newCommand, kIsNoUndoStep},
    {L"OPEN", openCommand, kIsNoUndoStep},
    {L"PLOT", plotCommand},
    {L"QSAVE", qsaveCommand, kIsNoUndoStep},
    {L"QUIT", quitCommand, kIsNoUndoStep},
    {L"REDO", redoCommand, kIsNoUndoStep},
    {L"SAVEAS", saveasCommand, kIsNoUndoStep},
    {L"SETVAR", setvarCommand},
    {L"U", uCommand, kIsNoUndoStep},
    {L"UCS", ucsCommand},
    {L"UNDO", undoCommand, kIsNoUndoStep},
    {L"ZOOM", zoomCommand},
};

}  // namespace

void registerBuiltInCommands(CommandStack& commands, Editor& editor) {
  for (const BuiltIn& builtIn : kBuiltIns) {
    commands.add(
        {L"TORVA_BUILT_IN", builtIn.name, builtIn.name, builtIn.flags, [&editor, run = builtIn.run] { run(editor); }});
  }
}

}  // namespace torva::command

#pragma once

namespace torva::command {

class Editor;

/// Changes color, layer, linetype and line weight of the selected entities, when all is asked: a cancel changes nothing.
void chpropCommand(Editor& editor);

}  // namespace torva::command

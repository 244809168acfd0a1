#pragma once

namespace torva::command {

class Editor;

/// Lists, makes and changes layers, one option after the other until Enter. Layers are named by lists with commas between,
/// in which `*` and `?` stand for other characters.
void layerCommand(Editor& editor);

}  // namespace torva::command

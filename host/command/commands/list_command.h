#pragma once

namespace torva::command {

class Editor;

/// Describes one entity: a multiline by style, flags, vertices and what each of its elements draws; any other by type,
/// layer, handle and the groups of its record.
void listCommand(Editor& editor);

}  // namespace torva::command

#pragma once

#include "dxf/record.h"

namespace torva::command {

class Editor;

/// Prints what a multiline holds: style, flags, and for every vertex its place, directions and element lists.
void listMline(Editor& editor, dxf::RecordId record);

}  // namespace torva::command

#pragma once

#include <string>
#include <vector>

#include "dxf/record.h"

namespace torva::command {

class Editor;

/// The names in a list with commas, without blanks around them; empty ones are left out.
std::vector<std::wstring> namesInList(const std::wstring& list);

/// The layers that a list of names and wildcard patterns names, in the order of the drawing. A name that fits none is
/// reported as a fault.
std::vector<dxf::RecordId> layersInList(Editor& editor, const std::wstring& list);

}  // namespace torva::command

#pragma once

#include <vector>

#include "dxf/record.h"

namespace torva::command {

class Editor;

/// What the command does with the entities it asks for.
enum class SelectionUse {
  change,  ///< Those on locked layers are left out, which is a fault.
  read,
};

/// Asks "Select objects: " until an empty answer, and reports what each answer found. A point picks one entity,
/// #handle:point names one; keywords choose by windows, the last entity drawn, those of the selection before, or all, and
/// take entities out again.
/// @return top-level entities in drawing order; empty when none was chosen or the user cancelled
std::vector<dxf::RecordId> selectObjects(Editor& editor, SelectionUse use);

}  // namespace torva::command

#pragma once

#include <vector>

#include "base/export.h"
#include "dxf/record.h"
#include "view/hit_test.h"

#include <kdrx/ge.h>

namespace torva::command {

class Editor;

/// What the command does with the entities it asks for.
enum class SelectionUse {
  change,  ///< Those on locked layers are left out, which is a fault.
  read,
};

/// Asks "Select objects: " until an empty answer, and reports what each answer found. A point picks one entity,
/// #handle:point names one; keywords choose by windows, the last entity drawn, those of the selection before, or all, and
/// take entities out again. Entities that were chosen before the command are taken without a question, once.
/// @return top-level entities in drawing order; empty when none was chosen or the user cancelled
std::vector<dxf::RecordId> selectObjects(Editor& editor, SelectionUse use);

/// Whether entities are put into a selection or taken out of it.
enum class Choice { add, remove };

/// Choose before a command, see Editor::pickedFirst().
TORVA_API void pickFirst(Editor& editor, const std::vector<dxf::RecordId>& entities, Choice choice);
/// The entity that is picked at a point. @return false when nothing is there
TORVA_API bool pickFirstAt(Editor& editor, const KdGePoint3d& pointWcs, Choice choice);
/// The entities in a window between two opposite corners.
TORVA_API void pickFirstIn(Editor& editor, const KdGePoint3d& cornerWcs, const KdGePoint3d& oppositeWcs,
                           view::WindowRule rule, Choice choice);

}  // namespace torva::command

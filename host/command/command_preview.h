#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "command/question.h"

namespace torva::command {

class Editor;

/// An entity with the point at which it was picked.
struct EntityPick {
  dxf::RecordId entity = dxf::kNoRecord;
  KdGePoint3d pointUcs;
};

/// How long the cursor may wait for a preview.
inline constexpr std::chrono::milliseconds kLongestPreview{30};

/// Shows what a command would make of the entities picked before and the one under the cursor: it runs on copies, in a
/// drawing that has nothing else. Nothing is shown where it changes none of them. One that takes longer than `longest` is
/// dropped, and not tried again with the same entity.
/// @param command with the answers that come before the picks, separated by blanks
Preview commandPreview(Editor& editor, std::wstring command, std::vector<EntityPick> picks,
                       std::chrono::milliseconds longest = kLongestPreview);

}  // namespace torva::command

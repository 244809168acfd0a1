#pragma once

#include <string>

#include "db/system_variables.h"

#include <kdrx/ge.h>

namespace torva::command {

/// Values as messages show them: the shortest text that reads back the same, whole numbers without a point; points as
/// "x,y,z"; texts in quotes.
std::wstring shown(double value);
std::wstring shown(const KdGePoint3d& point);
std::wstring shown(const KdGeVector3d& vector);
std::wstring shown(const db::VariableValue& value);

}  // namespace torva::command

#pragma once

#include <string_view>

#include "db/system_variables.h"

#include <kdrx/ge.h>

namespace torva::command {

class Editor;

/// The value of a system variable that is known to be there; `fallback` when it is not or is of another type.
template <class T>
T variableOr(const db::SystemVariables& variables, std::wstring_view name, T fallback) {
  const auto value = variables.get(name);
  if (!value) return fallback;
  const T* held = std::get_if<T>(&*value);
  return held ? *held : fallback;
}

/// Sets a system variable; a value that it does not take is reported as a fault.
void storeVariable(Editor& editor, std::wstring_view name, const db::VariableValue& value);

}  // namespace torva::command

#pragma once

#include <string_view>

#include "db/system_variables.h"

#include <kdrx/ge.h>

namespace torva::command {

/// The value of a system variable that is known to be there; `fallback` when it is not or is of another type.
template <class T>
T variableOr(const db::SystemVariables& variables, std::wstring_view name, T fallback) {
  const auto value = variables.get(name);
  if (!value) return fallback;
  const T* held = std::get_if<T>(&*value);
  return held ? *held : fallback;
}

}  // namespace torva::command

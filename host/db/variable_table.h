#pragma once

#include <optional>
#include <span>

#include "db/system_variables.h"

namespace torva::db {

/// Whose business it is to set a variable.
enum class VariableAccess { open, readOnly };

/// A value is a name that must exist in the drawing.
enum class VariableNames { any, mlineStyle, layer, linetype };

/// What is known of one system variable.
struct VariableInfo {
  std::wstring_view name;  ///< Capitals.
  VariableHome home;
  VariableAccess access;
  VariableValue first;           ///< Its type is the variable's.
  std::string_view header = {};  ///< Name in the drawing's header; empty for what no header holds.
  int code = 0;                  ///< Group code there; the first one of a point.
  double least = 0, most = 0;    ///< Range of numbers; none when equal.
  VariableNames names = VariableNames::any;
};

/// All system variables, sorted by name; where they stand does not change.
std::span<const VariableInfo> systemVariables();
/// By name in any case; null when there is none.
const VariableInfo* findVariable(std::wstring_view name);

}  // namespace torva::db

#pragma once

#include "db/system_variables.h"
#include "runtime/profile.h"

namespace torva::runtime {

/// Gives the profile's system variables the values that the profile keeps, in section "Variables". A value that the variable
/// does not take is passed over.
void restoreVariables(const Profile& profile, db::SystemVariables& variables);

/// Puts those values of the profile's system variables into the profile that differ from `before`.
void keepVariables(const db::SystemVariables& variables, const std::map<std::wstring, db::VariableValue>& before,
                   Profile& profile);

}  // namespace torva::runtime

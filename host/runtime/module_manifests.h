#pragma once

#include <map>
#include <string>
#include <vector>

namespace torva::runtime {

/// Which module brings which command, so that a module need not be loaded before one of its commands is given.
///
/// Beside a module "NAME.kdrx" may lie "NAME.kdrx.commands": UTF-8, a global command name a line; empty lines and lines that
/// begin with '#' are passed over.
/// @param folders looked through in this order; the first module to name a command has it. Missing folders are passed over.
/// @return paths of modules by command name in capitals
std::map<std::wstring, std::string> readModuleManifests(const std::vector<std::string>& folders);

}  // namespace torva::runtime

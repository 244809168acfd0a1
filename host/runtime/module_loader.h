#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "command/command_stack.h"
#include "runtime/module_handle.h"

#include <kdrx/rx.h>

namespace torva::runtime {

/// Loads modules, starts them, and stops them when the program ends.
class ModuleLoader {
 public:
  /// @param takeReason what went wrong in the host since it was last asked, a sentence; empty when nothing did. A module
  /// that refuses to start is reported with it.
  ModuleLoader(command::CommandStack& commands, std::function<std::string()> takeReason);
  ~ModuleLoader();

  /// Loads a module and starts it. One that is loaded already stays as it is and counts as success.
  /// @return fileNotFound (no regular file), libraryNotLoadable (no shared library, something it needs is missing, or it
  /// lacks an
  ///   entry point), moduleRefused (it would not start, or threw); nothing of it is left then, its commands included
  Result<void> load(const std::string& path);

  /// Stops all modules, the last loaded first. A module that did not let itself be unlocked stays in memory. What a module
  /// throws meanwhile is reported through `report` and the others are stopped all the same.
  void unloadAll(const std::function<void(const Error&)>& report);

  /// The handle of a loaded module, for what came from outside; null when it is none.
  const KdModuleHandleTag* find(KdModuleHandle module) const;

  bool isLoaded(const void* applicationId) const;
  /// Lets a module be unloaded; false for an unknown application id.
  bool unlock(const void* applicationId);

 private:
  class Module;
  Module* application(const void* id) const;
  Result<void> start(Module& module);
  void withdraw(const Module& module);

  command::CommandStack& m_commands;
  std::function<std::string()> m_takeReason;
  std::vector<std::unique_ptr<Module>> m_modules;
};

}  // namespace torva::runtime

#pragma once

#include "runtime/host.h"
#include "runtime/module_loader.h"
#include "runtime/registry.h"
#include "runtime/resource_libraries.h"

namespace torva::runtime {

/// What the programming interface's functions of registry, services, modules and resource libraries work on; the host makes
/// one the current one while it runs.
struct Runtime {
  Runtime(command::CommandStack& commands, const Folders& programFolders, DialogUse dialogs = DialogUse::none)
      : dialogUse(dialogs),
        folders(programFolders),
        resources(folders, userLanguages()),
        modules(commands, [this] { return resources.takeFailure(); }),
        linker(modules),
        registry(commands, services, linker) {}

  const DialogUse dialogUse;
  const Folders folders;
  ResourceLibraries resources;
  ModuleLoader modules;
  ServiceDictionary services;
  DynamicLinker linker;
  SystemRegistry registry;
};

}  // namespace torva::runtime

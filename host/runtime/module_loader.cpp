#include "runtime/module_loader.h"

#include <algorithm>
#include <dlfcn.h>
#include <exception>

#include "runtime/folders.h"

namespace torva::runtime {
namespace {

enum Reason : unsigned { kProcessDetach = 0, kProcessAttach = 1 };
enum Message : int { kLoad = 1, kUnload = 2 };

struct CloseLibrary {
  void operator()(void* library) const { ::dlclose(library); }
};
using LibraryPointer = std::unique_ptr<void, CloseLibrary>;

template <class Function>
Result<Function> entryPoint(void* library, const char* name, const std::string& path) {
  if (void* address = ::dlsym(library, name)) return reinterpret_cast<Function>(address);
  return fail(ErrorCode::libraryNotLoadable, std::string("is no module: it has no entry point ") + name, path);
}

/// Calls into a module; what it throws becomes an error.
template <class Call>
Result<int> guarded(const std::string& path, const Call& call) {
  try {
    return call();
  } catch (const std::exception& exception) {
    return fail(ErrorCode::moduleRefused, std::string("the module threw: ") + exception.what(), path);
  } catch (...) {
    return fail(ErrorCode::moduleRefused, "the module threw an exception of unknown kind", path);
  }
}

}  // namespace

class ModuleLoader::Module final : public KdModuleHandleTag {
 public:
  Module(std::string path, LibraryPointer library, KdDllMain dllMain, KdEntryPoint entry)
      : m_path(std::move(path)), m_library(std::move(library)), m_dllMain(dllMain), m_entry(entry) {}

  const std::string& path() const override { return m_path; }
  const void* library() const { return m_library.get(); }

  Result<int> notify(Reason reason) {
    return guarded(m_path, [&] { return m_dllMain(this, reason, nullptr); });
  }
  Result<int> send(Message message) {
    return guarded(m_path, [&] { return m_entry(message, this); });
  }
  /// Leaves the library in memory for the rest of the process.
  void keepInMemory() { static_cast<void>(m_library.release()); }
  bool contains(const void* address) const;

  bool isUnlocked = false;

 private:
  std::string m_path;
  LibraryPointer m_library;
  KdDllMain m_dllMain;
  KdEntryPoint m_entry;
};

bool ModuleLoader::Module::contains(const void* address) const {
  Dl_info ours = {}, its = {};
  return address && ::dladdr(address, &its) && ::dladdr(reinterpret_cast<const void*>(m_entry), &ours) &&
         its.dli_fbase == ours.dli_fbase;
}

ModuleLoader::ModuleLoader(command::CommandStack& commands, std::function<std::string()> takeReason)
    : m_commands(commands), m_takeReason(std::move(takeReason)) {}

ModuleLoader::~ModuleLoader() = default;

Result<void> ModuleLoader::load(const std::string& path) {
  // The dynamic linker would look for a bare name in places of its own, and would wait at a pipe.
  const auto file = regularFile(path);
  if (!file) return fail(ErrorCode::fileNotFound, "no such module", path);

  LibraryPointer library(::dlopen(file->c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!library) return fail(ErrorCode::libraryNotLoadable, std::string("cannot be loaded: ") + ::dlerror(), *file);
  const auto isIt = [&](const auto& module) { return module->library() == library.get(); };
  if (std::any_of(m_modules.begin(), m_modules.end(), isIt)) return {};

  const auto dllMain = entryPoint<KdDllMain>(library.get(), "DllMain", *file);
  if (!dllMain) return tl::unexpected(dllMain.error());
  const auto entry = entryPoint<KdEntryPoint>(library.get(), "kdrxEntryPoint", *file);
  if (!entry) return tl::unexpected(entry.error());

  m_modules.push_back(std::make_unique<Module>(*file, std::move(library), *dllMain, *entry));
  auto started = start(*m_modules.back());
  if (!started) m_modules.pop_back();
  return started;
}

Result<void> ModuleLoader::start(Module& module) {
  // What failed before has nothing to do with this module.
  static_cast<void>(m_takeReason());
  const auto attached = module.notify(kProcessAttach);
  if (!attached) return tl::unexpected(attached.error());
  if (*attached == 0) return fail(ErrorCode::moduleRefused, "the module refused to be attached", module.path());

  const auto result = module.send(kLoad);
  if (result && *result == 0) return {};
  withdraw(module);
  // The load has failed already; what the detaching module says or throws adds nothing.
  static_cast<void>(module.notify(kProcessDetach));
  if (!result) return tl::unexpected(result.error());
  const std::string reason = m_takeReason();
  return fail(ErrorCode::moduleRefused,
              "the module refused to start (result " + std::to_string(*result) + ")" + (reason.empty() ? "" : ": " + reason),
              module.path());
}

void ModuleLoader::unloadAll(const std::function<void(const Error&)>& report) {
  for (; !m_modules.empty(); m_modules.pop_back()) {
    Module& module = *m_modules.back();
    const auto unloaded = module.send(kUnload);
    if (!unloaded) report(unloaded.error());
    withdraw(module);
    if (const auto detached = module.notify(kProcessDetach); !detached) report(detached.error());
    if (!module.isUnlocked) module.keepInMemory();
  }
}

void ModuleLoader::withdraw(const Module& module) {
  m_commands.removeIf([&](const command::Command& command) { return module.contains(command.code); });
}

const KdModuleHandleTag* ModuleLoader::find(KdModuleHandle module) const {
  const auto isIt = [=](const auto& loaded) { return static_cast<KdModuleHandle>(loaded.get()) == module; };
  const auto found = std::find_if(m_modules.begin(), m_modules.end(), isIt);
  return found == m_modules.end() ? nullptr : found->get();
}

bool ModuleLoader::unlock(const void* applicationId) {
  Module* module = application(applicationId);
  if (module) module->isUnlocked = true;
  return module != nullptr;
}

bool ModuleLoader::isLoaded(const void* applicationId) const {
  return application(applicationId) != nullptr;
}

ModuleLoader::Module* ModuleLoader::application(const void* id) const {
  const auto found =
      std::find_if(m_modules.begin(), m_modules.end(), [=](const auto& loaded) { return loaded.get() == id; });
  return found == m_modules.end() ? nullptr : found->get();
}

}  // namespace torva::runtime

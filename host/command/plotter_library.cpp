#include "command/plotter_library.h"

#include <dlfcn.h>
#include <string>

namespace torva::command {

namespace {

constexpr const char* kLibraryName = "libtorva-gui.so";
constexpr const char* kCreatorName = "torvaCreatePlotter";

std::string ownFolder() {
  Dl_info info{};
  if (!::dladdr(reinterpret_cast<void*>(&loadPlotter), &info) || !info.dli_fname) return {};
  const std::string path = info.dli_fname;
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

}  // namespace

Result<std::unique_ptr<Plotter>> loadPlotter() {
  const auto reason = [] {
    const char* text = ::dlerror();
    return std::string("plotting is not possible: ") + (text ? text : "unknown cause");
  };
  void* library = ::dlopen((ownFolder() + kLibraryName).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) return fail(ErrorCode::libraryNotLoadable, reason());
  const auto create = reinterpret_cast<CreatePlotter>(::dlsym(library, kCreatorName));
  if (!create) return fail(ErrorCode::libraryNotLoadable, reason());
  return std::unique_ptr<Plotter>(create());
}

}  // namespace torva::command

#include "entry/dialogs_library.h"

#include <dlfcn.h>
#include <string>

namespace {

constexpr const char* kLibraryName = "libKdrxMLStyleDialogs.so";
constexpr const char* kCreatorName = "CreateToolPicker";

std::string ownFolder() {
  Dl_info info{};
  if (!::dladdr(reinterpret_cast<void*>(&createToolPicker), &info) || !info.dli_fname) return {};
  const std::string path = info.dli_fname;
  return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

ToolPicker createToolPicker() {
  ToolPicker picker;
  void* library = ::dlopen((ownFolder() + kLibraryName).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) return picker;
  if (const auto create = reinterpret_cast<decltype(&CreateToolPicker)>(::dlsym(library, kCreatorName))) create(&picker);
  return picker;
}

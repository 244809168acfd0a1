#include "entry/dialogs_library.h"

#include <dlfcn.h>
#include <string>

namespace {

constexpr const char* kLibraryName = "libKdrxMLStyleDialogs.so";

std::string ownFolder() {
  Dl_info info{};
  if (!::dladdr(reinterpret_cast<void*>(&createToolPicker), &info) || !info.dli_fname) return {};
  const std::string path = info.dli_fname;
  return path.substr(0, path.rfind('/') + 1);
}

/// @param create name of the library's function that makes such a dialog
template <class Dialog>
Dialog make(const char* create) {
  Dialog dialog;
  void* library = ::dlopen((ownFolder() + kLibraryName).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) return dialog;
  if (const auto maker = reinterpret_cast<void (*)(Dialog*)>(::dlsym(library, create))) maker(&dialog);
  return dialog;
}

}  // namespace

ToolPicker createToolPicker() {
  return make<ToolPicker>("CreateToolPicker");
}

StyleManager createStyleManager() {
  return make<StyleManager>("CreateStyleManager");
}

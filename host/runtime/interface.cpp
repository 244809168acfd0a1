#include <algorithm>
#include <cwchar>
#include <dlfcn.h>
#include <exception>

#include "base/current.h"
#include "base/text.h"
#include "db/linetype_file.h"
#include "runtime/runtime.h"

#include <kdrx/db_database.h>
#include <kdrx/rx.h>
#include <kdrx/text.h>

using torva::Current;
using torva::runtime::Runtime;

namespace {

/// Copies as much as fits and ends it with 0. Requires: capacity > 0.
std::size_t copyText(const std::wstring& text, wchar_t* buffer, std::size_t capacity) {
  const std::size_t length = std::min(text.size(), capacity - 1);
  std::wmemcpy(buffer, text.data(), length);
  buffer[length] = L'\0';
  return length;
}

/// Folder of the library that holds a code address; empty when there is none.
std::string folderOfCode(const void* address) {
  Dl_info library = {};
  if (!::dladdr(address, &library) || !library.dli_fname) return {};
  return torva::runtime::folderOf(library.dli_fname);
}

KdStatus statusOf(torva::ErrorCode code) {
  switch (code) {
    case torva::ErrorCode::unknownName:
      return KdStatus::keyNotFound;
    case torva::ErrorCode::invalidValue:
      return KdStatus::invalidInput;
    case torva::ErrorCode::notApplicable:
      return KdStatus::notApplicable;
    default:
      return KdStatus::fileNotFound;
  }
}

/// No exception leaves the host: what goes wrong in `call` gives `otherwise`.
template <class Value, class Call>
Value guarded(Value otherwise, const Call& call) noexcept {
  Runtime* runtime = Current<Runtime>::get();
  if (!runtime) return otherwise;
  try {
    return call(*runtime);
  } catch (const std::exception&) {
    return otherwise;
  }
}

}  // namespace

KdRxDictionary* kdrxSysRegistry() noexcept {
  Runtime* runtime = Current<Runtime>::get();
  return runtime ? &runtime->registry : nullptr;
}

void kdrxRegisterService(const wchar_t* name) noexcept {
  guarded(false, [=](Runtime& runtime) {
    runtime.services.add(name);
    return true;
  });
}

bool kdrxServiceIsRegistered(const wchar_t* name) noexcept {
  return guarded(false, [=](Runtime& runtime) { return runtime.services.at(name) != nullptr; });
}

bool kdrxShowsDialogs() noexcept {
  const Runtime* runtime = Current<Runtime>::get();
  return runtime && runtime->dialogUse == torva::runtime::DialogUse::shown;
}

KdModuleHandle loadResourceDll(const wchar_t* name) noexcept {
  const void* caller = __builtin_return_address(0);
  if (!name) return nullptr;
  return guarded(KdModuleHandle(nullptr),
                 [=](Runtime& runtime) { return runtime.resources.open(torva::utf8FromWide(name), folderOfCode(caller)); });
}

bool AfxFreeLibrary(KdModuleHandle library) noexcept {
  return guarded(false, [=](Runtime& runtime) { return runtime.resources.close(library); });
}

void AfxSetResourceHandle(KdModuleHandle library) noexcept {
  if (Runtime* runtime = Current<Runtime>::get()) runtime->resources.setCurrent(library);
}

KdModuleHandle AfxGetResourceHandle() noexcept {
  const Runtime* runtime = Current<Runtime>::get();
  return runtime ? runtime->resources.current() : nullptr;
}

int LoadStringW(KdModuleHandle resources, unsigned id, wchar_t* buffer, int capacity) noexcept {
  if (!buffer || capacity <= 0) return 0;
  *buffer = L'\0';
  return guarded(0, [=](Runtime& runtime) {
    const auto* archive = runtime.resources.archive(resources);
    const std::wstring* text = archive ? archive->text(id) : nullptr;
    return text ? static_cast<int>(copyText(*text, buffer, static_cast<std::size_t>(capacity))) : 0;
  });
}

unsigned GetModuleFileNameW(KdModuleHandle module, wchar_t* path, unsigned capacity) noexcept {
  if (!path || capacity == 0) return 0;
  *path = L'\0';
  return guarded(0u, [=](Runtime& runtime) {
    const KdModuleHandleTag* found = runtime.modules.find(module);
    return found ? static_cast<unsigned>(copyText(torva::wideFromUtf8(found->path()), path, capacity)) : 0u;
  });
}

unsigned kdrxRootFolder(wchar_t* path, unsigned capacity) noexcept {
  if (!path || capacity == 0) return 0;
  *path = L'\0';
  return guarded(0u, [=](Runtime& runtime) {
    return static_cast<unsigned>(copyText(torva::wideFromUtf8(runtime.folders.root) + L'/', path, capacity));
  });
}

KdStatus kddbLoadLinetypeFromFile(const wchar_t* file, const wchar_t* name, KdDbObjectId& id, KdDbDatabase* database,
                                  int /*flags*/) noexcept {
  if (!file || !name || !database) return KdStatus::nullPointer;
  return guarded(KdStatus::fileNotFound, [&](Runtime& runtime) {
    std::string path = torva::utf8FromWide(file);
    if (!path.starts_with('/')) path.insert(0, runtime.folders.root + '/');
    auto& drawing = static_cast<torva::db::Database&>(*database);
    const auto linetype = torva::db::loadLinetype(drawing, path, name);
    if (!linetype) return statusOf(linetype.error().code);
    id = drawing.idOf(*linetype);
    return KdStatus::ok;
  });
}

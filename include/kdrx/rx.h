#pragma once

#include <cstdint>

#include <kdrx/ed.h>
#include <kdrx/export.h>
#include <kdrx/text.h>

// What a module offers its host and what it finds there.
//
// A module is a shared library that exports two functions:
//   int DllMain(KdModuleHandle instance, unsigned reason, void* reserved)
//       reason 1 after loading, 0 before unloading; result 1, or 0 after loading to refuse
//   int kdrxEntryPoint(int message, void* applicationId)
//       message 1 to start, 2 to stop; result 0, anything else on starting refuses
//
// Commands that a module leaves registered when it stops, or when it refused to start, are removed by the host. Beside a
// module NAME.kdrx may lie NAME.kdrx.commands with a global command name a line: the module is then loaded when one is first
// given.

extern "C" {
using KdDllMain = int (*)(KdModuleHandle instance, unsigned reason, void* reserved);
using KdEntryPoint = int (*)(int message, void* applicationId);
}

/// Base of what the system registry holds. An object taken out of a registry belongs to whoever took it out.
class KDRX_API KdRxObject {
 public:
  virtual ~KdRxObject();
};

/// Named objects by key. Keys are compared exactly.
class KDRX_API KdRxDictionary : public KdRxObject {
 public:
  ~KdRxDictionary() override;
  /// The object under `key`, owned by the dictionary; null when there is none, or no key.
  virtual KdRxObject* at(const wchar_t* key) const = 0;
  /// Takes the entry out; the caller owns the object. Null when there was none, and always in the system registry, whose
  /// objects belong to the host.
  virtual KdRxObject* remove(const wchar_t* key) = 0;
};

/// Registers modules with the loader. Under the key "DynamicLinker" of the system registry.
class KDRX_API KdRxDynamicLinker : public KdRxObject {
 public:
  ~KdRxDynamicLinker() override;
  /// Lets the module's library be unloaded once it was stopped; without it the library stays in memory until the process
  /// ends. @return false for an unknown application id
  virtual bool unlockApplication(void* applicationId) = 0;
  /// States that the module works with any number of drawings, one after the other. @return false for an unknown id
  virtual bool registerAppMDIAware(void* applicationId) = 0;
};

/// Commands by group. Under the key "KDAPP_REGISTERED_COMMANDS" of the system registry.
class KDRX_API KdEdCommandStack : public KdRxObject {
 public:
  ~KdEdCommandStack() override;
  /// Adds a command. Global names are understood in every language; the local name is the translated one.
  /// @param flags kept for the host; 2 marks a command that may be given while nothing else runs
  /// @param context, functionCode, resources, record what a host with more than a command line would use: null, -1, null,
  /// null
  /// @return duplicateKey when the group has a command of that global name, nullPointer; nothing is added then
  [[nodiscard]] virtual KdStatus addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName,
                                            int flags, KdCommandFunction function, void* context, int functionCode,
                                            KdModuleHandle resources, void** record) = 0;
  /// Removes a group with all its commands. @return keyNotFound
  [[nodiscard]] virtual KdStatus removeGroup(const wchar_t* group) = 0;
};

/// The registry of the running host: "KDAPP_REGISTERED_COMMANDS", "ServiceDictionary", "DynamicLinker".
KDRX_API KdRxDictionary* kdrxSysRegistry() noexcept;

/// Registers a service name; a name that is registered stays as it is.
KDRX_API void kdrxRegisterService(const wchar_t* name) noexcept;
KDRX_API bool kdrxServiceIsRegistered(const wchar_t* name) noexcept;

/// Whether the host can show dialogs: those of ui.h, or any made with Qt widgets. A console program cannot.
KDRX_API bool kdrxShowsDialogs() noexcept;

/// Opens a resource library by its file name, looked for beside the module that asks, then under the host's root folder. A
/// resource library is data (texts by id and pictures by name), never code.
/// @return null when it is missing or cannot be read; released with AfxFreeLibrary()
KDRX_API KdModuleHandle loadResourceDll(const wchar_t* name) noexcept;
/// Releases a resource library; false when the handle is none.
KDRX_API bool AfxFreeLibrary(KdModuleHandle library) noexcept;
/// Makes a resource library the source of dialogs and texts; null is allowed.
KDRX_API void AfxSetResourceHandle(KdModuleHandle library) noexcept;

/// The path of a loaded module, cut to `capacity` - 1 characters.
/// @return its length; 0 for an unknown handle
KDRX_API unsigned GetModuleFileNameW(KdModuleHandle module, wchar_t* path, unsigned capacity) noexcept;

/// The host's root folder, under which "Support/" and the linetype files lie, ending with "/", cut to `capacity` - 1
/// characters.
/// @return its length; 0 when no host runs
KDRX_API unsigned kdrxRootFolder(wchar_t* path, unsigned capacity) noexcept;

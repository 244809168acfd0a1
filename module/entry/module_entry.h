#pragma once

#include "entry/extension_module.h"

#include <kdrx/rx.h>
#include <kdrx/text.h>

/// Name of the module's resource library: its texts and pictures.
inline constexpr const wchar_t* kResourceLibrary = L"KdrxMLStyleRes.dll";

/// The module's own handle, stored when the process attaches.
extern KdModuleHandle hAppModule;
/// The resource library opened when the module was started; texts that do not belong to a running command are read from it.
/// It stays open when the module is stopped.
extern KdModuleHandle hResModule;
/// The module's one registration record.
extern CKdExtensionModule extensionModule;

extern "C" {

/// Takes notice of the process attaching (reason 1) and detaching (reason 0); other reasons do nothing.
/// @return always 1
KDRX_API int DllMain(KdModuleHandle instance, unsigned reason, void* reserved) noexcept;

/// Takes the host's messages: 1 starts the module, 2 stops it, 14 is accepted, and any other is ignored alike.
/// @return 0; 3 when the module cannot start because its resource library cannot be opened: nothing is registered then
KDRX_API int kdrxEntryPoint(int message, void* applicationId) noexcept;
}

/// Registers the service and the three commands.
void initApp();
/// Removes the service and the commands.
void unloadApp();

/// The text of a message in hResModule, whatever resource handle is current; empty when there is none.
CStdStr<wchar_t> LoadLocalCmdStr(unsigned messageId);

/// Opens the resource library named after a module's own file: "NAMERes.dll" for "NAME.ending".
/// @return null for an unknown module, or when there is no such library
KdModuleHandle _loadResLib(KdModuleHandle instance);

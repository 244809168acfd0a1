#pragma once

#include <string>

#include <kdrx/ed.h>
#include <kdrx/rx.h>

// What the modules of the loader's tests have in common. A module leaves notes in the host's service dictionary, where a
// test can see which of its entry points was called.

enum Message : int { kLoad = 1, kUnload = 2 };
enum Reason : unsigned { kDetach = 0, kAttach = 1 };

inline void note(const wchar_t* text) {
  kdrxRegisterService(text);
}

template <class Object>
Object* fromRegistry(const wchar_t* key) {
  return static_cast<Object*>(kdrxSysRegistry()->at(key));
}

inline KdStatus addCommand(const wchar_t* group, const wchar_t* name, KdCommandFunction function) {
  return fromRegistry<KdEdCommandStack>(L"KDAPP_REGISTERED_COMMANDS")
      ->addCommand(group, name, name, 2, function, nullptr, -1, nullptr, nullptr);
}

extern "C" {
KDRX_API int DllMain(KdModuleHandle instance, unsigned reason, void* reserved);
KDRX_API int kdrxEntryPoint(int message, void* applicationId);
}

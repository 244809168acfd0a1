#include "badmodules/module.h"

// Throws from both of its last calls, and leaves its command registered.

int DllMain(KdModuleHandle, unsigned reason, void*) {
  if (reason == kDetach) throw 1;
  return 1;
}

int kdrxEntryPoint(int message, void*) {
  if (message == kLoad) return addCommand(L"STAYS", L"STAYS", [] {}) == KdStatus::ok ? 0 : 1;
  if (message == kUnload) throw 2;
  return 0;
}

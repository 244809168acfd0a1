#include "badmodules/module.h"

// Refuses to start after it has registered a command, which it leaves behind.

int DllMain(KdModuleHandle, unsigned reason, void*) {
  note(reason == kAttach ? L"attached" : L"detached");
  return 1;
}

int kdrxEntryPoint(int message, void*) {
  if (message != kLoad) return 0;
  const bool isAdded = addCommand(L"REFUSED", L"REFUSED", [] { kdutPrint(L"runs although refused"); }) == KdStatus::ok;
  return isAdded ? 3 : 4;
}

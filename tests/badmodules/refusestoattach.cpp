#include "badmodules/module.h"

int DllMain(KdModuleHandle, unsigned, void*) {
  return 0;
}

int kdrxEntryPoint(int, void*) {
  note(L"started");
  return 0;
}

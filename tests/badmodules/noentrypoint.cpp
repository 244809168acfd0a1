#include "badmodules/module.h"

int DllMain(KdModuleHandle, unsigned, void*) {
  note(L"attached");
  return 1;
}

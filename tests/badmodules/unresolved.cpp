#include "badmodules/module.h"

// Needs a function that no library has.
extern "C" int functionOfANewerHost();

int DllMain(KdModuleHandle, unsigned, void*) {
  return functionOfANewerHost();
}

int kdrxEntryPoint(int, void*) {
  return 0;
}

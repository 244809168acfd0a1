#include <stdexcept>

#include "badmodules/module.h"

int DllMain(KdModuleHandle, unsigned, void*) {
  return 1;
}

int kdrxEntryPoint(int message, void*) {
  if (message == kLoad) throw std::runtime_error("cannot start today");
  return 0;
}

#include <stdexcept>

#include "badmodules/module.h"

// Its commands throw.

int DllMain(KdModuleHandle, unsigned, void*) {
  return 1;
}

int kdrxEntryPoint(int message, void*) {
  if (message != kLoad) return 0;
  const bool areAdded = addCommand(L"THROWS", L"THROWS", [] { throw std::runtime_error("out of luck"); }) == KdStatus::ok &&
                        addCommand(L"THROWS", L"THROWSANUMBER", [] { throw 42; }) == KdStatus::ok;
  return areAdded ? 0 : 1;
}

#include "badmodules/module.h"

int DllMain(KdModuleHandle, unsigned, void*) {
  return 1;
}

int kdrxEntryPoint(int message, void*) {
  if (message != kLoad) return 0;
  if (addCommand(L"TWICE", L"TWICE", [] { kdutPrint(L"the first"); }) != KdStatus::ok) return 1;
  return addCommand(L"twice", L"twice", [] { kdutPrint(L"the second"); }) == KdStatus::duplicateKey ? 0 : 1;
}

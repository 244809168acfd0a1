#include "badmodules/module.h"

int kdrxEntryPoint(int, void*) {
  note(L"started");
  return 0;
}

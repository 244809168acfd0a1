#include <stdexcept>

#include "badmodules/module.h"

#include <kdrx/db_database.h>

// Commands that break the rules: one leaves objects open, some throw.

namespace {

void leaveOpen() {
  KdDbObject* dictionary = nullptr;
  KdDbObject* layers = nullptr;
  const KdDbDatabase* drawing = kddbWorkingDatabase();
  const bool areOpen =
      kddbOpenObject(dictionary, drawing->namedObjectsDictionaryId(), KdOpenMode::forRead) == KdStatus::ok &&
      kddbOpenObject(layers, drawing->layerTableId(), KdOpenMode::forWrite) == KdStatus::ok;
  kdutPrint(areOpen ? L"opened both" : L"could not open both");
}

}  // namespace

int DllMain(KdModuleHandle, unsigned, void*) {
  return 1;
}

int kdrxEntryPoint(int message, void*) {
  if (message != kLoad) return 0;
  const bool areAdded = addCommand(L"MIS", L"LEAVEOPEN", leaveOpen) == KdStatus::ok &&
                        addCommand(L"MIS", L"THROWS", [] { throw std::runtime_error("out of luck"); }) == KdStatus::ok &&
                        addCommand(L"MIS", L"THROWSANUMBER", [] { throw 42; }) == KdStatus::ok;
  return areAdded ? 0 : 1;
}

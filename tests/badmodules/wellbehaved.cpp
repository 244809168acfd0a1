#include "badmodules/module.h"

// A module that does everything right, to compare the others with; it lets itself be unloaded.

int DllMain(KdModuleHandle instance, unsigned reason, void*) {
  if (reason == kAttach) {
    wchar_t path[1024];
    const unsigned length = GetModuleFileNameW(instance, path, 1024);
    note(std::wstring(path, length).c_str());
  }
  note(reason == kAttach ? L"attached" : L"detached");
  return 1;
}

int kdrxEntryPoint(int message, void* applicationId) {
  if (message == kLoad) {
    auto* linker = fromRegistry<KdRxDynamicLinker>(L"DynamicLinker");
    if (linker->unlockApplication(applicationId)) note(L"unlocked");
    if (linker->unlockApplication(&message)) note(L"a stranger was unlocked");
    return addCommand(L"WELL", L"WELLBEHAVED", [] { kdutPrint(L"well behaved"); }) == KdStatus::ok ? 0 : 1;
  }
  if (message == kUnload) {
    note(L"stopped");
    return fromRegistry<KdEdCommandStack>(L"KDAPP_REGISTERED_COMMANDS")->removeGroup(L"WELL") == KdStatus::ok ? 0 : 1;
  }
  return 0;
}

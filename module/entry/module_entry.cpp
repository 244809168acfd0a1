#include "entry/module_entry.h"

#include <string>

#include "entry/commands.h"

KdModuleHandle hAppModule = nullptr;
KdModuleHandle hResModule = nullptr;
CKdExtensionModule extensionModule;

namespace {

constexpr const wchar_t* kService = L"KvMLStyleApps";
constexpr const wchar_t* kCommandGroup = L"TORVA_KVMLSTYLEGROUP";

enum Message : int { kLoad = 1, kUnload = 2 };
enum Reason : unsigned { kProcessDetach = 0, kProcessAttach = 1 };
constexpr int kStarted = 0;
constexpr int kNoResources = 3;

struct CommandEntry {
  const wchar_t* globalName;
  unsigned localNameId;
  KdCommandFunction function;
};
constexpr CommandEntry kCommands[] = {
    {L"MLSTYLE", 4013, cmd_kvmlstyle},
    {L"MLEDIT", 4014, cmd_kvmledit},
    {L"-MLEDIT", 4015, cmd_kvmleditcli},
};
constexpr int kCommandFlags = 2;
constexpr int kNoFunctionCode = -1;

template <class Object>
Object* registryObject(const wchar_t* key) {
  KdRxDictionary* registry = kdrxSysRegistry();
  return registry ? static_cast<Object*>(registry->at(key)) : nullptr;
}

KdEdCommandStack* commandStack() {
  return registryObject<KdEdCommandStack>(L"KDAPP_REGISTERED_COMMANDS");
}

int start(void* applicationId) {
  hResModule = loadResourceDll(kResourceLibrary);
  if (!hResModule) return kNoResources;
  if (auto* linker = registryObject<KdRxDynamicLinker>(L"DynamicLinker")) {
    linker->unlockApplication(applicationId);
    linker->registerAppMDIAware(applicationId);
  }
  initApp();
  return kStarted;
}

int answer(int message, void* applicationId) {
  if (message == kLoad) return start(applicationId);
  if (message == kUnload) unloadApp();
  return kStarted;
}

}  // namespace

int DllMain(KdModuleHandle instance, unsigned reason, void*) noexcept {
  if (reason == kProcessAttach) {
    hAppModule = instance;
    extensionModule.AttachInstance(instance);
  } else if (reason == kProcessDetach) {
    extensionModule.DetachInstance();
  }
  return 1;
}

int kdrxEntryPoint(int message, void* applicationId) noexcept {
  try {
    return answer(message, applicationId);
  } catch (...) {
    // Memory is all that can fail here. A module that could not start must not stay; at any other time it goes on.
    return message == kLoad ? kNoResources : kStarted;
  }
}

void initApp() {
  if (!kdrxServiceIsRegistered(kService)) kdrxRegisterService(kService);
  for (const CommandEntry& command : kCommands) {
    KdEdCommandStack* stack = commandStack();
    if (!stack) return;
    const CStdStr<wchar_t> localName = LoadLocalCmdStr(command.localNameId);
    // A name that the group has already belongs to a copy of this module that was loaded before; it does the same.
    static_cast<void>(stack->addCommand(kCommandGroup, command.globalName, localName.c_str(), kCommandFlags,
                                        command.function, nullptr, kNoFunctionCode, nullptr, nullptr));
  }
}

void unloadApp() {
  if (kdrxServiceIsRegistered(kService)) {
    if (auto* services = registryObject<KdRxDictionary>(L"ServiceDictionary")) delete services->remove(kService);
  }
  // A group that is gone already is as good as one removed now.
  if (KdEdCommandStack* stack = commandStack()) static_cast<void>(stack->removeGroup(kCommandGroup));
}

CStdStr<wchar_t> LoadLocalCmdStr(unsigned messageId) {
  CStdStr<wchar_t> text;
  text.LoadStringW(hResModule, messageId);
  return text;
}

// Nothing here calls it: the entry point and the commands open the library by its fixed name.
KdModuleHandle _loadResLib(KdModuleHandle instance) {
  constexpr unsigned kCapacity = 1024;
  wchar_t path[kCapacity];
  const unsigned length = GetModuleFileNameW(instance, path, kCapacity);
  if (length == 0) return nullptr;

  std::wstring name(path, length);
  constexpr std::size_t kShortestWithEnding = 4;
  if (name.size() > kShortestWithEnding) {
    // Only the backslash separates folders here, deliberately: a path without one keeps its folders, so the library is
    // looked for beside the module.
    name.erase(0, name.rfind(L'\\') + 1);
    name = name.substr(0, name.rfind(L'.')) + L"Res" + L".dll";
  }
  return loadResourceDll(name.c_str());
}

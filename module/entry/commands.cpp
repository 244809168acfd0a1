#include "entry/commands.h"

#include "entry/dialogs_library.h"
#include "entry/module_entry.h"
#include "entry/tool_dispatch.h"

#include <kdrx/ed.h>
#include <kdrx/rx.h>

namespace {

enum TextId : unsigned {
  kToolKeywords = 4000,
  kToolPrompt = 4001,
  kStyleManagerNeedsDialog = 4016,
  kToolPickerNeedsDialog = 4017,
  kCommandFailed = 4018,
  kToolPickerMissing = 4019,
  kStyleManagerMissing = 4020,
};

void print(KdModuleHandle resources, unsigned id) {
  CStdStr<wchar_t> text;
  if (text.LoadStringW(resources, id)) kdutPrint(text.c_str());
}

/// Runs `work` with a freshly opened resource library as the current one.
template <class Work>
void runWithResources(const Work& work) noexcept {
  try {
    const KdModuleHandle library = loadResourceDll(kResourceLibrary);
    if (!library) return;
    const KdModuleHandle previous = AfxGetResourceHandle();
    AfxSetResourceHandle(library);
    work(library);
    // No guard does this, deliberately: after an exception the library stays open and current, so that whatever the
    // broken-off work left behind still finds its texts.
    AfxSetResourceHandle(previous);
    AfxFreeLibrary(library);
  } catch (...) {
    print(hResModule, kCommandFailed);
  }
}

void askForTool(KdModuleHandle library) {
  CStdStr<wchar_t> keywords, prompt;
  keywords.LoadStringW(library, kToolKeywords);
  // A list that the host cannot read leaves the prompt without keywords, and then no answer names a tool.
  static_cast<void>(kdedInitGet(kKdInitGetNone, keywords.c_str()));

  prompt.LoadStringW(library, kToolPrompt);
  constexpr int kReplyCapacity = 2048;
  wchar_t reply[kReplyCapacity];
  if (kdedGetKword(prompt.c_str(), reply, kReplyCapacity) != kKdInputNormal) return;
  mlineEditOperation(toolOfKeyword(reply), library);
}

}  // namespace

void cmd_kvmlstyle() noexcept {
  // The dialog goes when the former resource library is back.
  StyleManager manager;
  runWithResources([&](KdModuleHandle library) {
    if (!kdrxShowsDialogs()) return print(library, kStyleManagerNeedsDialog);
    manager = createStyleManager();
    if (!manager) return print(library, kStyleManagerMissing);
    manager();
  });
}

void cmd_kvmledit() noexcept {
  // The dialog goes when the former resource library is back.
  ToolPicker picker;
  runWithResources([&](KdModuleHandle library) {
    if (!kdrxShowsDialogs()) return print(library, kToolPickerNeedsDialog);
    picker = createToolPicker();
    if (!picker) return print(library, kToolPickerMissing);
    mlineEditOperation(picker(), library);
  });
}

void cmd_kvmleditcli() noexcept {
  runWithResources(askForTool);
}

#include "runtime/host_texts.h"

#include <exception>

#include <kdrx/db_reserved.h>
#include <kdrx/rx.h>
#include <kdrx/text.h>

namespace torva::runtime {
namespace {

constexpr int kNamedColors = 7;

std::wstring textOf(unsigned id) {
  const KdModuleHandle library = loadResourceDll(L"TORVARes.dll");
  CStdStr<wchar_t> text;
  text.LoadStringW(library, id);
  AfxFreeLibrary(library);
  return text;
}

}  // namespace

std::wstring hostText(HostText text) {
  return textOf(static_cast<unsigned>(text));
}

std::wstring hostColorName(int index) {
  if (index < 1 || index > kNamedColors) return {};
  return textOf(static_cast<unsigned>(HostText::firstColor) + static_cast<unsigned>(index) - 1);
}

}  // namespace torva::runtime

std::wstring kddbReservedString(KdReservedName name) noexcept {
  using torva::runtime::HostText;
  constexpr struct {
    HostText text;
    const wchar_t* inDrawings;
  } kNames[] = {{HostText::byLayer, L"ByLayer"}, {HostText::byBlock, L"ByBlock"}, {HostText::continuous, L"Continuous"}};
  const auto& [text, inDrawings] = kNames[static_cast<int>(name)];
  try {
    const std::wstring local = torva::runtime::hostText(text);
    return local.empty() ? inDrawings : local;
  } catch (const std::exception&) {
    return inDrawings;
  }
}

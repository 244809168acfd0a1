#include "mlstyle/editor/ColorNames.h"

#include <cwchar>

namespace {

constexpr int kByBlock = 0, kByLayer = 256, kNamedColors = 7;
constexpr unsigned kFirstName = 6;

bool isNamed(int index) {
  return index == kByBlock || index == kByLayer || (index >= 1 && index <= kNamedColors);
}

}  // namespace

void ColorToString(int index, CStdStr<wchar_t>& name) {
  if (index == kByBlock) {
    name = L"BYBLOCK";
  } else if (index == kByLayer) {
    name = L"BYLAYER";
  } else if (isNamed(index)) {
    name.LoadStringW(AfxGetResourceHandle(), kFirstName + static_cast<unsigned>(index) - 1);
  } else {
    name = std::to_wstring(index);
  }
}

int StringToColor(const CStdStr<wchar_t>& name) {
  for (const int index : {kByBlock, kByLayer, 1, 2, 3, 4, 5, 6, 7}) {
    CStdStr<wchar_t> known;
    ColorToString(index, known);
    if (kdutEqualsIgnoringCase(name.c_str(), known.c_str())) return index;
  }
  return static_cast<int>(std::wcstol(name.c_str(), nullptr, 10));
}

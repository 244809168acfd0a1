#include "answers.h"

#include "base/numbers.h"
#include "base/text.h"

std::wstring answerText(const KdGePoint3d& pointUcs) {
  using torva::formatReal;
  return torva::wideFromUtf8(formatReal(pointUcs.x) + "," + formatReal(pointUcs.y) + "," + formatReal(pointUcs.z));
}

std::wstring quoted(const std::wstring& text) {
  std::wstring result = L"\"";
  for (const wchar_t c : text) result += c == L'"' ? std::wstring(L"\"\"") : std::wstring(1, c);
  return result + L"\"";
}

#include "mlstyle/editor/RealText.h"

#include <charconv>
#include <cwchar>
#include <cwctype>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr std::size_t kLongest = 512;

std::wstring_view trimmed(std::wstring_view text) {
  while (!text.empty() && std::iswspace(static_cast<std::wint_t>(text.front()))) text.remove_prefix(1);
  while (!text.empty() && std::iswspace(static_cast<std::wint_t>(text.back()))) text.remove_suffix(1);
  return text;
}

bool hasForm(std::wstring_view text, bool allowsMinus) {
  int points = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isDigit = text[i] >= L'0' && text[i] <= L'9';
    const bool isPoint = text[i] == L'.' && ++points == 1;
    const bool isMinus = text[i] == L'-' && i == 0 && allowsMinus;
    if (!isDigit && !isPoint && !isMinus) return false;
  }
  return !text.empty();
}

}  // namespace

bool gx_strIsValidReal(const wchar_t* text, bool allowsMinus, bool trims, double* value) {
  if (!text) return false;
  std::wstring_view number(text, wcsnlen(text, kLongest));
  if (trims) number = trimmed(number);
  if (!hasForm(number, allowsMinus)) return false;
  // The C library's conversions would follow the user's language.
  const std::string digits(number.begin(), number.end());
  double result = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), result);
  if (error == std::errc::result_out_of_range) return false;
  if (value) *value = result;
  return true;
}

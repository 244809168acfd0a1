#include "base/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/decimal.h"
#include "base/text.h"

namespace torva {
namespace {

constexpr auto kHexDigits = [] {
  std::array<std::uint8_t, 256> digits{};
  digits.fill(0xFF);
  for (std::uint8_t i = 0; i < 10; ++i) digits['0' + i] = i;
  for (std::uint8_t i = 0; i < 6; ++i) digits['A' + i] = digits['a' + i] = static_cast<std::uint8_t>(10 + i);
  return digits;
}();

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view withoutPlus(std::string_view text) {
  const bool isPlusDigit = text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+';
  return isPlusDigit ? text.substr(1) : text;
}

/// Whether a number outside the range of double is so because it is too small.
bool isTiny(std::string_view text) {
  const auto exponent = text.find_first_of("eE");
  if (exponent != std::string_view::npos) return exponent + 1 < text.size() && text[exponent + 1] == '-';
  const auto first = text.find_first_not_of('-');
  return first != std::string_view::npos && (text[first] == '0' || text[first] == '.');
}

std::optional<double> strictReal(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range && isTiny(text)) return 0.0;
  if (error != std::errc() || !std::isfinite(value)) return std::nullopt;
  return value;
}

/// Decimal comma, exponent letter D, and blanks behind the exponent letter made regular.
std::optional<double> lenientReal(std::string_view text) {
  constexpr std::size_t kLongestNumber = 400;
  if (text.size() > kLongestNumber) return std::nullopt;
  std::string regular;
  for (const char c : text) {
    const bool isAfterExponent = !regular.empty() && regular.back() == 'e';
    if (isAfterExponent && (isBlank(c) || c == '+')) continue;
    if (c == ',') {
      regular += '.';
    } else {
      regular += c == 'D' || c == 'd' || c == 'E' ? 'e' : c;
    }
  }
  return strictReal(regular);
}

}  // namespace

std::optional<double> parseReal(std::string_view text) {
  text = withoutPlus(withoutBlanks(text));
  const char* const end = text.data() + text.size();
  if (double value = 0; readDecimal(text.data(), end, value) == end && !text.empty()) return value;
  if (const auto value = strictReal(text)) return value;
  return lenientReal(text);
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
  text = withoutPlus(withoutBlanks(text));
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc() && end == text.data() + text.size()) return value;
  const auto real = parseReal(text);
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (!real || *real != std::trunc(*real) || *real < -kLimit || *real >= kLimit) return std::nullopt;
  return static_cast<std::int64_t>(*real);
}

std::optional<std::uint64_t> parseHandle(std::string_view text) {
  constexpr std::size_t kMostDigits = 16;
  text = withoutBlanks(text);
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  std::uint64_t value = 0;
  for (const char c : text) {
    const std::uint8_t digit = kHexDigits[static_cast<unsigned char>(c)];
    if (digit > 0xF) return std::nullopt;
    value = value << 4 | digit;
  }
  return value;
}

std::string formatReal(double value) {
  std::string text;
  appendReal(text, value);
  return text;
}

void appendReal(std::string& text, double value) {
  if (!std::isfinite(value)) value = 0;
  constexpr double kFixedBelow = 1e16;
  constexpr double kFixedFrom = 1e-5;
  const double size = std::fabs(value);
  const bool isFixed = size == 0 || (size >= kFixedFrom && size < kFixedBelow);
  std::array<char, 40> buffer;
  const auto format = isFixed ? std::chars_format::fixed : std::chars_format::scientific;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format);
  const std::string_view digits(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::string_view mantissa = digits.substr(0, digits.find('e'));
  text.append(mantissa);
  if (mantissa.find('.') == std::string_view::npos) text.append(".0");
  if (mantissa.size() < digits.size()) text.append("E").append(digits.substr(mantissa.size() + 1));
}

std::string formatHandle(std::uint64_t handle) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  do {
    text += kDigits[handle & 0xF];
    handle >>= 4;
  } while (handle != 0);
  std::reverse(text.begin(), text.end());
  return text;
}

}  // namespace torva

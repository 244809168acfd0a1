// Lengths and angles as text: kddbRToS() and its kin of <kdrx/ut.h>.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "base/current.h"
#include "base/numbers.h"
#include "base/text.h"
#include "db/angles.h"
#include "db/database.h"
#include "db/system_variables.h"

#include <kdrx/ut.h>

namespace {

constexpr int kMostDigits = 16;
constexpr int kNoZeroInFront = 4, kNoZerosAtEnd = 8;  // bits of DIMZIN

int dimzin() {
  const torva::db::SystemVariables variables(torva::Current<torva::db::Database>::get());
  return std::get<int>(variables.get(L"DIMZIN").value());
}

/// Leaves out zeros of the digits in front of an exponent; "0" stays.
std::string withoutZeros(const std::string& text, int kinds) {
  const std::size_t mantissaEnd = std::min(text.find('e'), text.size());
  std::string digits = text.substr(0, mantissaEnd);
  if ((kinds & kNoZerosAtEnd) && digits.find('.') != std::string::npos) {
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
  }
  const std::size_t first = digits.starts_with('-') ? 1 : 0;
  if ((kinds & kNoZeroInFront) && digits.compare(first, 2, "0.") == 0) digits.erase(first, 1);
  return digits + text.substr(mantissaEnd);
}

/// A number below the last digit has no sign.
std::string withoutEmptySign(std::string text) {
  const bool isZero = text.find_first_of("123456789") == std::string::npos;
  return isZero && text.starts_with('-') ? text.substr(1) : text;
}

/// A number that, as it is written shortest, ends with a five behind the wanted digits is rounded away from zero, as people
/// do it. What is held may lie below that: 0.15 does.
double aboveTie(double value, std::chars_format format, int precision) {
  std::array<char, 400> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format);
  const std::string_view text(buffer.data(), end);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view decimals = text.substr(point, text.find('e') - point);
  const bool isTie = decimals.ends_with('5') && decimals.size() == static_cast<std::size_t>(precision) + 2;
  return isTie ? std::nextafter(value, std::copysign(HUGE_VAL, value)) : value;
}

std::string numberText(double value, std::chars_format format, int precision) {
  std::array<char, 400> buffer;  // the largest number has 309 digits in front of the point
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), aboveTie(value, format, precision), format, precision);
  std::string text = withoutZeros(withoutEmptySign({buffer.data(), end}), dimzin());
  std::ranges::replace(text, 'e', 'E');
  return text;
}

int store(const std::string& from, wchar_t* to, int capacity) {
  const std::size_t length = std::min(from.size(), static_cast<std::size_t>(capacity) - 1);
  std::copy_n(from.data(), length, to);
  to[length] = L'\0';
  return kKdInputNormal;
}

bool canWrite(double value, int precision, const wchar_t* text, int capacity) {
  return std::isfinite(value) && precision >= 0 && precision <= kMostDigits && text && capacity > 0;
}

constexpr double kDegreesPerGrad = 0.9;

/// What stands behind an angle of a unit; nothing for an unknown unit.
std::optional<std::string_view> suffixOf(int unit) {
  switch (unit) {
    case kKdDegrees:
      return "";
    case kKdGrads:
      return "g";
    case kKdRadians:
      return "r";
    default:
      return std::nullopt;
  }
}

double angleIn(int unit, double angleRad) {
  if (unit == kKdRadians) return angleRad;
  const double degrees = torva::db::degreesFrom(angleRad);
  return unit == kKdGrads ? degrees / kDegreesPerGrad : degrees;
}

double angleFrom(int unit, double value) {
  if (unit == kKdRadians) return value;
  return torva::db::radiansFrom(unit == kKdGrads ? value * kDegreesPerGrad : value);
}

/// Takes the letter of a unit off the end of a text; a text without one is in `unit`.
int takeUnit(std::string& text, int unit) {
  for (const int lettered : {kKdGrads, kKdRadians}) {
    if (!text.ends_with(*suffixOf(lettered))) continue;
    text.pop_back();
    return lettered;
  }
  return unit;
}

/// Runs a function of the programming interface; nothing may be thrown across it.
template <class Function>
int guarded(Function function) noexcept {
  try {
    return function();
  } catch (...) {
    return kKdInputError;
  }
}

}  // namespace

int kddbRToS(double value, int unit, int precision, wchar_t* text, int capacity) noexcept {
  const bool isKnown = unit == kKdDecimal || unit == kKdScientific;
  if (!isKnown || !canWrite(value, precision, text, capacity)) return kKdInputError;
  const auto format = unit == kKdDecimal ? std::chars_format::fixed : std::chars_format::scientific;
  return guarded([=] { return store(numberText(value, format, precision), text, capacity); });
}

int kddbAngToS(double angleRad, int unit, int precision, wchar_t* text, int capacity) noexcept {
  const auto suffix = suffixOf(unit);
  if (!suffix || !canWrite(angleRad, precision, text, capacity)) return kKdInputError;
  return guarded([=] {
    const std::string number = numberText(angleIn(unit, angleRad), std::chars_format::fixed, precision);
    return store(number + std::string(*suffix), text, capacity);
  });
}

int kddbAngToF(const wchar_t* text, int unit, double* angleRad) noexcept {
  if (!text || !angleRad || !suffixOf(unit)) return kKdInputError;
  return guarded([=]() -> int {
    std::string number = torva::utf8FromWide(torva::trimmed(text));
    const int ownUnit = takeUnit(number, unit);
    const auto value = torva::parseReal(number);
    if (!value) return kKdInputError;
    *angleRad = angleFrom(ownUnit, *value);
    return kKdInputNormal;
  });
}

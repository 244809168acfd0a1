#include "base/decimal.h"

#include <bit>
#include <cstdint>

#include "base/digits.h"

namespace torva {

double longDecimalQuotient(std::uint64_t digits, std::size_t decimals) {
  const std::uint64_t power = kPowersOfTen[decimals];
  // With the highest bit of both set the quotient has 62 bits or more, and its last one can stand for all that follow.
  __extension__ using Wide = unsigned __int128;
  const int digitsShift = std::countl_zero(digits), powerShift = std::countl_zero(power);
  const Wide dividend = Wide{digits << digitsShift} << 62;
  const std::uint64_t divisor = power << powerShift;
  const auto whole = static_cast<std::int64_t>(dividend / divisor);
  const bool hasRest = dividend != Wide{static_cast<std::uint64_t>(whole)} * divisor;
  const auto scale = static_cast<std::uint64_t>(1023 - 62 + powerShift - digitsShift) << 52;
  return static_cast<double>(whole | (hasRest ? 1 : 0)) * std::bit_cast<double>(scale);
}

const char* readDecimal(const char* begin, const char* end, double& value) {
  const char* p = begin;
  const bool isNegative = p != end && *p == '-';
  if (isNegative) ++p;
  const Digits whole = takeDigits(p, end);
  p += whole.count;
  Digits fraction;
  if (p != end && *p == '.') {
    ++p;
    fraction = takeDigits(p, end);
    p += fraction.count;
  }
  const std::size_t count = whole.count + fraction.count;
  if (count == 0 || count > Digits::kMost || (p != end && *p >= '0' && *p <= '9')) return nullptr;
  const double size = decimalQuotient(whole.value * kPowersOfTen[fraction.count] + fraction.value, fraction.count);
  value = isNegative ? -size : size;
  return p;
}

}  // namespace torva

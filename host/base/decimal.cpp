#include "base/decimal.h"

#include <array>
#include <bit>
#include <cstdint>

#include "base/digits.h"

namespace torva {

namespace {

__extension__ using Wide = unsigned __int128;

/// A power of ten with the highest bit set, and 2^127 over it.
struct Divisor {
  std::uint64_t value = 0, reciprocal = 0;
  int shift = 0;
};

constexpr auto kDivisors = [] {
  std::array<Divisor, kPowersOfTen.size()> divisors;
  for (std::size_t i = 0; i < divisors.size(); ++i) {
    const int shift = std::countl_zero(kPowersOfTen[i]);
    const std::uint64_t value = kPowersOfTen[i] << shift;
    divisors[i] = {value, static_cast<std::uint64_t>(((Wide{1} << 127) - 1) / value), shift};
  }
  return divisors;
}();

/// dividend * 2^62 / divisor, of which the last bit stands for all that follow. Both have their highest bit set, so that it
/// has 62 bits or more.
std::int64_t stickyQuotient(std::uint64_t dividend, const Divisor& divisor) {
  // Too small by less than 2. That makes no difference unless a double's last bit is about to change there, which it does
  // at multiples of 256.
  const auto near = static_cast<std::int64_t>(Wide{dividend} * divisor.reciprocal >> 65);
  if (((near + 1) & 0xFF) > 1) return near | 1;
  const Wide exact = Wide{dividend} << 62;
  const auto whole = static_cast<std::uint64_t>(exact / divisor.value);
  const bool hasRest = exact != Wide{whole} * divisor.value;
  return static_cast<std::int64_t>(whole | (hasRest ? 1 : 0));
}

}  // namespace

double longDecimalQuotient(std::uint64_t digits, std::size_t decimals) {
  const Divisor& divisor = kDivisors[decimals];
  const int digitsShift = std::countl_zero(digits);
  const auto scale = static_cast<std::uint64_t>(1023 - 62 + divisor.shift - digitsShift) << 52;
  return static_cast<double>(stickyQuotient(digits << digitsShift, divisor)) * std::bit_cast<double>(scale);
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

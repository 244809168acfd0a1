#include "base/decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "base/digits.h"

namespace torva {
namespace {

/// digits / 10^decimals, rounded once.
double quotient(std::uint64_t digits, std::size_t decimals) {
  const std::uint64_t power = kPowersOfTen[decimals];
  // Powers of ten are exact up to 10^22.
  if (digits <= kMostExactDigits) {
    return static_cast<double>(static_cast<std::int64_t>(digits)) / static_cast<double>(static_cast<std::int64_t>(power));
  }
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

/// A decimal of 1 to 8 digits in front of the point and 1 to 16 behind it, or without a point.
struct ShortDecimal {
  bool isNegative = false;
  unsigned wholeCount = 0, decimals = 0;
  std::uint64_t whole = 0;
  const char* fraction = nullptr;
  const char* end = nullptr;

  double withSign(double size) const { return isNegative ? -size : size; }
};

/// A sign, 8 digits, a point, 16 digits and what follows.
constexpr std::ptrdiff_t kShortDecimalReach = 27;

/// Finds the parts without a loop over digits: lengths of numbers are nothing that a processor can foresee. False when there
/// is no such decimal. Requires: kShortDecimalReach bytes may be read.
inline bool findShortDecimal(const char* p, ShortDecimal& found) {
  constexpr unsigned kMostWhole = 8, kMostDecimals = 16;
  found.isNegative = *p == '-';
  p += found.isNegative;
  found.wholeCount = static_cast<unsigned>(std::countr_one(digitMask16(p)));
  if (found.wholeCount - 1 >= kMostWhole) return false;
  found.whole = digitsInFront(p, found.wholeCount);
  found.end = p + found.wholeCount;
  if (*found.end != '.') return true;
  found.fraction = found.end + 1;
  found.decimals = static_cast<unsigned>(std::countr_one(digitMask16(found.fraction)));
  found.end = found.fraction + found.decimals;
  return found.decimals != 0 && (found.decimals != kMostDecimals || *found.end < '0' || *found.end > '9');
}

double nearValue(const ShortDecimal& decimal) {
  const double whole = static_cast<double>(static_cast<std::int64_t>(decimal.whole));
  if (decimal.decimals == 0) return decimal.withSign(whole);
  const std::uint64_t digits = sixteenDigits(decimal.fraction, decimal.decimals);
  return decimal.withSign(whole + static_cast<double>(static_cast<std::int64_t>(digits)) * 1e-16);
}

/// Requires: at most Digits::kMost digits.
double exactValue(const ShortDecimal& decimal) {
  const unsigned first = std::min(decimal.decimals, 8u), second = decimal.decimals - first;
  std::uint64_t digits = decimal.whole;
  if (first != 0) digits = digits * kPowersOfTen[first] + digitsInFront(decimal.fraction, first);
  if (second != 0) digits = digits * kPowersOfTen[second] + digitsInFront(decimal.fraction + first, second);
  return decimal.withSign(quotient(digits, decimal.decimals));
}

}  // namespace

const char* readDecimal(const char* begin, const char* end, double& value) {
  ShortDecimal found;
  if (end - begin >= kShortDecimalReach && findShortDecimal(begin, found) &&
      found.wholeCount + found.decimals <= Digits::kMost) {
    value = exactValue(found);
    return found.end;
  }
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
  const double size = quotient(whole.value * kPowersOfTen[fraction.count] + fraction.value, fraction.count);
  value = isNegative ? -size : size;
  return p;
}

const char* readNearDecimal(const char* begin, const char* end, double& value) {
  std::array<char, kShortDecimalReach> copy;
  const char* start = begin;
  if (end - begin < kShortDecimalReach) {
    copy.fill(0);
    std::copy(begin, end, copy.begin());
    start = copy.data();
  }
  ShortDecimal found;
  if (!findShortDecimal(start, found)) return nullptr;
  value = nearValue(found);
  return begin + (found.end - start);
}

}  // namespace torva

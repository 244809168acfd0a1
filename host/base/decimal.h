#pragma once

#include <cstddef>
#include <cstdint>

#include "base/digits.h"

namespace torva {

/// Reads the plain decimal ("-12.5", ".5", "3") of at most 18 digits at the front of a text, rounded correctly: what nearly
/// all numbers in a drawing are, and faster than parseReal().
/// @param[out] value unchanged when there is none
/// @return where the decimal ends; null when there is none
const char* readDecimal(const char* begin, const char* end, double& value);

/// digits / 10^decimals, rounded once, for more digits than a double can hold. Requires: digits != 0, decimals <=
/// Digits::kMost.
double longDecimalQuotient(std::uint64_t digits, std::size_t decimals);

/// The same for any digits.
inline double decimalQuotient(std::uint64_t digits, std::size_t decimals) {
  // Powers of ten are exact up to 10^22.
  if (digits > kMostExactDigits) return longDecimalQuotient(digits, decimals);
  const auto power = static_cast<double>(static_cast<std::int64_t>(kPowersOfTen[decimals]));
  return static_cast<double>(static_cast<std::int64_t>(digits)) / power;
}

/// A decimal of 1 to 8 digits in front of its point and at most 18 in all, taken apart without a loop over digits: lengths
/// of numbers are nothing that a processor can foresee.
class PointedDecimal {
 public:
  /// A text whose ends and point are known. isValid() tells whether it is such a decimal. Requires: the 8 characters in
  /// front of the point may be read.
  PointedDecimal(const char* begin, const char* point, const char* end) {
    m_isNegative = *begin == '-';
    const auto whole = static_cast<unsigned>(point - begin) - (m_isNegative ? 1 : 0);
    m_decimals = static_cast<unsigned>(end - point) - 1;
    m_digits = whole + m_decimals;
    if (whole - 1 >= kChunk || m_decimals - 1 >= Digits::kMost || m_digits > Digits::kMost) return;
    m_isValid = m_digits <= kChunk ? takeShort(point, end) : takeLong(point, whole, end);
  }

  bool isValid() const { return m_isValid; }
  /// Rounded correctly. Requires: isValid().
  double value() const {
    const double size = decimalQuotient(m_whole * kPowersOfTen[m_decimals] + m_fraction, m_decimals);
    return m_isNegative ? -size : size;
  }

 private:
  static constexpr unsigned kChunk = 8;

  /// All digits at once, those in front of the point moved up to those behind it.
  bool takeShort(const char* point, const char* end) {
    constexpr unsigned kBitsPerDigit = 8;
    const std::uint64_t behind = charactersBefore(end) & highBytes(m_decimals);
    const std::uint64_t inFront = charactersBefore(point) >> (kBitsPerDigit * m_decimals);
    std::uint64_t faults = 0;
    m_fraction = lastDigits(behind | inFront, m_digits, faults);
    return faults == 0;
  }

  bool takeLong(const char* point, unsigned whole, const char* end) {
    std::uint64_t faults = 0;
    m_whole = whole == 1 ? digitBefore(point, faults) : digitsBefore(point, whole, faults);
    unsigned rest = m_decimals;
    for (const char* chunkEnd = point + 1 + kChunk; rest > kChunk; rest -= kChunk, chunkEnd += kChunk) {
      m_fraction = m_fraction * kPowersOfTen[kChunk] + digitsBefore(chunkEnd, kChunk, faults);
    }
    m_fraction = m_fraction * kPowersOfTen[rest] + digitsBefore(end, rest, faults);
    return faults == 0;
  }

  bool m_isNegative = false, m_isValid = false;
  unsigned m_decimals = 0, m_digits = 0;
  std::uint64_t m_whole = 0, m_fraction = 0;  // of a short one all digits are in the second
};

}  // namespace torva

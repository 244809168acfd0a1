#include "base/near_decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "base/digits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace torva {
namespace {

constexpr unsigned kMostInFront = 8, kMostBehind = 16;  // digits about the point
/// How many characters from a number's begin on are read, and in front of it.
constexpr std::ptrdiff_t kReach = 33, kInFront = 8;

double eightInFront(const char* end, unsigned count) {
  return static_cast<double>(static_cast<std::int64_t>(eightDigits(digitsInFront(end, count))));
}

#if defined(__SSE2__)
__m128i sixteenAt(const void* place) {
  return _mm_loadu_si128(static_cast<const __m128i*>(place));
}

/// Bit i tells whether character i of 16 is a digit.
std::uint32_t digitMask16(const char* text) {
  // Compared as signed bytes, of which '0' is made the lowest one.
  const __m128i fromZero = _mm_add_epi8(sixteenAt(text), _mm_set1_epi8(static_cast<char>(-128 - '0')));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmplt_epi8(fromZero, _mm_set1_epi8(-128 + 10))));
}

std::uint32_t digitMask32(const char* text) {
  return digitMask16(text) | digitMask16(text + 16) << 16;
}

/// What 1 to 16 digits behind a point amount to.
double share(const char* begin, unsigned count) {
  static constexpr auto kWanted = [] {
    std::array<signed char, 2 * kMostBehind> bytes{};
    std::fill_n(bytes.begin(), kMostBehind, static_cast<signed char>(-1));
    return bytes;
  }();
  const __m128i zero = _mm_setzero_si128();
  const __m128i digits =
      _mm_and_si128(_mm_sub_epi8(sixteenAt(begin), _mm_set1_epi8('0')), sixteenAt(&kWanted[kMostBehind - count]));
  // Neighbours are joined to numbers of two digits, then of four and of eight.
  const auto join = [](__m128i numbers, short power) {
    return _mm_madd_epi16(numbers, _mm_set_epi16(1, power, 1, power, 1, power, 1, power));
  };
  const __m128i twos = _mm_packs_epi32(join(_mm_unpacklo_epi8(digits, zero), 10), join(_mm_unpackhi_epi8(digits, zero), 10));
  const __m128i fours = join(twos, 100);
  const __m128i eights = join(_mm_packs_epi32(fours, fours), 10'000);
  const __m128d shares = _mm_mul_pd(_mm_cvtepi32_pd(eights), _mm_set_pd(1e-16, 1e-8));
  return _mm_cvtsd_f64(shares) + _mm_cvtsd_f64(_mm_unpackhi_pd(shares, shares));
}
#else
std::uint32_t digitMask32(const char* text) {
  std::uint32_t mask = 0;
  for (int i = 0; i < 32; ++i) mask |= static_cast<std::uint32_t>(text[i] >= '0' && text[i] <= '9') << i;
  return mask;
}

double share(const char* begin, unsigned count) {
  std::uint64_t digits = 0;
  for (const char* c = begin; c != begin + count; ++c) digits = digits * 10 + static_cast<std::uint64_t>(*c - '0');
  return static_cast<double>(digits) / static_cast<double>(kPowersOfTen[count]);
}
#endif

/// There is no loop over digits: lengths of numbers are nothing that a processor can foresee.
inline NearDecimal decimalAt(const char* begin) {
  const bool isNegative = *begin == '-';
  const char* const first = begin + (isNegative ? 1 : 0);
  const std::uint32_t others = ~digitMask32(first);
  const std::uint32_t othersBehind = others & (others - 1);
  const auto whole = static_cast<unsigned>(std::countr_zero(others));
  const auto length = static_cast<unsigned>(std::countr_zero(othersBehind));
  const unsigned decimals = length - whole - 1;
  if (whole - 1 >= kMostInFront || decimals - 1 >= kMostBehind || first[whole] != '.') return {};
  const double size = eightInFront(first + whole, whole) + share(first + whole + 1, decimals);
  return {isNegative ? -size : size, first + length};
}

/// The same where fewer characters than kReach may be read.
[[gnu::noinline]] NearDecimal decimalBefore(const char* begin, const char* end) {
  std::array<char, kInFront + kReach> copy{};
  std::copy(begin - kInFront, end, copy.data());
  const char* const copied = copy.data() + kInFront;
  const NearDecimal decimal = decimalAt(copied);
  return {decimal.value, decimal.end ? begin + (decimal.end - copied) : nullptr};
}

}  // namespace

NearDecimal nearDecimal(const char* begin, const char* end) {
  return end - begin >= kReach ? decimalAt(begin) : decimalBefore(begin, end);
}

}  // namespace torva

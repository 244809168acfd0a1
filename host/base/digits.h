#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace torva {

/// A number of decimal digits, and how many they are.
struct Digits {
  static constexpr std::size_t kMost = 18;  ///< What fits into 64 bits with any sign.

  std::uint64_t value = 0;
  std::size_t count = 0;
};

/// Whole numbers up to this one are exact in a double.
inline constexpr std::uint64_t kMostExactDigits = std::uint64_t{1} << 53;

inline constexpr auto kPowersOfTen = [] {
  std::array<std::uint64_t, Digits::kMost + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// The number that eight digits make, each a byte of 0 to 9, the first in the lowest byte.
inline std::uint64_t eightDigits(std::uint64_t digits) {
  static_assert(std::endian::native == std::endian::little);
  digits = digits * 10 + (digits >> 8);
  return (((digits & 0x000000FF000000FFu) * 0x000F424000000064u) +
          ((digits >> 16 & 0x000000FF000000FFu) * 0x0000271000000001u)) >>
         32;
}

/// The number that the first 1 to 8 characters make, all of them digits. 8 may be read.
inline std::uint64_t digitsInFront(const char* p, unsigned count) {
  std::uint64_t characters = 0;
  std::memcpy(&characters, p, sizeof characters);
  return eightDigits((characters ^ 0x3030303030303030u) << (64 - 8 * count));  // zeros in front
}

/// The number that 1 to 16 digits make with zeros behind them, up to 16. 16 characters may be read.
inline std::uint64_t sixteenDigits(const char* p, unsigned count) {
  const auto eight = [](const char* from, unsigned digits) {
    std::uint64_t characters = 0;
    std::memcpy(&characters, from, sizeof characters);
    const std::uint64_t used = ~std::uint64_t{0} >> (32 - 4 * digits) >> (32 - 4 * digits);
    return eightDigits((characters ^ 0x3030303030303030u) & used);
  };
  return eight(p, std::min(count, 8u)) * 100'000'000 + eight(p + 8, count - std::min(count, 8u));
}

/// Bit i tells whether byte i of the 16 at `p` is a digit.
inline std::uint32_t digitMask16(const char* p) {
#if defined(__SSE2__)
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i fromLeast = _mm_add_epi8(bytes, _mm_set1_epi8(static_cast<char>(-128 - '0')));  // '0' is the least value
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmplt_epi8(fromLeast, _mm_set1_epi8(-128 + 10))));
#else
  std::uint32_t mask = 0;
  for (int i = 0; i < 16; ++i) mask |= static_cast<std::uint32_t>(p[i] >= '0' && p[i] <= '9') << i;
  return mask;
#endif
}

/// The digits at the front of eight characters (the first in the lowest byte), taken all at once.
inline Digits leadingDigits(std::uint64_t characters) {
  characters ^= 0x3030303030303030u;  // a digit is 0 to 9 now, anything else more
  const std::uint64_t others = ((characters + 0x7676767676767676u) | characters) & 0x8080808080808080u;
  const std::size_t count = static_cast<std::size_t>(std::countr_zero(others)) / 8;
  if (count == 0) return {};
  return {eightDigits(characters << (64 - 8 * count)), count};  // zeros in front
}

/// The digits at the front of a text, Digits::kMost at most.
inline Digits takeDigits(const char* p, const char* end) {
  Digits digits;
  while (end - p >= 8 && digits.count + 8 <= Digits::kMost) {
    std::uint64_t characters = 0;
    std::memcpy(&characters, p, sizeof characters);
    const Digits more = leadingDigits(characters);
    digits = {digits.value * kPowersOfTen[more.count] + more.value, digits.count + more.count};
    if (more.count < 8) return digits;
    p += 8;
  }
  for (; p != end && *p >= '0' && *p <= '9' && digits.count < Digits::kMost; ++p, ++digits.count) {
    digits.value = digits.value * 10 + static_cast<std::uint64_t>(*p - '0');
  }
  return digits;
}

}  // namespace torva

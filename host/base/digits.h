#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace torva {

/// A number of decimal digits, and how many they are.
struct Digits {
  static constexpr std::size_t kMost = 18;  ///< What fits into 64 bits with any sign.

  std::uint64_t value = 0;
  std::size_t count = 0;
};

inline constexpr auto kPowersOfTen = [] {
  std::array<std::uint64_t, Digits::kMost + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// The digits at the front of eight characters (the first in the lowest byte), taken all at once.
inline Digits leadingDigits(std::uint64_t characters) {
  static_assert(std::endian::native == std::endian::little);
  characters ^= 0x3030303030303030u;  // a digit is 0 to 9 now, anything else more
  const std::uint64_t others = ((characters + 0x7676767676767676u) | characters) & 0x8080808080808080u;
  const std::size_t count = static_cast<std::size_t>(std::countr_zero(others)) / 8;
  if (count == 0) return {};
  std::uint64_t value = characters << (64 - 8 * count);  // zeros in front
  value = value * 10 + (value >> 8);
  value =
      ((value & 0x000000FF000000FFu) * 0x000F424000000064u) + ((value >> 16 & 0x000000FF000000FFu) * 0x0000271000000001u);
  return {value >> 32, count};
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

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

/// Whole numbers up to this one are exact in a double.
inline constexpr std::uint64_t kMostExactDigits = std::uint64_t{1} << 53;

inline constexpr auto kPowersOfTen = [] {
  std::array<std::uint64_t, Digits::kMost + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// Eight characters '0'. What is left of a digit by an exclusive or with them is 0 to 9, of anything else more.
inline constexpr std::uint64_t kZeros = 0x3030303030303030u;

/// The number that eight digits make, each a byte of 0 to 9, the first in the lowest byte.
inline std::uint64_t eightDigits(std::uint64_t digits) {
  static_assert(std::endian::native == std::endian::little);
  digits = digits * 10 + (digits >> 8);
  return (((digits & 0x000000FF000000FFu) * 0x000F424000000064u) +
          ((digits >> 16 & 0x000000FF000000FFu) * 0x0000271000000001u)) >>
         32;
}

/// The 8 characters in front of `end`, the last in the highest byte.
inline std::uint64_t charactersBefore(const char* end) {
  std::uint64_t characters = 0;
  std::memcpy(&characters, end - sizeof characters, sizeof characters);
  return characters;
}

/// The highest 1 to 8 bytes.
inline constexpr std::uint64_t highBytes(unsigned count) {
  return ~std::uint64_t{0} << (64 - 8 * count);
}

/// The 1 to 8 digits in front of `end` as eightDigits() takes them, with zeros in front. All 8 characters are read.
inline std::uint64_t digitsInFront(const char* end, unsigned count) {
  return (charactersBefore(end) ^ kZeros) & highBytes(count);
}

/// The number that the last 1 to 8 of the given characters make. All bits of `faults` stay as they are when those are
/// digits.
inline std::uint64_t lastDigits(std::uint64_t characters, unsigned count, std::uint64_t& faults) {
  characters = (characters ^ kZeros) & highBytes(count);  // zeros in front
  faults |= ((characters + 0x7676767676767676u) | characters) & 0x8080808080808080u;
  return eightDigits(characters);
}

/// The same for the characters in front of `end`, of which 8 may be read.
inline std::uint64_t digitsBefore(const char* end, unsigned count, std::uint64_t& faults) {
  return lastDigits(charactersBefore(end), count, faults);
}

/// The same for the last character alone, of which no others are read.
inline std::uint64_t digitBefore(const char* end, std::uint64_t& faults) {
  const auto digit = static_cast<std::uint64_t>(static_cast<unsigned char>(end[-1] - '0'));
  faults |= digit > 9 ? 1 : 0;
  return digit;
}

/// The digits at the front of eight characters (the first in the lowest byte), taken all at once.
inline Digits leadingDigits(std::uint64_t characters) {
  characters ^= kZeros;
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

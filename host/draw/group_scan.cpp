#include "draw/group_scan.h"

#include <array>
#include <cmath>

#include "base/numbers.h"

namespace torva::draw {
namespace {

constexpr int kMostDigits = 19;  // what fits into 64 bits

constexpr std::array<double, kMostDigits + 1> kDecimals = {1e-0,  1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,
                                                           1e-7,  1e-8,  1e-9,  1e-10, 1e-11, 1e-12, 1e-13,
                                                           1e-14, 1e-15, 1e-16, 1e-17, 1e-18, 1e-19};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Whether eight characters are digits, and their number: both on all eight bytes at once.
bool areEightDigits(std::uint64_t chars) {
  return ((chars & 0xF0F0F0F0F0F0F0F0u) | (((chars + 0x0606060606060606u) & 0xF0F0F0F0F0F0F0F0u) >> 4)) ==
         0x3333333333333333u;
}

std::uint64_t eightDigits(std::uint64_t chars) {
  chars -= 0x3030303030303030u;
  chars = chars * 10 + (chars >> 8);
  return (((chars & 0x000000FF000000FFu) * 0x000F424000000064u) +
          (((chars >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u)) >>
         32;
}

}  // namespace

double quickReal(std::string_view text) {
  static_assert(std::endian::native == std::endian::little);
  // Numbers like 0.0 and 1.0 are the most frequent by far.
  if (text.size() == 3 && text[1] == '.' && isDigit(text[0]) && isDigit(text[2])) {
    return (text[0] - '0') + 0.1 * (text[2] - '0');
  }
  const char* p = text.data();
  const char* const end = p + text.size();
  const bool isNegative = p != end && *p == '-';
  if (isNegative) ++p;
  std::uint64_t digits = 0;
  const char* const first = p;
  const auto takeDigits = [&] {
    for (std::uint64_t chars; end - p >= 8; p += 8) {
      std::memcpy(&chars, p, sizeof chars);
      if (!areEightDigits(chars)) break;
      digits = digits * 100'000'000 + eightDigits(chars);
    }
    for (; p != end && isDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  };
  while (p != end && isDigit(*p)) digits = digits * 10 + static_cast<std::uint64_t>(*p++ - '0');
  std::ptrdiff_t decimals = 0, mostSigns = kMostDigits;
  if (p != end && *p == '.') {
    const char* const fraction = ++p;
    ++mostSigns;
    takeDigits();
    decimals = p - fraction;
  }
  if (p - first > mostSigns || p == first) return parseReal(text).value_or(0);
  double size = static_cast<double>(digits) * kDecimals[static_cast<std::size_t>(decimals)];
  if (p != end) {
    // What rounding leaves of a right angle: 6.123233995736766e-17.
    const bool hasTinyExponent = end - p == 4 && (*p | 0x20) == 'e' && p[1] == '-' && p[2] == '1' && isDigit(p[3]);
    if (!hasTinyExponent) return parseReal(text).value_or(0);
    size *= kDecimals[static_cast<std::size_t>(10 + p[3] - '0')];
  }
  return isNegative ? -size : size;
}

}  // namespace torva::draw

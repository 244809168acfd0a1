#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "dxf/line_ends.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace torva::dxf {

/// Bit i tells whether byte i of the 16 at `block` equals `wanted`.
inline std::uint32_t equalMask16(const char* block, char wanted) {
#if defined(__SSE2__)
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted))));
#else
  std::uint32_t mask = 0;
  for (int i = 0; i < 16; ++i) mask |= static_cast<std::uint32_t>(block[i] == wanted) << i;
  return mask;
#endif
}

/// How many bytes in front of a block longCodeEndMask16() reads.
inline constexpr std::size_t kCodeReach = 5;

/// Bit i tells whether byte i of the 16 at `block` is the last of a line end (LF, or CR LF) behind a group code of two or
/// three digits that stands in three columns, with no zero in the middle one. Bytes in front of the block are read:
/// kCodeReach.
template <bool areCrLf>
inline std::uint32_t longCodeEndMask16(const char* block) {
  const char* const last = block - (areCrLf ? 2 : 1);
#if defined(__SSE2__)
  const auto at = [](const char* place) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(place)); };
  const auto equals = [&](const char* place, char wanted) { return _mm_cmpeq_epi8(at(place), _mm_set1_epi8(wanted)); };
  // Compared as signed bytes, of which the least digit is made the lowest one.
  const auto isDigit = [&](const char* place, char least) {
    const __m128i fromLeast = _mm_add_epi8(at(place), _mm_set1_epi8(static_cast<char>(-128 - least)));
    return _mm_cmplt_epi8(fromLeast, _mm_set1_epi8(static_cast<char>(-128 + '9' - least + 1)));
  };
  const __m128i first = _mm_or_si128(isDigit(last - 2, '1'), equals(last - 2, ' '));
  const __m128i code = _mm_and_si128(_mm_and_si128(isDigit(last, '0'), isDigit(last - 1, '1')), first);
  const __m128i line = _mm_and_si128(_mm_and_si128(equals(block, '\n'), equals(last - 3, '\n')), code);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(areCrLf ? _mm_and_si128(line, equals(block - 1, '\r')) : line));
#else
  const auto isDigit = [](char c, char least) { return c >= least && c <= '9'; };
  std::uint32_t mask = 0;
  for (int i = 0; i < 16; ++i) {
    const bool isCode =
        isDigit(last[i], '0') && isDigit(last[i - 1], '1') && (isDigit(last[i - 2], '1') || last[i - 2] == ' ');
    const bool isLine = block[i] == '\n' && (!areCrLf || block[i - 1] == '\r') && last[i - 3] == '\n';
    mask |= static_cast<std::uint32_t>(isCode && isLine) << i;
  }
  return mask;
#endif
}

/// The mask of the 64 bytes at `block`, of which mask16() gives the quarters.
template <class Mask16>
inline std::uint64_t mask64(const char* block, const Mask16& mask16) {
  const auto quarter = [&](std::size_t k) { return std::uint64_t{mask16(block + 16 * k)} << 16 * k; };
  return quarter(0) | quarter(1) | quarter(2) | quarter(3);
}

/// Bit i tells whether byte i of the 64 at `block` equals `wanted`.
inline std::uint64_t equalMask64(const char* block, char wanted) {
  return mask64(block, [=](const char* quarter) { return equalMask16(quarter, wanted); });
}

/// Bit i tells whether an odd number of the bits 0 to i are set.
inline std::uint64_t oddCounts(std::uint64_t bits) {
  for (int shift = 1; shift < 64; shift *= 2) bits ^= bits << shift;
  return bits;
}

/// Whether one of the 64 bytes at `block` is no ASCII character.
inline bool hasHighBit64(const char* block) {
#if defined(__SSE2__)
  const auto* quarters = reinterpret_cast<const __m128i*>(block);
  const __m128i low = _mm_or_si128(_mm_loadu_si128(quarters), _mm_loadu_si128(quarters + 1));
  const __m128i high = _mm_or_si128(_mm_loadu_si128(quarters + 2), _mm_loadu_si128(quarters + 3));
  return _mm_movemask_epi8(_mm_or_si128(low, high)) != 0;
#else
  unsigned all = 0;
  for (int i = 0; i < 64; ++i) all |= static_cast<unsigned char>(block[i]);
  return (all & 0x80) != 0;
#endif
}

/// Bit i tells whether byte i of the 64 at `block` is the last of a line end. `follower` is the byte behind them, 0 for
/// none.
template <LineEnds ends>
inline std::uint64_t lineEndMask(const char* block, char follower) {
  const std::uint64_t lf = equalMask64(block, '\n');
  if constexpr (ends == LineEnds::lf) return lf;
  const std::uint64_t beforeLf = lf >> 1 | (follower == '\n' ? std::uint64_t{1} << 63 : 0);
  return lf | (equalMask64(block, '\r') & ~beforeLf);
}

/// As findLineEnd(), for lines that are likely short: a call to memchr costs more than the search then.
inline std::size_t findNearLineEnd(std::string_view text, std::size_t from, LineEnds ends) {
  if (ends != LineEnds::lf) return findLineEnd(text, from, ends);
  for (; from + 16 <= text.size(); from += 16) {
    if (const auto mask = equalMask16(text.data() + from, '\n'))
      return from + static_cast<std::size_t>(std::countr_zero(mask));
  }
  for (; from < text.size(); ++from) {
    if (text[from] == '\n') return from;
  }
  return text.size();
}

}  // namespace torva::dxf

#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/decimal.h"
#include "base/near_decimal.h"
#include "base/numbers.h"
#include "dxf/byte_masks.h"
#include "dxf/line_ends.h"

namespace torva::dxf {

/// A place in the text of a record, for reading groups that are expected: several times faster than telling what stands
/// there. Each take() passes over what it names; where that does not stand it gives false, and the place stays. Lines end
/// with LF or CR LF. In front of a number stands its record's name at least: some characters before it are read. Numbers
/// are read in place: with the address of the cursor given away, its place would go through memory for every line.
class TextCursor {
 public:
  TextCursor(const char* begin, const char* end) : m_at(begin), m_end(end) {}

  const char* place() const { return m_at; }
  bool isAtEnd() const { return m_at == m_end; }

  /// A code of two digits in three columns.
  template <int code>
  bool isAt() const {
    return isAt(columns(code));
  }
  /// Its characters as they lie in memory.
  static constexpr std::uint32_t columns(int code) {
    static_assert(std::endian::native == std::endian::little);
    return threeChars(' ', static_cast<char>('0' + code / 10), static_cast<char>('0' + code % 10));
  }
  bool isAtExtendedData() const { return isAt(threeChars('1', '0', '0')) && m_at[3] == '1'; }

  template <int code>
  bool take() {
    return takeCode(columns(code));
  }
  bool takeCode(std::uint32_t columns) {
    std::uint32_t here = 0;
    if (m_end - m_at <= kThree) return false;
    std::memcpy(&here, m_at, sizeof here);
    if (here == (columns | std::uint32_t{'\n'} << 24)) {
      m_at += kThree + 1;
      return true;
    }
    return (here & 0xFFFFFF) == columns && takeLineEnd(m_at + kThree);
  }

  /// Exactly this text.
  bool take(std::string_view text) {
    if (static_cast<std::size_t>(m_end - m_at) < text.size() || std::memcmp(m_at, text.data(), text.size()) != 0)
      return false;
    m_at += text.size();
    return true;
  }

  /// A line that says a real number.
  [[gnu::always_inline]] bool take(double& value) {
    return takeOneDecimal(value) || takePointed(value) || takeOtherReal(value);
  }

  /// The same within two units in the last place, and faster.
  [[gnu::always_inline]] bool takeNear(double& value) {
    if (takeOneDecimal(value)) return true;
    const NearDecimal decimal = nearDecimal(m_at, m_end);
    if (!decimal.end || !takeLineEnd(decimal.end)) return takeOtherReal(value);
    value = decimal.value;
    return true;
  }

  /// A count. What it says is of no account: the list itself tells.
  bool takeCount() {
    if (m_end - m_at > 1 && m_at[1] == '\n' && m_at[0] >= '0' && m_at[0] <= '9') {
      m_at += 2;
      return true;
    }
    const char* end = m_at;
    while (end != m_end && (*end == ' ' || (*end >= '0' && *end <= '9'))) ++end;
    return takeLineEnd(end);
  }

  /// Any line; `line` is what it says.
  bool takeLine(std::string_view& line) {
    const char* const begin = m_at;
    if (!takeLine()) return false;
    line = withoutCarriageReturn({begin, static_cast<std::size_t>(m_at - 1 - begin)});
    return true;
  }
  bool takeLine() {
    if (m_end - m_at >= kShortLine) {
      if (const std::uint32_t ends = shortLineEnds(); ends != 0) {
        m_at += std::countr_zero(ends) + 1;
        return true;
      }
    }
    const std::string_view rest(m_at, static_cast<std::size_t>(m_end - m_at));
    const std::size_t end = findNearLineEnd(rest, 0, LineEnds::lf);
    if (end == rest.size()) return false;
    m_at += end + 1;
    return true;
  }

 private:
  static constexpr std::ptrdiff_t kThree = 3, kShortLine = 32;

  /// Three characters as they lie in memory.
  static constexpr std::uint32_t threeChars(char a, char b, char c) {
    return static_cast<std::uint32_t>(a | b << 8 | c << 16);
  }

  bool isAt(std::uint32_t chars) const {
    std::uint32_t here = 0;
    if (m_end - m_at <= kThree) return false;
    std::memcpy(&here, m_at, sizeof here);
    return (here & 0xFFFFFF) == chars;
  }

  bool takeLineEnd(const char* at) {
    if (at != m_end && *at == '\r') ++at;
    if (at == m_end || *at != '\n') return false;
    m_at = at + 1;
    return true;
  }

  /// Numbers like 0.0 and 1.0 are the most frequent by far.
  bool takeOneDecimal(double& value) {
    if (m_end - m_at <= kThree || m_at[1] != '.' || m_at[3] != '\n') return false;
    const int whole = m_at[0] - '0', tenths = m_at[2] - '0';
    if (whole < 0 || whole > 9 || tenths < 0 || tenths > 9) return false;
    value = (whole * 10 + tenths) / 10.0;
    m_at += kThree + 1;
    return true;
  }

  /// A number whose point is near. The line's end is looked for first: a processor goes on from there while the number is
  /// still being worked out.
  [[gnu::always_inline]] bool takePointed(double& value) {
    if (m_end - m_at < kShortLine) return false;
    const std::uint32_t ends = shortLineEnds(), points = equalMask16(m_at, '.');
    if (ends == 0 || points == 0) return false;
    const char* const lineEnd = m_at + std::countr_zero(ends);
    const char* const end = lineEnd - (lineEnd != m_at && lineEnd[-1] == '\r' ? 1 : 0);
    const char* const point = m_at + std::countr_zero(points);
    if (point >= end) return false;
    const PointedDecimal decimal(m_at, point, end);
    if (!decimal.isValid()) return false;
    value = decimal.value();
    m_at = lineEnd + 1;
    return true;
  }

  /// Bit i tells whether a line ends i characters from here, up to kShortLine of them, which have to be there.
  std::uint32_t shortLineEnds() const {
    return equalMask16(m_at, '\n') | equalMask16(m_at + kShortLine / 2, '\n') << kShortLine / 2;
  }

  bool takeOtherReal(double& value) {
    const OtherReal real = otherReal(m_at, m_end);
    if (!real.next) return false;
    value = real.value;
    m_at = real.next;
    return true;
  }

  struct OtherReal {
    double value = 0;
    const char* next = nullptr;  // null when the line says none
  };
  [[gnu::noinline]] static OtherReal otherReal(const char* at, const char* end) {
    const auto* const lineEnd = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
    if (!lineEnd) return {};
    const auto real = parseReal(withoutCarriageReturn({at, static_cast<std::size_t>(lineEnd - at)}));
    return real ? OtherReal{*real, lineEnd + 1} : OtherReal{};
  }

  const char* m_at;
  const char* m_end;
};

}  // namespace torva::dxf

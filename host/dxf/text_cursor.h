#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/decimal.h"
#include "base/numbers.h"
#include "dxf/byte_masks.h"
#include "dxf/line_ends.h"

namespace torva::dxf {

/// A place in the text of a record, for reading groups that are expected: several times faster than telling what stands
/// there. Each take() passes over what it names; where that does not stand it gives false, and the place stays. Lines end
/// with LF or CR LF.
class TextCursor {
 public:
  TextCursor(const char* begin, const char* end) : m_at(begin), m_end(end) {}

  const char* place() const { return m_at; }
  bool isAtEnd() const { return m_at == m_end; }

  /// A code of two digits in three columns.
  template <int code>
  bool isAt() const {
    static_assert(code >= 10 && code < 100 && std::endian::native == std::endian::little);
    return isAt(threeChars(' ', '0' + code / 10, '0' + code % 10));
  }
  bool isAtExtendedData() const { return isAt(threeChars('1', '0', '0')) && m_at[3] == '1'; }

  template <int code>
  bool take() {
    return isAt<code>() && takeLineEnd(m_at + kThree);
  }

  /// A line that says a real number.
  bool take(double& value) {
    value = 0;
    if (takeOneDecimal(value)) return true;
    const char* const end = readDecimal(m_at, m_end, value);
    return (end && takeLineEnd(end)) || takeOtherReal(value);
  }

  /// The same within two units in the last place, and faster.
  bool takeNear(double& value) {
    if (takeOneDecimal(value)) return true;
    // The line's end is looked for first: a processor goes on from there while the number is still being worked out.
    const char* const begin = m_at;
    if (!takeLine()) return false;
    const char* const end = readNearDecimal(begin, m_end, value);
    if (end && (end == m_at - 1 || (end == m_at - 2 && *end == '\r'))) return true;
    m_at = begin;
    return take(value);
  }

  /// A count. What it says is of no account: the list itself tells.
  bool takeCount() {
    const char* end = m_at;
    while (end != m_end && (*end == ' ' || (*end >= '0' && *end <= '9'))) ++end;
    return takeLineEnd(end);
  }

  /// Any line.
  bool takeLine() {
    constexpr std::ptrdiff_t kShortLine = 32;
    if (m_end - m_at >= kShortLine) {
      const std::uint32_t ends = equalMask16(m_at, '\n') | equalMask16(m_at + kShortLine / 2, '\n') << kShortLine / 2;
      if (ends != 0) {
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
  static constexpr std::ptrdiff_t kThree = 3;

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

  bool takeOtherReal(double& value) {
    const auto* const end = static_cast<const char*>(std::memchr(m_at, '\n', static_cast<std::size_t>(m_end - m_at)));
    if (!end) return false;
    const auto real = parseReal(withoutCarriageReturn({m_at, static_cast<std::size_t>(end - m_at)}));
    if (!real) return false;
    value = *real;
    m_at = end + 1;
    return true;
  }

  const char* m_at;
  const char* m_end;
};

}  // namespace torva::dxf

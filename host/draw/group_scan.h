#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>

#include "base/numbers.h"
#include "dxf/group.h"

namespace torva::draw {

/// The groups of a record up to its extended data and embedded objects, for reading many records in a hurry: the line ends
/// of 64 bytes are found at once. For the text form with LF or CR LF, of whole records: some characters in front of a number
/// are read. See GroupScan for the others.
class TextScan {
 public:
  explicit TextScan(std::string_view bytes) : m_begin(bytes.data()), m_end(m_begin + bytes.size()), m_next(m_begin) {}

  /// Goes to the next group; false at the end.
  bool next() {
    if (withoutLowestBit(m_ends) == 0) {
      m_block = m_next;
      m_ends = endsFrom(m_begin, m_next, m_end);
      if (withoutLowestBit(m_ends) == 0) return nextLong();
    }
    const char* const codeEnd = takeEnd();
    const char* const valueEnd = takeEnd();
    return take(codeEnd, valueEnd);
  }

  int code() const { return m_code; }
  std::string_view text() const {
    const char* const end = m_next - (m_next[-2] == '\r' ? 2 : 1);
    return {m_value, static_cast<std::size_t>(end - m_value)};
  }
  /// Within two units in the last place for the plain decimals that fill drawings: meant for boxes only.
  double real() const {
    const std::string_view value = text();
    // Numbers like 0.0 and 1.0 are the most frequent by far, then flags.
    if (value.size() == 3 && value[1] == '.' && isDigit(value[0]) && isDigit(value[2])) {
      return (value[0] - '0') + 0.1 * (value[2] - '0');
    }
    if (value.size() == 1 && isDigit(value[0])) return value[0] - '0';
    return realOf(value, m_end);
  }

  /// Has the group that begins at `next` come next.
  void goTo(const char* next) { m_next = next, m_ends = 0; }
  /// Where the record ends.
  const char* end() const { return m_end; }

  static bool isOwnPart(int code) {
    constexpr int kFirstExtendedData = 1000, kEmbeddedObject = 101;
    return code < kFirstExtendedData && code != kEmbeddedObject && code != dxf::kUnreadableCode;
  }

 private:
  static std::uint64_t withoutLowestBit(std::uint64_t mask) { return mask & (mask - 1); }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  const char* takeEnd() {
    const char* const end = m_block + std::countr_zero(m_ends);
    m_ends = withoutLowestBit(m_ends);
    return end;
  }

  bool take(const char* codeEnd, const char* valueEnd) {
    m_code = parseCode({m_next, static_cast<std::size_t>(codeEnd - m_next)});
    m_value = codeEnd + 1;
    m_next = valueEnd + 1;
    return isOwnPart(m_code);
  }

  /// Codes mostly stand in three columns: blanks count as leading zeros then. A line of three that is no number may give
  /// some code or other; what is drawn of such a record is never more.
  static int parseCode(std::string_view line) {
    const bool hasThreeColumns = line.size() == 3 && isDigit(line[2]);
    return hasThreeColumns ? (line[0] & 15) * 100 + (line[1] & 15) * 10 + (line[2] & 15) : dxf::parseGroupCode(line);
  }

  struct GroupEnds {
    const char *code, *value;  // null when the group is not complete
  };

  // Static, so that a scan can live in registers.
  /// `end` is that of the record.
  static double realOf(std::string_view value, const char* end);
  /// Bit i tells whether a line ends i characters behind `next`.
  static std::uint64_t endsFrom(const char* begin, const char* next, const char* end);
  static GroupEnds longGroup(const char* next, const char* end);

  /// As next(), for a group that is longer than 64 bytes or not complete.
  bool nextLong() {
    m_ends = 0;
    const GroupEnds ends = longGroup(m_next, m_end);
    if (!ends.value) return false;
    m_block = ends.code + 1;
    return take(ends.code, ends.value);
  }

  const char *m_begin, *m_end;
  const char* m_value = nullptr;
  const char* m_next;             // where the next group begins
  const char* m_block = nullptr;  // what m_ends is about: the line ends within 64 bytes that were not taken yet
  std::uint64_t m_ends = 0;
  int m_code = 0;
};

/// The same for every form of drawing.
class GroupScan {
 public:
  explicit GroupScan(const dxf::Groups& groups) : m_group(groups.begin()) {}

  bool next() {
    if (m_isFirst) {
      m_isFirst = false;
    } else {
      ++m_group;
    }
    return m_group != std::default_sentinel && TextScan::isOwnPart(m_group->code);
  }

  int code() const { return m_group->code; }
  std::string_view text() const { return m_group->value; }
  double real() const { return m_group->realOr(0); }

 private:
  dxf::Groups::Iterator m_group;
  bool m_isFirst = true;
};

}  // namespace torva::draw

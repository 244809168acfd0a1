#pragma once

#include <bit>
#include <cstring>
#include <string_view>

#include "dxf/byte_masks.h"
#include "dxf/group.h"

namespace torva::draw {

/// The real number that a text says, within four units in the last place; 0 when it says none. Faster than parseReal() for
/// the plain decimals that fill drawings, and meant for boxes only.
double quickReal(std::string_view text);

/// The groups of a record up to its extended data and embedded objects, for reading many records in a hurry: the line ends
/// of 64 bytes are found at once. For the text form with LF or CR LF; see GroupScan for the others.
class TextScan {
 public:
  explicit TextScan(std::string_view bytes)
      : m_line(bytes.data()), m_block(bytes.data()), m_end(bytes.data() + bytes.size()), m_ends(mask(m_block)) {}

  /// Goes to the next group; false at the end.
  bool next() {
    const char* codeEnd = nextLineEnd();
    if (!codeEnd) return false;
    const char* codeLine = m_line;
    const char* valueEnd = nextLineEnd();
    if (!valueEnd) return false;
    m_code = parseCode(dxf::withoutCarriageReturn({codeLine, static_cast<std::size_t>(codeEnd - codeLine)}));
    m_value = dxf::withoutCarriageReturn({codeEnd + 1, static_cast<std::size_t>(valueEnd - codeEnd - 1)});
    m_line = valueEnd + 1;
    return isOwnPart(m_code);
  }

  int code() const { return m_code; }
  std::string_view text() const { return m_value; }
  double real() const { return quickReal(m_value); }

  static bool isOwnPart(int code) {
    constexpr int kFirstExtendedData = 1000, kEmbeddedObject = 101;
    return code < kFirstExtendedData && code != kEmbeddedObject && code != dxf::kUnreadableCode;
  }

 private:
  static constexpr std::ptrdiff_t kBlock = 64;

  std::uint64_t mask(const char* block) const {
    if (m_end - block >= kBlock) return dxf::equalMask64(block, '\n');
    char rest[kBlock] = {};
    if (block < m_end) std::memcpy(rest, block, static_cast<std::size_t>(m_end - block));
    return dxf::equalMask64(rest, '\n');
  }

  /// Null when there is no further one.
  const char* nextLineEnd() {
    while (m_ends == 0) {
      if (m_end - m_block <= kBlock) return nullptr;
      m_block += kBlock;
      m_ends = mask(m_block);
    }
    const char* result = m_block + std::countr_zero(m_ends);
    m_ends &= m_ends - 1;
    return result;
  }

  /// Codes mostly stand in three columns: blanks count as leading zeros then. A line of three that is no number gives some
  /// code or other; what is drawn of such a record is never more.
  static int parseCode(std::string_view line) {
    if (line.size() == 3) return (line[0] & 15) * 100 + (line[1] & 15) * 10 + (line[2] & 15);
    int code = 0;
    for (const char c : line) {
      if (c >= '0' && c <= '9') {
        code = code * 10 + (c - '0');
      } else if (c != ' ' || code != 0) {
        return dxf::parseGroupCode(line);
      }
    }
    return line.size() <= 6 ? code : dxf::kUnreadableCode;
  }

  const char* m_line;
  const char* m_block;
  const char* m_end;
  std::uint64_t m_ends;
  int m_code = 0;
  std::string_view m_value;
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

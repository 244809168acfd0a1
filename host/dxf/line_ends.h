#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace torva::dxf {

/// What ends a line in the text form. LF and CR LF may be mixed in any drawing; only where CR alone ends lines too has it to
/// be looked for.
enum class LineEnds : std::uint8_t { lf, lfAndCr };

/// What may stand in front of the first line of UTF-8 text.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// What the first line of a drawing ends with: LF, CR LF or CR; LF when it has no end.
std::string_view firstLineEnd(std::string_view content);
/// Whether CR alone has to be looked for, as far as the first line tells.
LineEnds lineEndsOf(std::string_view content);

/// Position of the last byte of the first line end (LF, or a CR that no LF follows) at or after `from`; content.size() when
/// there is none.
std::size_t findLineEnd(std::string_view content, std::size_t from, LineEnds ends);

/// Without the CR of a CR LF.
inline std::string_view withoutCarriageReturn(std::string_view line) {
  return !line.empty() && line.back() == '\r' ? line.substr(0, line.size() - 1) : line;
}

/// Counts lines of a content in ascending order of places; a place costs what lies between it and the one before.
class LineCounter {
 public:
  LineCounter(std::string_view content, LineEnds ends) : m_content(content), m_ends(ends) {}

  /// Number of the line, counted from 1, in which the byte at `offset` stands.
  std::size_t lineAt(std::size_t offset);

 private:
  std::string_view m_content;
  LineEnds m_ends;
  std::size_t m_offset = 0;
  std::size_t m_line = 1;
};

}  // namespace torva::dxf

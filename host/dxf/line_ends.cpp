#include "dxf/line_ends.h"

#include <algorithm>
#include <bit>

#include "dxf/byte_masks.h"

namespace torva::dxf {
namespace {

template <LineEnds ends>
std::size_t countLineEnds(std::string_view content, std::size_t from, std::size_t to) {
  std::size_t count = 0;
  std::size_t at = from;
  for (; at + 64 <= to; at += 64) {
    const char follower = at + 64 < content.size() ? content[at + 64] : '\0';
    count += static_cast<std::size_t>(std::popcount(lineEndMask<ends>(content.data() + at, follower)));
  }
  for (; at < to; ++at) count += findLineEnd(content, at, ends) == at ? 1 : 0;
  return count;
}

}  // namespace

std::string_view firstLineEnd(std::string_view content) {
  const auto first = content.find_first_of("\r\n");
  if (first == std::string_view::npos || content[first] == '\n') return "\n";
  const bool isPair = first + 1 < content.size() && content[first + 1] == '\n';
  return isPair ? "\r\n" : "\r";
}

LineEnds lineEndsOf(std::string_view content) {
  return firstLineEnd(content) == "\r" ? LineEnds::lfAndCr : LineEnds::lf;
}

std::size_t findLineEnd(std::string_view content, std::size_t from, LineEnds ends) {
  if (ends == LineEnds::lf) return std::min(content.find('\n', from), content.size());
  for (std::size_t at = from; at < content.size(); ++at) {
    if (content[at] == '\n') return at;
    if (content[at] == '\r' && (at + 1 == content.size() || content[at + 1] != '\n')) return at;
  }
  return content.size();
}

std::size_t LineCounter::lineAt(std::size_t offset) {
  offset = std::min(offset, m_content.size());
  if (offset < m_offset) *this = LineCounter(m_content, m_ends);
  m_line += m_ends == LineEnds::lf ? countLineEnds<LineEnds::lf>(m_content, m_offset, offset)
                                   : countLineEnds<LineEnds::lfAndCr>(m_content, m_offset, offset);
  m_offset = offset;
  return m_line;
}

}  // namespace torva::dxf

#include "draw/group_scan.h"

#include <algorithm>
#include <array>

#include "dxf/byte_masks.h"

namespace torva::draw {
bool TextScan::findEnds() {
  constexpr std::ptrdiff_t kBlock = 64;
  const std::ptrdiff_t rest = m_end - m_next;
  m_block = m_next;
  if (rest >= kBlock) {
    m_ends = dxf::equalMask64(m_block, '\n');
  } else if (rest > 0 && m_end - m_begin >= kBlock) {
    m_ends = dxf::equalMask64(m_end - kBlock, '\n') >> (kBlock - rest);
  } else {
    std::array<char, kBlock> copy{};
    std::copy(m_next, m_end, copy.begin());
    m_ends = dxf::equalMask64(copy.data(), '\n');
  }
  return withoutLowestBit(m_ends) != 0;
}

bool TextScan::nextLong() {
  m_ends = 0;
  const std::string_view rest(m_next, static_cast<std::size_t>(m_end - m_next));
  const std::size_t codeEnd = rest.find('\n');
  if (codeEnd == std::string_view::npos) return false;
  const std::size_t valueEnd = rest.find('\n', codeEnd + 1);
  return valueEnd != std::string_view::npos && take(m_next + codeEnd, m_next + valueEnd);
}

}  // namespace torva::draw

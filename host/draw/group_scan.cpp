#include "draw/group_scan.h"

#include <algorithm>
#include <array>

#include "dxf/byte_masks.h"

namespace torva::draw {
bool TextScan::findEnds() {
  constexpr std::ptrdiff_t kBlock = 64;
  const std::ptrdiff_t rest = m_end - m_next;
  const auto find = [&](const char* block) {
    m_ends = dxf::equalMask64(block, '\n');
    m_points = dxf::equalMask64(block, '.');
  };
  m_block = m_next;
  if (rest >= kBlock) {
    find(m_block);
  } else if (rest > 0 && m_end - m_begin >= kBlock) {
    find(m_end - kBlock);
    m_ends >>= kBlock - rest;
    m_points >>= kBlock - rest;
  } else {
    std::array<char, kBlock> copy{};
    std::copy(m_next, m_end, copy.begin());
    find(copy.data());
  }
  return withoutLowestBit(m_ends) != 0;
}

bool TextScan::nextLong() {
  m_ends = m_points = 0;
  const std::string_view rest(m_next, static_cast<std::size_t>(m_end - m_next));
  const std::size_t codeEnd = rest.find('\n');
  if (codeEnd == std::string_view::npos) return false;
  const std::size_t valueEnd = rest.find('\n', codeEnd + 1);
  return valueEnd != std::string_view::npos && take(m_next + codeEnd, m_next + valueEnd);
}

}  // namespace torva::draw

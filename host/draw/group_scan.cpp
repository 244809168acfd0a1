#include "draw/group_scan.h"

#include <algorithm>
#include <array>

#include "base/digits.h"
#include "base/numbers.h"
#include "dxf/byte_masks.h"

namespace torva::draw {
namespace {

constexpr std::array<double, 20> kDecimals = {1e-0,  1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,  1e-8,  1e-9,
                                              1e-10, 1e-11, 1e-12, 1e-13, 1e-14, 1e-15, 1e-16, 1e-17, 1e-18, 1e-19};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

double realOf(const Digits& digits) {
  return static_cast<double>(static_cast<std::int64_t>(digits.value));  // quicker than from an unsigned number
}

}  // namespace

double quickReal(std::string_view text, std::size_t readable) {
  const char* p = text.data();
  const char *const end = p + text.size(), *const readableEnd = p + readable;
  const bool isNegative = p != end && *p == '-';
  if (isNegative) ++p;
  const Digits whole = takeDigits(p, readableEnd);
  p += whole.count;
  double size = realOf(whole);
  Digits fraction;
  if (p != end && *p == '.') {
    ++p;
    fraction = takeDigits(p, readableEnd);
    p += fraction.count;
    size += realOf(fraction) * kDecimals[fraction.count];
  }
  if (whole.count + fraction.count == 0) return parseReal(text).value_or(0);
  if (p != end) {
    // What rounding leaves of a right angle: 6.123233995736766e-17.
    const bool hasTinyExponent = end - p == 4 && (*p | 0x20) == 'e' && p[1] == '-' && p[2] == '1' && isDigit(p[3]);
    if (!hasTinyExponent) return parseReal(text).value_or(0);
    size *= kDecimals[static_cast<std::size_t>(10 + p[3] - '0')];
  }
  return isNegative ? -size : size;
}

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

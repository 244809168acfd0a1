#include "draw/group_scan.h"

#include <algorithm>
#include <array>

#include "dxf/byte_masks.h"

namespace torva::draw {

double TextScan::realOf(std::string_view value, std::uint64_t points) {
  if (points != 0) {
    const char *const begin = value.data(), *const end = begin + value.size();
    const PointedDecimal decimal(begin, std::min(begin + std::countr_zero(points), end), end);
    if (decimal.isValid()) return decimal.nearValue();
  }
  return parseReal(value).value_or(0);
}

TextScan::Masks TextScan::masksOf(const char* begin, const char* next, const char* end) {
  constexpr std::ptrdiff_t kBlock = 64;
  const std::ptrdiff_t rest = end - next;
  const auto find = [](const char* block) { return Masks{dxf::equalMask64(block, '\n'), dxf::equalMask64(block, '.')}; };
  if (rest >= kBlock) return find(next);
  if (rest > 0 && end - begin >= kBlock) {
    const Masks masks = find(end - kBlock);
    return {masks.ends >> (kBlock - rest), masks.points >> (kBlock - rest)};
  }
  std::array<char, kBlock> copy{};
  std::copy(next, end, copy.begin());
  return find(copy.data());
}

TextScan::GroupEnds TextScan::longGroup(const char* next, const char* end) {
  const std::string_view rest(next, static_cast<std::size_t>(end - next));
  const std::size_t codeEnd = rest.find('\n');
  if (codeEnd == std::string_view::npos) return {};
  const std::size_t valueEnd = rest.find('\n', codeEnd + 1);
  if (valueEnd == std::string_view::npos) return {};
  return {next + codeEnd, next + valueEnd};
}

}  // namespace torva::draw

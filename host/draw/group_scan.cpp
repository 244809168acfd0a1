#include "draw/group_scan.h"

#include <algorithm>
#include <array>

#include "base/near_decimal.h"
#include "dxf/byte_masks.h"

namespace torva::draw {

double TextScan::realOf(std::string_view value, const char* end) {
  const NearDecimal decimal = nearDecimal(value.data(), end);
  if (decimal.end == value.data() + value.size()) return decimal.value;
  return parseReal(value).value_or(0);
}

std::uint64_t TextScan::endsFrom(const char* begin, const char* next, const char* end) {
  constexpr std::ptrdiff_t kBlock = 64;
  const std::ptrdiff_t rest = end - next;
  if (rest >= kBlock) return dxf::equalMask64(next, '\n');
  if (rest > 0 && end - begin >= kBlock) return dxf::equalMask64(end - kBlock, '\n') >> (kBlock - rest);
  std::array<char, kBlock> copy{};
  std::copy(next, end, copy.begin());
  return dxf::equalMask64(copy.data(), '\n');
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

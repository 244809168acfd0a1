#include "dxf/binary_group.h"

namespace torva::dxf {
namespace {

constexpr int kWideCodeFollows = 255;  // in drawings with codes of one byte

int byteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}
int wordAt(std::string_view bytes, std::size_t at) {
  return byteAt(bytes, at) | byteAt(bytes, at + 1) << 8;
}

/// Size of the value with all that belongs to it, and of what stands before and behind the value proper.
struct Extent {
  std::size_t size = 0;
  std::size_t head = 0;
  std::size_t tail = 0;
};

constexpr std::size_t kMissing = static_cast<std::size_t>(-1);

Extent extentOf(ValueKind kind, std::string_view rest) {
  switch (kind) {
    case ValueKind::real:
    case ValueKind::int64:
      return {8};
    case ValueKind::int32:
      return {4};
    case ValueKind::int16:
      return {2};
    case ValueKind::boolean:
      return {1};
    case ValueKind::bytes:
      return rest.empty() ? Extent{kMissing} : Extent{1 + static_cast<std::size_t>(byteAt(rest, 0)), 1};
    case ValueKind::text:
    case ValueKind::handle:
    case ValueKind::comment:
      break;
  }
  const auto end = rest.find('\0');
  return end == std::string_view::npos ? Extent{kMissing} : Extent{end + 1, 0, 1};
}

}  // namespace

BinaryGroup readBinaryGroup(std::string_view bytes, BinaryCodes codes) {
  BinaryGroup group;
  if (bytes.size() < 2) return group;
  if (codes == BinaryCodes::twoBytes) {
    group.code = wordAt(bytes, 0);
    group.valueBegin = 2;
  } else if (byteAt(bytes, 0) != kWideCodeFollows) {
    group.code = byteAt(bytes, 0);
    group.valueBegin = 1;
  } else {
    if (bytes.size() < 3) return group;
    group.code = wordAt(bytes, 1);
    group.valueBegin = 3;
  }
  if (!isKnownCode(group.code)) {
    group.status = BinaryGroup::Status::unknownCode;
    return group;
  }
  const std::string_view rest = bytes.substr(group.valueBegin);
  const Extent extent = extentOf(valueKind(group.code), rest);
  if (extent.size > rest.size()) return group;
  group.status = BinaryGroup::Status::complete;
  group.size = group.valueBegin + extent.size;
  group.valueBegin += extent.head;
  group.valueSize = extent.size - extent.head - extent.tail;
  return group;
}

}  // namespace torva::dxf

#pragma once

#include <cstdint>
#include <string_view>

#include "dxf/group.h"

namespace torva::dxf {

/// The bytes with which every drawing in the binary form begins.
inline constexpr std::string_view kBinarySentinel{
    "\x41\x75\x74\x6F\x43\x41\x44\x20\x42\x69\x6E\x61\x72\x79\x20\x44\x58\x46\r\n\x1A\0", 22};

/// One group of the binary form, as distances from its first byte.
struct BinaryGroup {
  enum class Status : std::uint8_t { complete, truncated, unknownCode };

  Status status = Status::truncated;
  int code = 0;
  std::size_t valueBegin = 0;
  std::size_t valueSize = 0;  ///< Without a text's terminator and a byte string's length.
  std::size_t size = 0;       ///< Of the whole group; 0 unless complete.
};

/// Reads the group at the beginning of `bytes`; never looks behind them.
BinaryGroup readBinaryGroup(std::string_view bytes, BinaryCodes codes);

}  // namespace torva::dxf

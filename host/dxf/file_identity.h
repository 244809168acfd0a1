#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace torva::dxf {

/// What tells a file and its content from another one without reading it.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// Identity of an open file, and of the file that a path leads to; nothing when there is none.
std::optional<FileIdentity> identityOf(int descriptor);
std::optional<FileIdentity> identityOf(const std::string& path);

}  // namespace torva::dxf

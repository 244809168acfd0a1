#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "base/export.h"

namespace torva::runtime {

/// Where the program and what belongs to it lie.
struct Folders {
  std::string program;  ///< Of the running program.
  std::string root;     ///< Above the program's; holds Support/.

  /// @param programFolder empty: that of the running program's file, links followed
  static Folders of(const std::string& programFolder);
};

/// The folder part of a path; "." when it has none.
std::string folderOf(std::string_view path);

/// The absolute path of a regular file, links followed; nothing when there is no such file (folders, pipes and devices are
/// none).
std::optional<std::string> regularFile(const std::string& path);

/// Which file a path names and in which state; equal for the same content.
struct FileStamp {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec modified = {};

  /// Nothing when `path` is no regular file.
  static std::optional<FileStamp> of(const std::string& path);
  bool operator==(const FileStamp& other) const;
};

/// The per-user folder of the profile: $XDG_CONFIG_HOME/torva, else ~/.config/torva; empty when neither is known. It need
/// not exist.
std::string defaultProfileFolder();

/// The per-user folder of what running programs keep for recovery: $XDG_STATE_HOME/torva/recovery, else
/// ~/.local/state/torva/recovery; empty when neither is known. It need not exist.
TORVA_API std::string defaultRecoveryFolder();

}  // namespace torva::runtime

#pragma once

#include <string>

#include <kdrx/text.h>

/// What a KdModuleHandle points to: a loaded module or an open resource library. Handles come from outside, so they are
/// compared with those given out before they are followed.
struct KdModuleHandleTag {
  virtual ~KdModuleHandleTag() = default;
  /// Absolute path of the file.
  virtual const std::string& path() const = 0;
};

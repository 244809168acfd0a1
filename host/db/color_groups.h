#pragma once

#include <optional>

#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>

namespace torva::db {

/// A color as drawing files have it: group 62 (index), 420 (true color), 430 (color book). Collects the groups of one color.
struct ColorGroups {
  std::optional<int> index;
  std::optional<std::uint32_t> rgb;
  std::wstring book;

  static bool isColorCode(int code) { return code == 62 || code == 420 || code == 430; }
  /// Takes a group of one of these codes; unreadable values count as missing.
  void take(const dxf::DrawingFile& file, const dxf::Group& group);
  /// The color; `missing` when there is no group.
  KdCmColor color(int missing) const;

  static ColorGroups of(const KdCmColor& color);
  /// Whether a group of these codes says the same here.
  bool says(const dxf::DrawingFile& file, const dxf::Group& group) const;
  /// Whether this has a group of a code, and writes it.
  bool has(int code) const;
  void write(dxf::RecordBuilder& out, int code) const;
};

}  // namespace torva::db

#pragma once

#include <deque>
#include <numbers>
#include <string>

#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>

namespace torva::db {

struct MlineStyleElement {
  double offset = 0;
  KdCmColor color;
  std::wstring linetype = L"BYLAYER";

  bool operator==(const MlineStyleElement&) const = default;
};

/// Surplus elements are taken away from the front.
using MlineStyleElements = std::deque<MlineStyleElement>;

/// Bits of a style's flag word. Bits without a meaning are kept.
enum MlineStyleFlag : int {
  kStyleFilled = 1,
  kStyleShowMiters = 2,
  kStyleStartSquareCap = 16,
  kStyleStartInnerArcs = 32,
  kStyleStartRoundCap = 64,
  kStyleEndSquareCap = 256,
  kStyleEndInnerArcs = 512,
  kStyleEndRoundCap = 1024,
};

/// What a multiline style holds, as plain data.
struct MlineStyleData {
  std::wstring name;
  std::wstring description;
  int flags = 0;
  KdCmColor fillColor;
  double startAngleRad = std::numbers::pi / 2;
  double endAngleRad = std::numbers::pi / 2;
  MlineStyleElements elements;

  bool has(MlineStyleFlag flag) const { return flags & flag; }
};

/// Reads the style part of an MLINESTYLE record. The element count in the record is a hint only; what the record lacks keeps
/// its default, values that are no numbers count as 0.
MlineStyleData readMlineStyle(const dxf::DrawingFile& file, dxf::Groups groups);

/// The bytes of a whole MLINESTYLE record with `data` for its style part. Groups whose value did not change keep their text,
/// groups that the host does not know stay where they stood. Elements are written in the order given.
std::string writeMlineStyle(const dxf::DrawingFile& file, std::string_view bytes, const MlineStyleData& data);

}  // namespace torva::db

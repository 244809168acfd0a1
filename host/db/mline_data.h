#pragma once

#include <string>
#include <vector>

#include "dxf/drawing_file.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_segments.h>

namespace torva::db {

using MlineVertex = KdMlineVertex;

bool isSame(const MlineVertex& a, const MlineVertex& b);

/// What a multiline holds, as plain data in world coordinates.
struct MlineData {
  std::wstring styleName;
  dxf::Handle styleHandle = 0;
  double scale = 1;
  KdMlineJustification justification = KdMlineJustification::zero;
  bool isClosed = false;
  bool suppressesStartCaps = false;
  bool suppressesEndCaps = false;
  int otherFlags = 0;  ///< Bits of the flag word without a meaning of their own; kept.
  KdGeVector3d normal = KdGeVector3d::kZAxis();
  std::vector<MlineVertex> vertices;

  /// Number of elements at vertex 0; 0 without vertices.
  int elementCount() const { return vertices.empty() ? 0 : static_cast<int>(vertices.front().elements.size()); }
};

/// Reads the multiline part of an MLINE record. Counts in the record are hints only; values that are no numbers count as 0.
/// What the record lacks keeps its default.
MlineData readMline(const dxf::DrawingFile& file, dxf::RecordId record);

/// The record's bytes with `data` for its multiline part. Groups whose value did not change keep their text; all others that
/// the host does not know (XDATA, comments...) stay where they stood. Long runs of the record's bytes are kept where they
/// are.
dxf::RecordText writeMline(const dxf::DrawingFile& file, dxf::RecordId record, const MlineData& data);

}  // namespace torva::db

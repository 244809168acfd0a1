#pragma once

#include <string_view>

#include "db/mline_data.h"
#include "db/mline_segments.h"
#include "dxf/group.h"

namespace torva::db {

/// Reads those vertices of an MLINE record that stand in it as programs write them: in the text form, codes in three
/// columns, position, axis and miter with all coordinates, for each element both its lists with their counts, and nothing
/// that is no number. Several times faster than group by group, and with the same result; most drawings have no others.
class UsualVertexReader {
 public:
  /// `record` is the whole record and outlives this.
  UsualVertexReader(dxf::Form form, std::string_view record);

  /// Reads the vertex that begins at a place in the record. It has to be followed by another one, extended data or the
  /// record's end, so that nothing else can belong to it.
  /// @param[out] vertex unchanged when it cannot be read
  /// @return where the vertex ends; `begin` when it is no usual one
  std::size_t read(std::size_t begin, MlineVertex& vertex);

 private:
  const char* const m_begin;
  const char* const m_end;
  KdMLSegmentsBuilder m_segments;
};

}  // namespace torva::db

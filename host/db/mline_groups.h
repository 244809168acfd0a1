#pragma once

#include <bitset>
#include <optional>

#include "db/mline_data.h"
#include "db/record_groups.h"

namespace torva::db {

/// What a group of an MLINE record says.
enum class MlineRole : std::uint8_t {
  other,
  styleName,
  styleHandle,
  scale,
  justification,
  flags,
  vertexCount,
  elementCount,
  start,
  normal,
  position,
  axis,
  miter,
  lineCount,
  line,
  fillCount,
  fill,
};

/// A role, and for points and vectors which coordinate (0 to 2).
struct MlineSlot {
  MlineRole role = MlineRole::other;
  int coordinate = 0;

  bool beginsVertex() const { return role == MlineRole::position && coordinate == 0; }
  std::size_t bit() const { return 3 * static_cast<std::size_t>(role) + static_cast<std::size_t>(coordinate); }
  static MlineSlot ofBit(std::size_t bit) { return {static_cast<MlineRole>(bit / 3), static_cast<int>(bit % 3)}; }
};

/// Tells what the groups of an MLINE record mean, met one after the other. Reading and writing share it, so that they agree
/// on every odd record.
class MlineClassifier {
 public:
  /// A record without the class mark of multilines is taken as multiline throughout.
  explicit MlineClassifier(bool hasMark) : m_hasMark(hasMark), m_part(hasMark ? Part::before : Part::inside) {}

  MlineSlot classify(const dxf::Group& group);
  /// Goes on at the first vertex, behind header groups that were not looked at. Requires: nothing was classified yet.
  void passHeader(const std::bitset<64>& header);
  /// Goes on behind `count` vertices that were not looked at. Requires: the last group began the one before them.
  void passVertices(int count) { m_vertex += count; }

  /// Index of the vertex and element that the last classified group belongs to; -1 before the first.
  int vertex() const { return m_vertex; }
  int element() const { return m_element; }
  bool hasMark() const { return m_hasMark; }
  /// Whether the multiline part has come to its end: another class part, an embedded object or XDATA follows.
  bool isPast() const { return m_part == Part::past; }

 private:
  enum class Part { before, inside, past };

  MlineSlot header(MlineRole role, int coordinate = 0);
  MlineSlot inVertex(MlineRole role, int coordinate = 0) const;

  bool m_hasMark;
  Part m_part;
  ApplicationGroups m_application;
  std::bitset<64> m_seen;
  int m_vertex = -1;
  int m_element = -1;
};

/// A multiline as its record has it, and what writing over that record needs to know of it.
struct MlineSource {
  MlineData data;
  bool hasMark = true;                    ///< The record has the class mark of multilines.
  std::bitset<64> header;                 ///< The header groups that the record has (MlineSlot::bit()).
  bool isHeaderInFront = true;            ///< None of them stands behind the first vertex.
  std::vector<std::size_t> vertexBegins;  ///< Where in the record each vertex begins, in bytes.
  std::optional<dxf::Group> unreadable;   ///< The first group whose value is no number and counts as 0.
};

/// `bytes` is a whole record.
MlineSource readMlineSource(const dxf::DrawingFile& file, std::string_view bytes);

/// The flag word (group 71) for a multiline.
int flagWord(const MlineData& data);

/// The bytes of a record with `data` for its multiline part; `bytes` is a whole record, and `source` what it says. See
/// writeMline(). A record without any group of a multiline gets all of them. Of vertices that did not change nothing is
/// read.
dxf::RecordText writeMline(const dxf::DrawingFile& file, std::string_view bytes, const MlineSource& source,
                           const MlineData& data);

}  // namespace torva::db

#include "db/mline_vertex_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "db/mline_lists_text.h"
#include "dxf/text_cursor.h"

namespace torva::db {

namespace {

constexpr std::size_t kMostValuesPerBlock = 8192, kBytesPerValue = 16;  // of the record

std::size_t valuesPerBlock(std::string_view record) {
  return std::min(kMostValuesPerBlock, record.size() / kBytesPerValue);
}

using dxf::TextCursor;

constexpr std::array kCoordinates = {TextCursor::columns(11), TextCursor::columns(21), TextCursor::columns(31),
                                     TextCursor::columns(12), TextCursor::columns(22), TextCursor::columns(32),
                                     TextCursor::columns(13), TextCursor::columns(23), TextCursor::columns(33)};

/// The code of a list's count, and that of its values.
struct ListCodes {
  std::uint32_t count, value;
};
constexpr ListCodes kLine = {TextCursor::columns(74), TextCursor::columns(41)};
constexpr ListCodes kFill = {TextCursor::columns(75), TextCursor::columns(42)};

[[gnu::always_inline]] inline bool takeList(TextCursor& cursor, const ListCodes& codes, KdMLSegmentsBuilder& segments) {
  if (!cursor.takeCode(codes.count) || !cursor.takeCount()) return false;
  while (cursor.takeCode(codes.value)) {
    double value = 0;
    if (!cursor.take(value)) return false;
    segments.add(value);
  }
  segments.endList();
  return true;
}

[[gnu::always_inline]] inline bool takeUncut(TextCursor& cursor, KdMLSegmentsBuilder& segments) {
  double offset = 0;
  if (!takeUncutLists(cursor, [&](TextCursor& at) { return at.take(offset); })) return false;
  segments.add(offset);
  segments.add(0);
  segments.endList();
  segments.endList();
  return true;
}

}  // namespace

UsualVertexReader::UsualVertexReader(dxf::Form form, std::string_view record)
    : m_begin(record.data()),
      m_end(form == dxf::Form::text ? m_begin + record.size() : m_begin),
      m_segments(valuesPerBlock(record)) {}

std::size_t UsualVertexReader::read(std::size_t begin, MlineVertex& vertex) {
  if (static_cast<std::ptrdiff_t>(begin) >= m_end - m_begin) return begin;
  TextCursor cursor(m_begin + begin, m_end);
  m_segments.clear();
  std::array<double, kCoordinates.size()> c;
  for (std::size_t i = 0; i < c.size(); ++i) {
    if (!cursor.takeCode(kCoordinates[i]) || !cursor.take(c[i])) return begin;
  }
  while (cursor.isAt<74>()) {
    if (takeUncut(cursor, m_segments)) continue;
    if (!takeList(cursor, kLine, m_segments) || !takeList(cursor, kFill, m_segments)) return begin;
  }
  if (!cursor.isAtEnd() && !cursor.isAt<11>() && !cursor.isAtExtendedData()) return begin;
  vertex.position = {c[0], c[1], c[2]};
  vertex.axis = {c[3], c[4], c[5]};
  vertex.miter = {c[6], c[7], c[8]};
  vertex.elements = m_segments.take();
  return static_cast<std::size_t>(cursor.place() - m_begin);
}

}  // namespace torva::db

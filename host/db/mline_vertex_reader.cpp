#include "db/mline_vertex_reader.h"

#include <algorithm>

#include "dxf/text_cursor.h"

namespace torva::db {

namespace {

constexpr std::size_t kMostValuesPerBlock = 8192, kBytesPerValue = 16;  // of the record

std::size_t valuesPerBlock(std::string_view record) {
  return std::min(kMostValuesPerBlock, record.size() / kBytesPerValue);
}

template <int code, class Triple>
bool takeTriple(dxf::TextCursor& cursor, Triple& triple) {
  return cursor.take<code>() && cursor.take(triple.x) && cursor.take<code + 10>() && cursor.take(triple.y) &&
         cursor.take<code + 20>() && cursor.take(triple.z);
}

template <int countCode, int valueCode>
bool takeList(dxf::TextCursor& cursor, KdMLSegmentsBuilder& segments) {
  if (!cursor.take<countCode>() || !cursor.takeCount()) return false;
  while (cursor.take<valueCode>()) {
    double value = 0;
    if (!cursor.take(value)) return false;
    segments.add(value);
  }
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
  dxf::TextCursor cursor(m_begin + begin, m_end);
  m_segments.clear();
  const bool hasPlace = takeTriple<11>(cursor, vertex.position);
  if (!hasPlace || !takeTriple<12>(cursor, vertex.axis) || !takeTriple<13>(cursor, vertex.miter)) return begin;
  while (cursor.isAt<74>()) {
    if (!takeList<74, 41>(cursor, m_segments) || !takeList<75, 42>(cursor, m_segments)) return begin;
  }
  if (!cursor.isAtEnd() && !cursor.isAt<11>() && !cursor.isAtExtendedData()) return begin;
  vertex.elements = m_segments.take();
  return static_cast<std::size_t>(cursor.place() - m_begin);
}

}  // namespace torva::db

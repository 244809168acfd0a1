#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "db/mline_alignment.h"
#include "db/mline_groups.h"

namespace torva::db {

namespace {

constexpr int kCoordinatesPerVertex = 9;

/// Codes of a triple start at 10, 11, 12, 13 or 210 and rise by 10.
int codeOf(int first, int coordinate) {
  return first + 10 * coordinate;
}

template <class Triple>
double coordinateOf(const Triple& triple, int coordinate) {
  return coordinate == 0 ? triple.x : coordinate == 1 ? triple.y : triple.z;
}

/// Coordinate 0 to 8 of a vertex: position, axis, miter.
double coordinateOf(const MlineVertex& vertex, int index) {
  if (index < 3) return coordinateOf(vertex.position, index);
  return index < 6 ? coordinateOf(vertex.axis, index - 3) : coordinateOf(vertex.miter, index - 6);
}

/// Writes one list of values over its source: what agrees at the front and at the back keeps its text.
class ListWriter {
 public:
  ListWriter(dxf::RecordBuilder& out, int valueCode) : m_out(out), m_valueCode(valueCode) {}

  void begin(std::span<const double> source, std::span<const double> target) {
    m_sourceCount = source.size();
    m_target = target;
    m_index = 0;
    const std::size_t shorter = std::min(source.size(), target.size());
    m_front = static_cast<std::size_t>(std::mismatch(source.begin(), source.begin() + shorter, target.begin()).first -
                                       source.begin());
    m_back = 0;
    while (m_back < shorter - m_front && source[source.size() - 1 - m_back] == target[target.size() - 1 - m_back]) ++m_back;
    m_isUnchanged = m_front == m_sourceCount && m_front == target.size();
    m_isMiddleDue = true;
    m_isEnded = false;
  }

  /// A count that was wrong is put right only together with its list.
  void count(const dxf::Group& group) {
    if (m_isUnchanged || group.integer() == static_cast<std::int64_t>(m_target.size())) {
      m_out.copy(group);
    } else {
      m_out.integer(group.code, static_cast<std::int64_t>(m_target.size()));
    }
  }

  void value(const dxf::Group& group) {
    if (m_isUnchanged) return m_out.copy(group);
    if (m_isEnded) return;
    const std::size_t index = m_index++;
    if (index < m_front) return m_out.copy(group);
    writeMiddle();
    if (index >= m_sourceCount - m_back) m_out.copy(group);
  }

  /// Writes what is left to write: also what the source has behind the list's end, in odd records.
  void end() {
    if (m_isUnchanged || std::exchange(m_isEnded, true)) return;
    write(m_index, m_front);
    writeMiddle();
    write(m_target.size() - std::min(m_back, m_sourceCount - m_index), m_target.size());
  }

 private:
  void write(std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) m_out.real(m_valueCode, m_target[i]);
  }

  void writeMiddle() {
    if (std::exchange(m_isMiddleDue, false)) write(m_front, m_target.size() - m_back);
  }

  dxf::RecordBuilder& m_out;
  int m_valueCode;
  std::size_t m_sourceCount = 0, m_index = 0, m_front = 0, m_back = 0;
  std::span<const double> m_target;
  bool m_isUnchanged = true, m_isMiddleDue = false, m_isEnded = true;
};

class MlineWriter {
 public:
  MlineWriter(const dxf::DrawingFile& file, std::string_view record, const MlineSource& source, const MlineData& target)
      : m_file(file),
        m_record(record),
        m_source(source),
        m_target(target),
        m_targetOf(alignVertices(source.data.vertices, target.vertices)),
        m_classifier(source.hasMark),
        m_out(file),
        m_line(m_out, 41),
        m_fill(m_out, 42) {}

  dxf::RecordText write() {
    constexpr std::size_t kVertexOrTwo = 1024;  // most edits write no more
    m_out.reserve(kVertexOrTwo);
    for (std::size_t place = copyHeader(); place < m_record.size();) place = writeGroups(place);
    finish();
    m_out.moveTo(m_written);
    return std::move(m_written);
  }

 private:
  /// Writes from a place in the record on. Returns where to go on: behind vertices that were copied, or at the end.
  std::size_t writeGroups(std::size_t place) {
    for (const dxf::Group& group : m_file.groupsOf(m_record.substr(place))) {
      const MlineSlot slot = m_classifier.classify(group);
      if (m_classifier.isPast()) finish();
      if (slot.beginsVertex()) {
        endVertex();
        const int vertex = m_classifier.vertex();
        if (const int count = untouchedVertices(vertex); count > 0) {
          const std::size_t end = copyVertices(vertex, count);
          m_classifier.passVertices(count - 1);
          return end;
        }
        beginVertex(vertex);
      }
      writeGroup(group, slot, m_classifier.element());
    }
    return m_record.size();
  }

  void writeGroup(const dxf::Group& group, const MlineSlot& slot, int element) {
    switch (slot.role) {
      case MlineRole::other:
        m_out.copy(group);
        break;
      case MlineRole::position:
        writeCoordinate(group, slot.coordinate);
        break;
      case MlineRole::axis:
        writeCoordinate(group, 3 + slot.coordinate);
        break;
      case MlineRole::miter:
        writeCoordinate(group, 6 + slot.coordinate);
        break;
      case MlineRole::lineCount:
      case MlineRole::line:
      case MlineRole::fillCount:
      case MlineRole::fill:
        writeListGroup(group, slot.role, element);
        break;
      default:
        writeHeaderGroup(group, slot);
    }
  }

  // --- header ---

  /// Copies all that is in front of the first vertex when it is to stay as it is. Returns where to go on.
  std::size_t copyHeader() {
    const MlineData& source = m_source.data;
    const bool isWhole = m_source.isHeaderInFront && m_source.header.any() && !m_source.vertexBegins.empty();
    if (!isWhole || source.vertices.size() != m_target.vertices.size() || source.elementCount() != m_target.elementCount())
      return 0;
    for (std::size_t bit = 0; bit < m_source.header.size(); ++bit) {
      const MlineSlot slot = MlineSlot::ofBit(bit);
      const bool counts = slot.role > MlineRole::other && slot.role <= MlineRole::normal;
      if (counts && !isHeaderUnchanged(slot, {})) return 0;
    }
    m_isHeaderComplete = true;
    m_classifier.passHeader(m_source.header);
    m_written.appendKept(m_record.substr(0, m_source.vertexBegins.front()));
    return m_source.vertexBegins.front();
  }

  void writeHeaderGroup(const dxf::Group& group, const MlineSlot& slot) {
    if (isHeaderUnchanged(slot, group)) {
      m_out.copy(group);
    } else {
      writeHeaderValue(slot);
    }
  }

  bool isHeaderUnchanged(const MlineSlot& slot, const dxf::Group& group) const {
    const MlineData& source = m_source.data;
    switch (slot.role) {
      case MlineRole::styleName:
        return source.styleName == m_target.styleName;
      case MlineRole::styleHandle:
        return source.styleHandle == m_target.styleHandle;
      case MlineRole::scale:
        return source.scale == m_target.scale;
      case MlineRole::justification:
        return source.justification == m_target.justification;
      case MlineRole::flags:
        return flagWord(source) == flagWord(m_target);
      case MlineRole::vertexCount:
        return isCountRight(group, source.vertices.size(), m_target.vertices.size());
      case MlineRole::elementCount:
        return isCountRight(group, source.elementCount(), m_target.elementCount());
      case MlineRole::start:
        return coordinateOf(startOf(source), slot.coordinate) == coordinateOf(startOf(m_target), slot.coordinate);
      default:
        return coordinateOf(source.normal, slot.coordinate) == coordinateOf(m_target.normal, slot.coordinate);
    }
  }

  static bool isCountRight(const dxf::Group& group, std::size_t source, std::size_t target) {
    return source == target || group.integer() == static_cast<std::int64_t>(target);
  }

  static KdGePoint3d startOf(const MlineData& data) {
    return data.vertices.empty() ? KdGePoint3d() : data.vertices.front().position;
  }

  void writeHeaderValue(const MlineSlot& slot) {
    switch (slot.role) {
      case MlineRole::styleName:
        m_out.text(2, m_target.styleName);
        break;
      case MlineRole::styleHandle:
        m_out.handle(340, m_target.styleHandle);
        break;
      case MlineRole::scale:
        m_out.real(40, m_target.scale);
        break;
      case MlineRole::justification:
        m_out.integer(70, static_cast<int>(m_target.justification));
        break;
      case MlineRole::flags:
        m_out.integer(71, flagWord(m_target));
        break;
      case MlineRole::vertexCount:
        m_out.integer(72, static_cast<std::int64_t>(m_target.vertices.size()));
        break;
      case MlineRole::elementCount:
        m_out.integer(73, m_target.elementCount());
        break;
      case MlineRole::start:
        m_out.real(codeOf(10, slot.coordinate), coordinateOf(startOf(m_target), slot.coordinate));
        break;
      default:
        m_out.real(codeOf(210, slot.coordinate), coordinateOf(m_target.normal, slot.coordinate));
    }
  }

  /// Adds what the record lacks: everything to a record without any group of a multiline, else what differs from the value
  /// that a missing group stands for.
  void writeMissingHeader() {
    if (std::exchange(m_isHeaderComplete, true)) return;
    using enum MlineRole;
    for (const MlineRole role :
         {styleName, styleHandle, scale, justification, flags, vertexCount, elementCount, start, normal}) {
      const int coordinates = role == start || role == normal ? 3 : 1;
      for (int i = 0; i < coordinates; ++i) writeMissingHeader({role, i});
    }
  }

  void writeMissingHeader(const MlineSlot& slot) {
    if (m_source.header.test(slot.bit())) return;
    if (slot.role == MlineRole::styleHandle && m_target.styleHandle == 0) return;
    const bool isImplied = slot.role == MlineRole::vertexCount || slot.role == MlineRole::elementCount ||
                           slot.role == MlineRole::start || isHeaderUnchanged(slot, {});
    if (m_source.header.none() || !isImplied) writeHeaderValue(slot);
  }

  // --- vertices ---

  /// Number of vertices from one on that stand in the record as they are to be written, one after the other. The record's
  /// last one is among them only when it stays the last: other groups may follow it, and what is new comes before these.
  int untouchedVertices(int source) const {
    const std::vector<MlineVertex>& vertices = m_source.data.vertices;
    const int target = m_targetOf[source];
    if (target < 0 || !m_source.isHeaderInFront) return 0;
    const bool staysLast = m_targetOf.back() + 1 == static_cast<int>(m_target.vertices.size());
    const int end = static_cast<int>(vertices.size()) - (staysLast ? 0 : 1);
    int count = 0;
    while (source + count < end && m_targetOf[source + count] == target + count &&
           isSame(vertices[source + count], m_target.vertices[target + count])) {
      ++count;
    }
    return count;
  }

  /// Returns where to go on in the record.
  std::size_t copyVertices(int source, int count) {
    writeMissingHeader();
    writeNewVerticesUpTo(m_targetOf[source]);
    m_verticesWritten += count;
    const std::vector<std::size_t>& begins = m_source.vertexBegins;
    const auto behind = static_cast<std::size_t>(source + count);
    const std::size_t begin = begins[static_cast<std::size_t>(source)];
    const std::size_t end = behind < begins.size() ? begins[behind] : m_record.size();
    m_out.moveTo(m_written);
    m_written.appendKept(m_record.substr(begin, end - begin));
    return end;
  }

  void beginVertex(int source) {
    writeMissingHeader();
    m_sourceVertex = &m_source.data.vertices[source];
    const int target = m_targetOf[source];
    m_targetVertex = target < 0 ? nullptr : &m_target.vertices[target];
    m_coordinates.fill(Written::no);
    m_elementsBegun = 0;
    if (target < 0) return;
    writeNewVerticesUpTo(target);
    m_verticesWritten = target + 1;
  }

  void endVertex() {
    if (!m_sourceVertex) return;
    endElement();
    if (m_targetVertex) {
      writeMissingCoordinates();
      for (std::size_t i = m_elementsBegun; i < m_targetVertex->elements.size(); ++i)
        writeElement(m_targetVertex->elements[i]);
    }
    m_sourceVertex = nullptr;
  }

  void writeNewVerticesUpTo(int end) {
    for (; m_verticesWritten < end; ++m_verticesWritten) {
      const MlineVertex& vertex = m_target.vertices[m_verticesWritten];
      for (int i = 0; i < kCoordinatesPerVertex; ++i) writeNewCoordinate(vertex, i);
      for (std::size_t i = 0; i < vertex.elements.size(); ++i) writeElement(vertex.elements[i]);
    }
  }

  void writeNewCoordinate(const MlineVertex& vertex, int index) {
    m_out.real(codeOf(11 + index / 3, index % 3), coordinateOf(vertex, index));
  }

  void writeCoordinate(const dxf::Group& group, int index) {
    if (!m_targetVertex) return;
    if (m_coordinates[index] == Written::instead) return;
    m_coordinates[index] = Written::here;
    if (coordinateOf(*m_sourceVertex, index) == coordinateOf(*m_targetVertex, index)) {
      m_out.copy(group);
    } else {
      writeNewCoordinate(*m_targetVertex, index);
    }
  }

  /// A coordinate that the record does not have stands for 0.
  void writeMissingCoordinates() {
    for (int i = 0; i < kCoordinatesPerVertex; ++i) {
      if (m_coordinates[i] != Written::no || coordinateOf(*m_targetVertex, i) == coordinateOf(*m_sourceVertex, i)) continue;
      writeNewCoordinate(*m_targetVertex, i);
      m_coordinates[i] = Written::instead;
    }
  }

  // --- element lists ---

  void writeListGroup(const dxf::Group& group, MlineRole role, int element) {
    if (!m_targetVertex) return;
    if (element >= m_elementsBegun) {
      endElement();
      if (m_elementsBegun == 0) writeMissingCoordinates();
      beginElement(element);
    }
    if (!m_hasElement) return;
    switch (role) {
      case MlineRole::lineCount:
        m_line.count(group);
        break;
      case MlineRole::line:
        m_line.value(group);
        break;
      case MlineRole::fillCount:
        m_line.end();
        m_hasFillList = true;
        m_fill.count(group);
        break;
      default:
        m_line.end();
        m_hasFillList = true;
        m_fill.value(group);
    }
  }

  void beginElement(int element) {
    m_elementsBegun = element + 1;
    m_hasFillList = false;
    m_hasElement = element < static_cast<int>(m_targetVertex->elements.size());
    if (!m_hasElement) return;
    const KdMLSegmentView source = m_sourceVertex->elements[element], target = m_targetVertex->elements[element];
    m_line.begin(source.elementParameters, target.elementParameters);
    m_fill.begin(source.areaFillParameters, target.areaFillParameters);
    m_fillCount = target.areaFillParameters.size();
  }

  void endElement() {
    if (!std::exchange(m_hasElement, false)) return;
    m_line.end();
    if (!m_hasFillList && m_fillCount > 0) m_out.integer(75, static_cast<std::int64_t>(m_fillCount));
    m_fill.end();
  }

  void writeElement(const KdMLSegmentView& element) {
    m_out.integer(74, static_cast<std::int64_t>(element.elementParameters.size()));
    for (const double value : element.elementParameters) m_out.real(41, value);
    m_out.integer(75, static_cast<std::int64_t>(element.areaFillParameters.size()));
    for (const double value : element.areaFillParameters) m_out.real(42, value);
  }

  void finish() {
    if (std::exchange(m_isFinished, true)) return;
    endVertex();
    writeMissingHeader();
    writeNewVerticesUpTo(static_cast<int>(m_target.vertices.size()));
  }

  enum class Written : std::uint8_t { no, here, instead };

  const dxf::DrawingFile& m_file;
  const std::string_view m_record;
  const MlineSource& m_source;
  const MlineData& m_target;
  const std::vector<int> m_targetOf;
  MlineClassifier m_classifier;
  dxf::RecordText m_written;  // up to the last vertices that were copied together
  dxf::RecordBuilder m_out;   // from there on
  ListWriter m_line, m_fill;

  const MlineVertex* m_sourceVertex = nullptr;
  const MlineVertex* m_targetVertex = nullptr;  // null for a vertex that is gone
  bool m_hasElement = false;                    // the target has the current one
  std::array<Written, kCoordinatesPerVertex> m_coordinates = {};
  int m_elementsBegun = 0;
  bool m_hasFillList = false;
  std::size_t m_fillCount = 0;
  int m_verticesWritten = 0;  // of the target
  bool m_isHeaderComplete = false;
  bool m_isFinished = false;
};

}  // namespace

dxf::RecordText writeMline(const dxf::DrawingFile& file, std::string_view bytes, const MlineSource& source,
                           const MlineData& data) {
  return MlineWriter(file, bytes, source, data).write();
}

dxf::RecordText writeMline(const dxf::DrawingFile& file, dxf::RecordId record, const MlineData& data) {
  const std::string_view bytes = file.bytes(record);
  return writeMline(file, bytes, readMlineSource(file, bytes), data);
}

}  // namespace torva::db

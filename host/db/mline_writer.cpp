#include <algorithm>
#include <array>

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

  void begin(const std::vector<double>& source, const std::vector<double>& target) {
    m_sourceCount = source.size();
    m_target = &target;
    m_index = 0;
    const std::size_t shorter = std::min(source.size(), target.size());
    m_front = static_cast<std::size_t>(std::mismatch(source.begin(), source.begin() + shorter, target.begin()).first -
                                       source.begin());
    m_back = 0;
    while (m_back < shorter - m_front && source[source.size() - 1 - m_back] == target[target.size() - 1 - m_back]) ++m_back;
    m_isMiddleDue = true;
  }

  /// A count that was wrong is put right only together with its list.
  void count(const dxf::Group& group) {
    const bool isUnchanged = m_front == m_sourceCount && m_front == m_target->size();
    if (isUnchanged || group.integer() == static_cast<std::int64_t>(m_target->size())) {
      m_out.copy(group);
    } else {
      m_out.integer(group.code, static_cast<std::int64_t>(m_target->size()));
    }
  }

  void value(const dxf::Group& group) {
    const std::size_t index = m_index++;
    if (index < m_front) {
      m_out.copy(group);
      return;
    }
    end();
    if (index >= m_sourceCount - m_back) m_out.copy(group);
  }

  /// Writes what is left to write. To be called at the list's end at the latest.
  void end() {
    if (!std::exchange(m_isMiddleDue, false)) return;
    for (std::size_t i = m_front; i < m_target->size() - m_back; ++i) m_out.real(m_valueCode, (*m_target)[i]);
  }

 private:
  dxf::RecordBuilder& m_out;
  int m_valueCode;
  std::size_t m_sourceCount = 0, m_index = 0, m_front = 0, m_back = 0;
  const std::vector<double>* m_target = nullptr;
  bool m_isMiddleDue = false;
};

class MlineWriter {
 public:
  MlineWriter(const dxf::DrawingFile& file, std::string_view bytes, const MlineData& target)
      : m_groups(file.groupsOf(bytes)),
        m_source(readMlineSource(file, m_groups)),
        m_target(target),
        m_targetOf(alignVertices(m_source.data.vertices, target.vertices)),
        m_out(file),
        m_line(m_out, 41),
        m_fill(m_out, 42) {}

  std::string write() {
    MlineClassifier classifier(m_groups);
    for (const dxf::Group& group : m_groups) {
      const MlineSlot slot = classifier.classify(group);
      if (classifier.isPast()) finish();
      if (slot.role == MlineRole::position && slot.coordinate == 0) {
        endVertex();
        beginVertex(classifier.vertex());
      }
      writeGroup(group, slot, classifier.element());
    }
    finish();
    return m_out.take();
  }

 private:
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

  void beginVertex(int source) {
    writeMissingHeader();
    m_sourceVertex = &m_source.data.vertices[source];
    const int target = m_targetOf[source];
    m_targetVertex = target < 0 ? nullptr : &m_target.vertices[target];
    m_coordinates.fill(Written::no);
    m_elementsBegun = 0;
    if (target < 0) return;
    writeNewVerticesUpTo(target);
    m_written = target + 1;
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
    for (; m_written < end; ++m_written) {
      const MlineVertex& vertex = m_target.vertices[m_written];
      for (int i = 0; i < kCoordinatesPerVertex; ++i) writeNewCoordinate(vertex, i);
      for (const KdMLSegment& element : vertex.elements) writeElement(element);
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
    if (!m_targetElement) return;
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
    m_targetElement = nullptr;
    if (element >= static_cast<int>(m_targetVertex->elements.size())) return;
    m_targetElement = &m_targetVertex->elements[element];
    const KdMLSegment& source = m_sourceVertex->elements[element];
    m_line.begin(source.elementParameters, m_targetElement->elementParameters);
    m_fill.begin(source.areaFillParameters, m_targetElement->areaFillParameters);
  }

  void endElement() {
    if (!m_targetElement) return;
    m_line.end();
    const std::vector<double>& fill = m_targetElement->areaFillParameters;
    if (!m_hasFillList && !fill.empty()) m_out.integer(75, static_cast<std::int64_t>(fill.size()));
    m_fill.end();
    m_targetElement = nullptr;
  }

  void writeElement(const KdMLSegment& element) {
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

  dxf::Groups m_groups;
  MlineSource m_source;
  const MlineData& m_target;
  std::vector<int> m_targetOf;
  dxf::RecordBuilder m_out;
  ListWriter m_line, m_fill;

  const MlineVertex* m_sourceVertex = nullptr;
  const MlineVertex* m_targetVertex = nullptr;  // null for a vertex that is gone
  const KdMLSegment* m_targetElement = nullptr;
  std::array<Written, kCoordinatesPerVertex> m_coordinates = {};
  int m_elementsBegun = 0;
  bool m_hasFillList = false;
  int m_written = 0;  // vertices of the target
  bool m_isHeaderComplete = false;
  bool m_isFinished = false;
};

}  // namespace

std::string writeMline(const dxf::DrawingFile& file, std::string_view bytes, const MlineData& data) {
  return MlineWriter(file, bytes, data).write();
}

std::string writeMline(const dxf::DrawingFile& file, dxf::RecordId record, const MlineData& data) {
  return writeMline(file, file.bytes(record), data);
}

}  // namespace torva::db

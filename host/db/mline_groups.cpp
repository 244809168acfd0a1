#include "db/mline_groups.h"

#include <algorithm>
#include <utility>

#include "db/mline_vertex_reader.h"

namespace torva::db {

namespace {

constexpr std::string_view kClassMark = "AcDbMline";
constexpr int kFirstXdataCode = 1000;
constexpr int kHasVerticesFlag = 1, kClosedFlag = 2, kNoStartCapsFlag = 4, kNoEndCapsFlag = 8;
constexpr int kKnownFlags = kHasVerticesFlag | kClosedFlag | kNoStartCapsFlag | kNoEndCapsFlag;

bool hasClassMark(dxf::Groups groups) {
  for (const dxf::Group& group : groups) {
    if (group.code == 100 && group.value == kClassMark) return true;
  }
  return false;
}

template <class Triple>
double& coordinateOf(Triple& triple, int coordinate) {
  return coordinate == 0 ? triple.x : coordinate == 1 ? triple.y : triple.z;
}

KdMlineJustification justificationOf(std::int64_t value) {
  if (value == 0) return KdMlineJustification::top;
  return value == 2 ? KdMlineJustification::bottom : KdMlineJustification::zero;
}

void setFlags(MlineData& data, int flags) {
  data.isClosed = flags & kClosedFlag;
  data.suppressesStartCaps = flags & kNoStartCapsFlag;
  data.suppressesEndCaps = flags & kNoEndCapsFlag;
  data.otherFlags = flags & ~kKnownFlags;
}

}  // namespace

MlineSlot MlineClassifier::classify(const dxf::Group& group) {
  if (m_part == Part::past || m_application.contains(group)) return {};
  if (group.code == 101 || group.code >= kFirstXdataCode) {
    m_part = Part::past;
    return {};
  }
  if (group.code == 100) {
    if (group.value == kClassMark) {
      m_part = Part::inside;
    } else if (m_part == Part::inside && (m_hasMark || m_vertex >= 0)) {
      m_part = Part::past;
    }
    return {};
  }
  if (m_part == Part::before) return {};

  switch (group.code) {
    case 2:
      return header(MlineRole::styleName);
    case 340:
      return header(MlineRole::styleHandle);
    case 40:
      return header(MlineRole::scale);
    case 70:
      return header(MlineRole::justification);
    case 71:
      return header(MlineRole::flags);
    case 72:
      return header(MlineRole::vertexCount);
    case 73:
      return header(MlineRole::elementCount);
    case 10:
    case 20:
    case 30:
      return header(MlineRole::start, group.code / 10 - 1);
    case 210:
    case 220:
    case 230:
      return header(MlineRole::normal, group.code / 10 - 21);
    case 11:
      ++m_vertex;
      m_element = -1;
      return inVertex(MlineRole::position);
    case 21:
    case 31:
      return inVertex(MlineRole::position, group.code / 10 - 1);
    case 12:
    case 22:
    case 32:
      return inVertex(MlineRole::axis, group.code / 10 - 1);
    case 13:
    case 23:
    case 33:
      return inVertex(MlineRole::miter, group.code / 10 - 1);
    default:
      break;
  }
  if (group.code != 74 && group.code != 41 && group.code != 75 && group.code != 42) return {};
  if (m_vertex < 0) return {};
  if (group.code == 74 || m_element < 0) ++m_element;
  switch (group.code) {
    case 74:
      return {MlineRole::lineCount};
    case 41:
      return {MlineRole::line};
    case 75:
      return {MlineRole::fillCount};
    default:
      return {MlineRole::fill};
  }
}

void MlineClassifier::passHeader(const std::bitset<64>& header) {
  m_part = Part::inside;
  m_seen = header;
}

MlineSlot MlineClassifier::header(MlineRole role, int coordinate) {
  // Only the first group of a kind counts; what is said a second time is kept as something unknown.
  const MlineSlot slot{role, coordinate};
  if (m_seen.test(slot.bit())) return {};
  m_seen.set(slot.bit());
  return slot;
}

MlineSlot MlineClassifier::inVertex(MlineRole role, int coordinate) const {
  return m_vertex < 0 ? MlineSlot{} : MlineSlot{role, coordinate};
}

namespace {

class MlineReader {
 public:
  MlineReader(const dxf::DrawingFile& file, std::string_view bytes)
      : m_file(file), m_bytes(bytes), m_classifier(hasClassMark(file.groupsOf(bytes))), m_usualVertices(file.form(), bytes) {
    m_source.hasMark = m_classifier.hasMark();
  }

  MlineSource read() {
    for (std::size_t place = 0; place < m_bytes.size();) place = readGroups(place);
    endVertex();
    return std::move(m_source);
  }

 private:
  /// Reads from a place in the record on. Returns where to go on: behind vertices that were read together, or at the end.
  std::size_t readGroups(std::size_t place) {
    for (const dxf::Group& group : m_file.groupsOf(m_bytes.substr(place))) {
      const MlineSlot slot = m_classifier.classify(group);
      if (m_classifier.isPast()) break;
      if (slot.role == MlineRole::other) continue;
      if (slot.beginsVertex()) {
        const auto begin = static_cast<std::size_t>(group.source.data() - m_bytes.data());
        endVertex();
        // The classifier counts them as one, which makes no difference here.
        if (const std::size_t end = readUsualVertices(begin); end != begin) return end;
        m_source.vertexBegins.push_back(begin);
        m_source.data.vertices.emplace_back();
      }
      if (slot.role <= MlineRole::normal) {
        readHeader(slot, group);
      } else {
        readVertex(slot, group);
      }
    }
    return m_bytes.size();
  }

  std::size_t readUsualVertices(std::size_t begin) {
    std::vector<MlineVertex>& vertices = m_source.data.vertices;
    for (;;) {
      const std::size_t end = m_usualVertices.read(begin, vertices.emplace_back());
      if (end == begin) break;
      m_source.vertexBegins.push_back(std::exchange(begin, end));
    }
    vertices.pop_back();
    return begin;
  }

  void readHeader(const MlineSlot& slot, const dxf::Group& group) {
    MlineData& data = m_source.data;
    m_source.header.set(slot.bit());
    if (m_classifier.vertex() >= 0) m_source.isHeaderInFront = false;
    switch (slot.role) {
      case MlineRole::styleName:
        data.styleName = m_file.text(group);
        break;
      case MlineRole::styleHandle:
        data.styleHandle = group.handle().value_or(0);
        break;
      case MlineRole::scale:
        data.scale = realOf(group);
        break;
      case MlineRole::justification:
        data.justification = justificationOf(group.integerOr(1));
        break;
      case MlineRole::flags:
        setFlags(data, static_cast<int>(group.integerOr(0)));
        break;
      case MlineRole::vertexCount:
        reserve(group.integerOr(0));
        break;
      case MlineRole::normal:
        coordinateOf(data.normal, slot.coordinate) = realOf(group);
        break;
      default:
        break;
    }
  }

  /// The count is believed as far as the record has room for so many.
  void reserve(std::int64_t count) {
    constexpr std::size_t kLeastVertexSize = 64;
    const std::size_t most = m_bytes.size() / kLeastVertexSize;
    m_source.data.vertices.reserve(std::min(most, static_cast<std::size_t>(std::max<std::int64_t>(count, 0))) + 1);
    m_source.vertexBegins.reserve(m_source.data.vertices.capacity());
  }

  void readVertex(const MlineSlot& slot, const dxf::Group& group) {
    MlineVertex& vertex = m_source.data.vertices.back();
    switch (slot.role) {
      case MlineRole::position:
        coordinateOf(vertex.position, slot.coordinate) = realOf(group);
        break;
      case MlineRole::axis:
        coordinateOf(vertex.axis, slot.coordinate) = realOf(group);
        break;
      case MlineRole::miter:
        coordinateOf(vertex.miter, slot.coordinate) = realOf(group);
        break;
      case MlineRole::line:
        currentElement().elementParameters.push_back(realOf(group));
        break;
      case MlineRole::fill:
        currentElement().areaFillParameters.push_back(realOf(group));
        break;
      default:
        currentElement();
    }
  }

  KdMLSegment& currentElement() {
    // Elements come one after the other, so that the list never grows by more than one.
    const auto index = static_cast<std::size_t>(m_classifier.element());
    if (index >= m_elements.size()) m_elements.emplace_back();
    return m_elements[index];
  }

  void endVertex() {
    if (!m_elements.empty()) m_source.data.vertices.back().elements = m_elements;
    m_elements.clear();
  }

  double realOf(const dxf::Group& group) {
    const std::optional<double> value = group.real();
    if (!value && !m_source.unreadable) m_source.unreadable = group;
    return value.value_or(0);
  }

  const dxf::DrawingFile& m_file;
  std::string_view m_bytes;
  MlineClassifier m_classifier;
  UsualVertexReader m_usualVertices;
  MlineSource m_source;
  std::vector<KdMLSegment> m_elements;  // of the last vertex, if that was not read as a usual one
};

}  // namespace

MlineSource readMlineSource(const dxf::DrawingFile& file, std::string_view bytes) {
  return MlineReader(file, bytes).read();
}

int flagWord(const MlineData& data) {
  return (data.vertices.empty() ? 0 : kHasVerticesFlag) | (data.isClosed ? kClosedFlag : 0) |
         (data.suppressesStartCaps ? kNoStartCapsFlag : 0) | (data.suppressesEndCaps ? kNoEndCapsFlag : 0) | data.otherFlags;
}

bool isSame(const MlineVertex& a, const MlineVertex& b) {
  const auto isSameTriple = [](const auto& s, const auto& t) { return s.x == t.x && s.y == t.y && s.z == t.z; };
  return isSameTriple(a.position, b.position) && isSameTriple(a.axis, b.axis) && isSameTriple(a.miter, b.miter) &&
         a.elements == b.elements;
}

MlineData readMline(const dxf::DrawingFile& file, dxf::RecordId record) {
  return readMlineSource(file, file.bytes(record)).data;
}

}  // namespace torva::db

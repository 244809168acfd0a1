#include "db/mline_groups.h"

#include <algorithm>

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

KdMLSegment& elementAt(MlineVertex& vertex, int index) {
  // Elements come one after the other, so that the list never grows by more than one.
  if (index >= static_cast<int>(vertex.elements.size())) vertex.elements.emplace_back();
  return vertex.elements[index];
}

/// Room for as many as a count in the record says, which is a hint only and may be anything.
template <class List>
void reserve(List& list, const dxf::Group& count) {
  constexpr std::int64_t kMost = 64;
  list.reserve(static_cast<std::size_t>(std::clamp<std::int64_t>(count.integerOr(0), 0, kMost)));
}

}  // namespace

MlineClassifier::MlineClassifier(dxf::Groups groups)
    : m_hasMark(hasClassMark(groups)), m_part(m_hasMark ? Part::before : Part::inside) {}

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

MlineSource readMlineSource(const dxf::DrawingFile& file, dxf::Groups groups) {
  MlineSource source;
  MlineData& data = source.data;
  MlineClassifier classifier(groups);
  const auto realOf = [&](const dxf::Group& group) {
    const std::optional<double> value = group.real();
    if (!value && !source.unreadable) source.unreadable = group;
    return value.value_or(0);
  };
  for (const dxf::Group& group : groups) {
    const MlineSlot slot = classifier.classify(group);
    if (classifier.isPast()) break;
    if (slot.role == MlineRole::other) continue;
    if (slot.role <= MlineRole::normal) source.header.set(slot.bit());
    switch (slot.role) {
      case MlineRole::styleName:
        data.styleName = file.text(group);
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
      case MlineRole::normal:
        coordinateOf(data.normal, slot.coordinate) = realOf(group);
        break;
      case MlineRole::position:
        if (slot.coordinate == 0) data.vertices.emplace_back();
        coordinateOf(data.vertices.back().position, slot.coordinate) = realOf(group);
        break;
      case MlineRole::axis:
        coordinateOf(data.vertices.back().axis, slot.coordinate) = realOf(group);
        break;
      case MlineRole::miter:
        coordinateOf(data.vertices.back().miter, slot.coordinate) = realOf(group);
        break;
      case MlineRole::vertexCount:
        reserve(data.vertices, group);
        break;
      case MlineRole::lineCount:
        reserve(elementAt(data.vertices.back(), classifier.element()).elementParameters, group);
        break;
      case MlineRole::fillCount:
        reserve(elementAt(data.vertices.back(), classifier.element()).areaFillParameters, group);
        break;
      case MlineRole::line:
        elementAt(data.vertices.back(), classifier.element()).elementParameters.push_back(realOf(group));
        break;
      case MlineRole::fill:
        elementAt(data.vertices.back(), classifier.element()).areaFillParameters.push_back(realOf(group));
        break;
      default:
        break;
    }
  }
  return source;
}

int flagWord(const MlineData& data) {
  return (data.vertices.empty() ? 0 : kHasVerticesFlag) | (data.isClosed ? kClosedFlag : 0) |
         (data.suppressesStartCaps ? kNoStartCapsFlag : 0) | (data.suppressesEndCaps ? kNoEndCapsFlag : 0) | data.otherFlags;
}

bool MlineVertex::operator==(const MlineVertex& other) const {
  const auto isSame = [](const auto& a, const auto& b) { return a.x == b.x && a.y == b.y && a.z == b.z; };
  return isSame(position, other.position) && isSame(axis, other.axis) && isSame(miter, other.miter) &&
         elements == other.elements;
}

MlineData readMline(const dxf::DrawingFile& file, dxf::RecordId record) {
  return readMlineSource(file, file.groups(record)).data;
}

}  // namespace torva::db

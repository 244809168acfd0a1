#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "draw/group_scan.h"
#include "draw/mline_shape.h"
#include "draw/polylines.h"
#include "draw/shape_boxes.h"

// Readers of records for boxes alone, each for both kinds of scan: TextScan and GroupScan.

namespace torva::draw {

/// Takes what every entity may have; false for a group that the caller has to look at.
template <class Scan>
bool readCommon(const Scan& scan, EntityFacts& facts) {
  switch (scan.code()) {
    case 8:
      facts.layer = scan.text();
      return true;
    case 60:
      facts.isHidden = scan.real() == 1;
      return true;
    case 67:
      facts.isInPaperSpace = scan.real() == 1;
      return true;
    case 210:
      facts.extrusion.x = scan.real();
      return true;
    case 220:
      facts.extrusion.y = scan.real();
      return true;
    case 230:
      facts.extrusion.z = scan.real();
      return true;
    default:
      return false;
  }
}

/// Takes nothing else of a record.
template <class Scan>
void readCommonFacts(Scan& scan, EntityFacts& facts) {
  while (scan.next()) readCommon(scan, facts);
}

template <class Scan>
void readFacts(Scan& scan, EntityFacts& facts, dxf::RecordType type) {
  const bool isContent = type == dxf::RecordType::mtext;
  while (scan.next()) {
    if (readCommon(scan, facts)) continue;
    if (RecordValues::isCode(scan.code())) {
      facts.values.set(scan.code(), scan.real());
    } else if (scan.code() == 1 || scan.code() == 3) {
      if (scan.code() == 1 && facts.text.empty()) facts.text = scan.text();
      if (isContent) addContent(scan.text(), facts);
    } else if (scan.code() == 2 && facts.name.empty()) {
      facts.name = scan.text();
    }
  }
}

template <class Scan>
geom::Box3 readLightweight(Scan& scan, EntityFacts& facts) {
  PathBox path;
  BulgeVertex vertex;
  bool isClosed = false, hasVertex = false;
  while (scan.next()) {
    if (readCommon(scan, facts)) continue;
    switch (scan.code()) {
      case 10:
        if (hasVertex) path.add(vertex.point, vertex.bulge);
        hasVertex = true;
        vertex.point.x = scan.real();
        vertex.point.y = vertex.bulge = 0;
        break;
      case 20:
        vertex.point.y = scan.real();
        break;
      case 42:
        vertex.bulge = scan.real();
        break;
      case 38:
        vertex.point.z = scan.real();
        break;
      case 70:
        isClosed = static_cast<int>(scan.real()) & 1;
        break;
      default:
        break;
    }
  }
  if (hasVertex) path.add(vertex.point, vertex.bulge);
  return inWorld(path.box(isClosed), facts.extrusion);
}

/// Box of all points with codes 10 and 11: control points hold a spline, vertices a leader.
template <class Scan>
geom::Box3 readPoints(Scan& scan, EntityFacts& facts) {
  geom::Box3 box;
  KdGePoint3d point;
  bool hasPoint = false;
  while (scan.next()) {
    if (readCommon(scan, facts)) continue;
    switch (scan.code()) {
      case 10:
      case 11:
        if (hasPoint) box.add(point);
        hasPoint = true;
        point = {scan.real(), 0, 0};
        break;
      case 20:
      case 21:
        point.y = scan.real();
        break;
      case 30:
      case 31:
        point.z = scan.real();
        break;
      default:
        break;
    }
  }
  if (hasPoint) box.add(point);
  return box;
}

/// Box of a hatch whose outlines are straight; nothing for one with bent edges.
template <class Scan>
std::optional<geom::Box3> readStraightHatch(Scan& scan, EntityFacts& facts) {
  constexpr double kLineEdge = 1;
  enum class Part { head, polyline, edges, rest } part = Part::head;
  geom::Box3 box;
  KdGePoint3d point;
  while (scan.next()) {
    if (readCommon(scan, facts)) continue;
    const int code = scan.code();
    if (code == 92) part = static_cast<int>(scan.real()) & 2 ? Part::polyline : Part::edges;
    if (code == 75) part = Part::rest;
    if (part == Part::rest) continue;
    if (code == 30) point.z = scan.real();
    if (part == Part::head) continue;
    if (code == 10 || code == 11) point.x = scan.real();
    if (code == 20 || code == 21) point.y = scan.real(), box.add(point);
    const bool isBentEdge = part == Part::polyline ? code == 42 && scan.real() != 0 : code == 72 && scan.real() != kLineEdge;
    if (isBentEdge) return {};
  }
  return box;
}

/// A multiline's record as most programs write it: the groups of a vertex in their usual order.
struct MlineHead {
  std::string_view styleHandle, styleName;
  int flags = 0;

  bool isClosed() const { return flags & 2; }
  MlineEnds ends() const {
    constexpr int kNoStartCaps = 4, kNoEndCaps = 8;
    return {!isClosed() && (flags & kNoStartCaps) == 0, !isClosed() && (flags & kNoEndCaps) == 0};
  }
};

/// Tells whether any segment's own box meets a box in x and y: a long wall's box holds much that the wall is far from.
class MlineProbe {
 public:
  explicit MlineProbe(const geom::Box3& wanted) : m_wanted(wanted) {}

  void beginVertex() { m_extents.beginVertex(); }
  KdGePoint3d& position() { return m_extents.position(); }
  KdGeVector3d& miter() { return m_extents.miter(); }
  void addOffset(double offset) { m_extents.addOffset(offset); }
  void addCut(const KdGeVector3d& fromMiter) { m_extents.addCut(fromMiter); }
  void endVertex() {
    m_extents.endVertex();
    m_before.add(m_extents.ringBox());
    check(m_before);
    if (m_first.isEmpty()) m_first = m_extents.ringBox();
    m_before = m_extents.vertexBox();
  }

  bool isMet(const MlineHead& head, const db::MlineStyleData& style) {
    if (head.isClosed()) m_before.add(m_first);
    check(m_before);
    check(m_extents.startCap(style, head.ends()));
    check(m_extents.endCap(style, head.ends()));
    return m_isMet;
  }

 private:
  void check(const geom::Box3& box) { m_isMet = m_isMet || meetInPlan(padded(box), m_wanted); }

  const geom::Box3& m_wanted;
  MlineExtents m_extents;
  geom::Box3 m_before, m_first;
  bool m_isMet = false;
};

/// False for a record in any other order.
template <class Scan, class Collector>
bool readUsualMline(Scan& scan, EntityFacts& facts, MlineHead& mline, Collector& extents) {
  constexpr std::array<int, 9> kVertexCodes = {11, 21, 31, 12, 22, 32, 13, 23, 33};
  enum class Part { head, vertex, lists, offset, line, fill } part = Part::head;
  // The axis is read for vertices with cuts alone: most have none.
  const std::array<double*, 9> slots = {
      &extents.position().x, &extents.position().y, &extents.position().z, nullptr, nullptr, nullptr,
      &extents.miter().x,    &extents.miter().y,    &extents.miter().z};
  std::array<typename Scan::Value, 9> texts;
  std::optional<KdGeVector3d> axis;
  std::size_t slot = 0;
  const auto takeSlot = [&] {
    if (slots[slot]) {
      *slots[slot] = scan.real();
    } else {
      texts[slot] = scan.value();
    }
    if (++slot == kVertexCodes.size()) part = Part::lists;
  };
  const auto addCut = [&](double value) {
    if (value == 0) return;  // there lies the miter point itself
    if (!axis) axis = {scan.real(texts[3]), scan.real(texts[4]), scan.real(texts[5])};
    extents.addCut(*axis * value);
  };
  while (scan.next()) {
    const int code = scan.code();
    if (part == Part::vertex) {
      if (code != kVertexCodes[slot]) return false;
      takeSlot();
      continue;
    }
    switch (code) {
      case 41:
        if (part == Part::fill || part == Part::lists) return false;
        if (part == Part::offset) {
          extents.addOffset(scan.real());
          part = Part::line;
        } else if (part == Part::line) {
          addCut(scan.real());
        }
        continue;
      case 74:
        if (part == Part::head) return false;
        part = Part::offset;
        continue;
      case 75:
      case 42:
        if (part == Part::head) return false;
        part = Part::fill;
        continue;
      case 11:
        if (part != Part::head) extents.endVertex();
        extents.beginVertex();
        axis.reset();
        slot = 0;
        part = Part::vertex;
        takeSlot();
        continue;
      default:
        break;
    }
    if (part != Part::head) return false;
    if (readCommon(scan, facts)) continue;
    if (code == 340) mline.styleHandle = scan.text();
    if (code == 2) mline.styleName = scan.text();
    if (code == 71) mline.flags = static_cast<int>(scan.real());
  }
  if (part != Part::head) extents.endVertex();
  return part != Part::vertex;
}

}  // namespace torva::draw

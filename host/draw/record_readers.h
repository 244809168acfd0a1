#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "db/mline_lists_text.h"
#include "draw/group_scan.h"
#include "draw/mline_shape.h"
#include "draw/polylines.h"
#include "draw/shape_boxes.h"
#include "dxf/text_cursor.h"

// Readers of records for boxes alone; those with a scan are for both kinds: TextScan and GroupScan.

namespace torva::draw {

/// Begins a vertex of a multiline, behind all that an entity says of itself.
constexpr int kMlineVertex = 11;

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

/// A scan of a record behind the groups that most entities begin with, up to the mark of their own class: these are taken as
/// they are expected. From the record's first group on where they are others.
inline TextScan scanBehindFront(std::string_view bytes, EntityFacts& facts) {
  dxf::TextCursor cursor(bytes.data(), bytes.data() + bytes.size());
  std::string_view layer;
  const bool isUsual = cursor.take("  0\n") && cursor.takeLine() && cursor.take("  5\n") && cursor.takeLine() &&
                       cursor.take("330\n") && cursor.takeLine() && cursor.take("100\nAcDbEntity\n  8\n") &&
                       cursor.takeLine(layer) && cursor.take("100\n") && cursor.takeLine();
  TextScan scan(bytes);
  if (!isUsual) return scan;
  facts.layer = layer;
  scan.goTo(cursor.place());
  return scan;
}

template <class Scan>
void readFacts(Scan scan, EntityFacts& facts, dxf::RecordType type) {
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
geom::Box3 readLightweight(Scan scan, EntityFacts& facts) {
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
geom::Box3 readPoints(Scan scan, EntityFacts& facts) {
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
std::optional<geom::Box3> readStraightHatch(Scan scan, EntityFacts& facts) {
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
  void addFormerOffsets() { m_extents.addFormerOffsets(); }
  void addCut(const KdGeVector3d& fromMiter) { m_extents.addCut(fromMiter); }
  bool hasCuts() const { return m_extents.hasCuts(); }
  void endVertex() {
    m_extents.endVertex();
    m_before.add(m_extents.ringBox());
    check(m_before);
    if (m_first.isEmpty()) m_first = m_extents.ringBox();
    m_before = m_extents.vertexBox();
  }

  /// Whether one was met already: what follows makes no difference then.
  bool isDone() const { return m_isMet; }
  bool isMet(bool isClosed, const MlineEnds& ends, const db::MlineStyleData& style) {
    if (isClosed) m_before.add(m_first);
    check(m_before);
    check(m_extents.startCap(style, ends));
    check(m_extents.endCap(style, ends));
    return m_isMet;
  }

 private:
  void check(const geom::Box3& box) { m_isMet = m_isMet || meetInPlan(padded(box), m_wanted); }

  const geom::Box3& m_wanted;
  MlineExtents m_extents;
  geom::Box3 m_before, m_first;
  bool m_isMet = false;
};

/// Coordinates with codes that rise by 10.
template <int code, class Triple>
bool takeNearTriple(dxf::TextCursor& cursor, Triple& triple) {
  return cursor.take<code>() && cursor.takeNear(triple.x) && cursor.take<code + 10>() && cursor.takeNear(triple.y) &&
         cursor.take<code + 20>() && cursor.takeNear(triple.z);
}

/// The lists of one element. `axis` is the line triple that gives the axis, read for cuts alone: most lists have none.
template <class Collector>
bool takeUsualLists(dxf::TextCursor& cursor, dxf::TextCursor axis, Collector& extents) {
  double value = 0;
  if (db::takeUncutLists(cursor, [&](dxf::TextCursor& at) { return at.takeNear(value); })) {
    extents.addOffset(value);
    return true;
  }
  if (!cursor.take<74>() || !cursor.takeCount()) return false;
  for (bool isOffset = true; cursor.take<41>(); isOffset = false) {
    if (!cursor.takeNear(value)) return false;
    if (isOffset) {
      extents.addOffset(value);
    } else if (value != 0) {  // at 0 lies the miter point itself
      KdGeVector3d direction;
      dxf::TextCursor here = axis;
      if (!takeNearTriple<12>(here, direction)) return false;
      extents.addCut(direction * value);
    }
  }
  if (!cursor.take<75>() || !cursor.takeCount()) return false;
  while (cursor.take<42>()) {
    if (!cursor.takeLine()) return false;
  }
  return true;
}

/// The lists of all elements of a vertex. `former` is the text of those of the vertex before, or empty: along a path without
/// gaps they are mostly the same.
template <class Collector>
bool takeUsualElements(dxf::TextCursor& cursor, const dxf::TextCursor& axis, Collector& extents, std::string_view& former) {
  const char* const begin = cursor.place();
  if (!former.empty() && cursor.take(former)) {
    extents.addFormerOffsets();
    if (!cursor.isAt<74>()) return true;
  }
  while (cursor.isAt<74>()) {
    if (!takeUsualLists(cursor, axis, extents)) return false;
  }
  former = {begin, extents.hasCuts() ? 0 : static_cast<std::size_t>(cursor.place() - begin)};
  return true;
}

/// A vertex behind the code of its first coordinate.
template <class Collector>
bool takeUsualVertex(dxf::TextCursor& cursor, Collector& extents, std::string_view& formerLists) {
  extents.beginVertex();
  KdGePoint3d& position = extents.position();
  const bool hasPosition = cursor.takeNear(position.x) && cursor.take<21>() && cursor.takeNear(position.y) &&
                           cursor.take<31>() && cursor.takeNear(position.z);
  const dxf::TextCursor axis = cursor;
  const bool hasAxis = hasPosition && cursor.take<12>() && cursor.takeLine() && cursor.take<22>() && cursor.takeLine() &&
                       cursor.take<32>() && cursor.takeLine();
  if (!hasAxis || !takeNearTriple<13>(cursor, extents.miter())) return false;
  if (!takeUsualElements(cursor, axis, extents, formerLists)) return false;
  extents.endVertex();
  return true;
}

/// Reads until the collector says that it is done. False for a record in any other
/// order, and for one with a number that is none.
template <class Collector>
bool readUsualMline(TextScan scan, EntityFacts& facts, MlineHead& mline, Collector& extents) {
  for (;;) {
    if (!scan.next()) return true;
    const int code = scan.code();
    if (code == kMlineVertex) break;
    if (code == 41 || code == 42 || code == 74 || code == 75) return false;
    if (readCommon(scan, facts)) continue;
    if (code == 340) mline.styleHandle = scan.text();
    if (code == 2) mline.styleName = scan.text();
    if (code == 71) mline.flags = static_cast<int>(scan.real());
  }
  const char* const end = scan.end();
  dxf::TextCursor cursor(scan.text().data(), end);
  std::string_view formerLists;
  do {
    if (!takeUsualVertex(cursor, extents, formerLists)) return false;
    if (extents.isDone()) return true;
  } while (cursor.take<11>());
  return !TextScan({cursor.place(), static_cast<std::size_t>(end - cursor.place())}).next();
}

}  // namespace torva::draw

#pragma once

#include <string_view>

#include "draw/record_values.h"
#include "geom/box.h"

namespace torva::draw {

/// The numbers and names of a record that its type needs.
struct EntityFacts {
  std::string_view layer = "0";
  bool isHidden = false, isInPaperSpace = false;
  KdGeVector3d extrusion{0, 0, 1};
  std::string_view text, name;  ///< Groups 1 and 2.
  RecordValues values;
  // Of an MTEXT's content, in capital heights; no less than what is drawn.
  double contentWidth = 0, wordWidth = 0, widestWord = 0;
  std::ptrdiff_t contentBreaks = 0;
};

/// Box of the given points.
template <class... Points>
geom::Box3 boxOf(const Points&... points) {
  geom::Box3 box;
  (box.add(points), ...);
  return box;
}

/// The box widened by what rounding in nearDecimal() and the sums made of it can amount to.
geom::Box3 padded(const geom::Box3& box);
bool isFinite(const geom::Box3& box);
bool meetInPlan(const geom::Box3& a, const geom::Box3& b);
/// World box of a box in the coordinate system of an extrusion direction.
geom::Box3 inWorld(const geom::Box3& box, const KdGeVector3d& extrusion);

/// Box of a path with bulges. A bent segment stays within the rise of its arc from its chord's box.
class PathBox {
 public:
  void add(const KdGePoint3d& point, double bulge) {
    if (m_hasPoint) addSegment(point);
    if (!m_hasPoint) m_first = point;
    m_hasPoint = true;
    m_box.add(point);
    m_last = point;
    m_bulge = bulge;
  }
  geom::Box3 box(bool isClosed) {
    if (isClosed && m_hasPoint) addSegment(m_first);
    return m_box;
  }

 private:
  void addSegment(const KdGePoint3d& to) {
    if (m_bulge == 0) return;
    const double rise = std::abs(m_bulge) * m_last.distanceTo(to) / 2;
    const KdGeVector3d reach{rise, rise, 0};
    const geom::Box3 chord = boxOf(m_last, to);
    m_box.add({chord.min - reach, chord.max + reach});
  }

  geom::Box3 m_box;
  KdGePoint3d m_first, m_last;
  double m_bulge = 0;
  bool m_hasPoint = false;
};

geom::Box3 circleBox(const KdGePoint3d& center, double radius);
/// Counter-clockwise; a whole turn when both angles are the same direction.
geom::Box3 arcBox(const KdGePoint3d& center, double radius, double startDegrees, double endDegrees);
geom::Box3 ellipseBox(const EntityFacts& facts);
/// Box of a TEXT, ATTRIB or ATTDEF whose line is at most `width` capital heights wide.
geom::Box3 textBox(const EntityFacts& facts, dxf::RecordType type, double width);
/// Holds an MTEXT whatever its alignment: as many lines as it can have, as long as they can be, on every side of its point.
geom::Box3 multilineTextBox(const EntityFacts& facts);
/// Measures a piece of an MTEXT's content, formatting codes counted as letters.
void addContent(std::string_view text, EntityFacts& facts);

}  // namespace torva::draw

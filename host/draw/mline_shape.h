#pragma once

#include <cstdint>
#include <vector>

#include "db/mline_data.h"
#include "db/mline_style_data.h"
#include "draw/sketch.h"

namespace torva::draw {

/// Indices of the appearances that a multiline is drawn in.
struct MlineAppearances {
  std::vector<std::uint32_t> elements;  ///< In the style's order.
  std::uint32_t fill = 0;
  std::uint32_t other = 0;  ///< For elements beyond those of the style.

  std::uint32_t ofElement(std::size_t index) const { return index < elements.size() ? elements[index] : other; }
};

/// Draws a multiline from its stored lists: fill, joints, caps, then the elements' stretches. Missing elements and empty
/// lists draw nothing.
void drawMline(const db::MlineData& mline, const db::MlineStyleData& style, const MlineAppearances& appearances,
               Sketch& sketch);

/// Length of all that is drawn of one element, gaps left out; 0 for one that the multiline does not have.
double drawnLength(const db::MlineData& mline, std::size_t element);

/// What of a multiline can have caps.
struct MlineEnds {
  bool canHaveStartCaps = true, canHaveEndCaps = true;
};

MlineEnds endsOf(const db::MlineData& mline);

/// Collects the extents of a multiline vertex by vertex, without building anything.
class MlineExtents {
 public:
  void beginVertex() { m_position = {}, m_miter = {}, m_ring = {}, m_vertexBox = {}; }
  KdGePoint3d& position() { return m_position; }
  KdGeVector3d& miter() { return m_miter; }
  /// The place of an element on the miter: a list's first value. Requires: the vertex's point and miter are known.
  void addOffset(double offset) {
    m_offset = offset;
    m_ring.least = m_ring.count == 0 ? offset : std::min(m_ring.least, offset);
    m_ring.most = m_ring.count == 0 ? offset : std::max(m_ring.most, offset);
    ++m_ring.count;
  }
  /// The same for the offsets that the vertex before has. Requires: that has no cuts.
  void addFormerOffsets() { m_ring.least = m_last.least, m_ring.most = m_last.most, m_ring.count = m_last.count; }
  /// Whether the vertex has any cuts until now.
  bool hasCuts() const { return !m_vertexBox.isEmpty(); }
  /// The place of a cut on the last added element.
  void addCut(const KdGeVector3d& fromMiter) { m_vertexBox.add(miterPoint(m_offset) + fromMiter); }
  void endVertex();
  /// False: every vertex counts.
  static constexpr bool isDone() { return false; }

  /// Points of the last vertex: those on its miter alone, and all that its lists name on the segment that starts there.
  const geom::Box3& ringBox() const { return m_ring.box; }
  const geom::Box3& vertexBox() const { return m_vertexBox; }
  /// Boxes of the round caps that the style has; empty for none.
  geom::Box3 startCap(const db::MlineStyleData& style, const MlineEnds& ends) const;
  geom::Box3 endCap(const db::MlineStyleData& style, const MlineEnds& ends) const;

  /// Box of all points that the lists name and of the round caps that the style has.
  geom::Box3 box(const db::MlineStyleData& style, const MlineEnds& ends) const;

 private:
  /// The points of all elements at one vertex.
  struct Ring {
    geom::Box3 box;
    double least = 0, most = 0;  // distances along the miter
    double miterLength = 0;
    int count = 0;

    geom::Box3 withRoundCap() const { return box.grownBy((most - least) * miterLength / 2); }
  };

  KdGePoint3d miterPoint(double offset) const { return m_position + m_miter * offset; }

  KdGePoint3d m_position;
  KdGeVector3d m_miter;
  double m_offset = 0;
  Ring m_ring, m_first, m_last;
  bool m_hasFirst = false;
  geom::Box3 m_vertexBox, m_points;
};

/// Hands a multiline's vertices to a collector like MlineExtents, until that is done.
template <class Collector>
void collect(const db::MlineData& mline, Collector& collector) {
  for (const db::MlineVertex& vertex : mline.vertices) {
    if (collector.isDone()) return;
    collector.beginVertex();
    collector.position() = vertex.position;
    collector.miter() = vertex.miter;
    for (std::size_t i = 0; i < vertex.elements.size(); ++i) {
      const std::span<const double> values = vertex.elements[i].elementParameters;
      if (values.empty()) continue;
      collector.addOffset(values.front());
      for (const double value : values.subspan(1)) collector.addCut(vertex.axis * value);
    }
    collector.endVertex();
  }
}

geom::Box3 mlineExtents(const db::MlineData& mline, const db::MlineStyleData& style);

}  // namespace torva::draw

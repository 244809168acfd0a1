#pragma once

#include <cstdint>
#include <vector>

#include "draw/display_list.h"
#include "geom/transform.h"

namespace torva::draw {

/// Adds shapes to a display list, mapped to the world. Shapes with coordinates that are no finite numbers are dropped, so
/// that nothing downstream meets them.
class Sketch {
 public:
  Sketch(DisplayList& list, const geom::Transform& toWorld) : m_list(list), m_toWorld(toWorld) {}

  /// A sketch into the same list whose shapes are given in another space.
  Sketch within(const geom::Transform& inner) const { return Sketch(m_list, m_toWorld * inner); }

  void line(const KdGePoint3d& from, const KdGePoint3d& to, std::uint32_t appearance);
  /// Nothing for an empty list.
  void polyline(std::vector<KdGePoint3d> points, bool isClosed, std::uint32_t appearance);
  /// Points along an open curve; nothing for an empty list.
  void curve(std::vector<KdGePoint3d> points, std::uint32_t appearance);
  void arc(const Arc& arc, std::uint32_t appearance);
  /// Loops of fewer than three points are passed over.
  void fill(std::vector<std::vector<KdGePoint3d>> loops, std::uint32_t appearance);
  /// Nothing for a text without letters.
  void text(Text text, std::uint32_t appearance);

  const geom::Transform& toWorld() const { return m_toWorld; }
  DisplayList& list() const { return m_list; }

 private:
  void add(Polyline polyline, std::uint32_t appearance);

  DisplayList& m_list;
  geom::Transform m_toWorld;
};

/// A circular arc in the x-y plane, counter-clockwise; a whole turn when both angles are the same direction.
Arc circularArc(const KdGePoint3d& center, double radius, double startRad, double endRad);

}  // namespace torva::draw

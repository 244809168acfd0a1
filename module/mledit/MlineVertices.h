#pragma once

#include <span>
#include <vector>

#include <kdrx/db_mline.h>
#include <kdrx/ut.h>

/// All that a multiline holds at one vertex, world coordinates.
struct CMlineVertex {
  double position[3];
  double axis[3];
  double miter[3];
  KdMLSegments elements;

  /// Replaces the element parameters of an element; its area-fill parameters stay. Requires: element < elements.size().
  void setParameters(std::size_t element, std::span<const double> values);
};

/// A copy of all vertices, to be changed and written back.
std::vector<CMlineVertex> readMlineVertices(const KdDbMline& mline);

/// Makes these the vertices of the multiline, which is open for write. Requires: at least 2.
/// @return false when a value is no number; the multiline is undefined then
bool writeMlineVertices(KdDbMline& mline, const std::vector<CMlineVertex>& vertices);

/// The system in which the directions at a vertex are worked out.
class CMlineDirections {
 public:
  explicit CMlineDirections(const KdDbMline& mline);

  /// Plan angle of the direction from one world point to another, in radians, 0 <= angle < 2 pi.
  double angle(const double* from, const double* to) const;
  /// Plan angle of a world vector.
  double angle(const double* vector) const;
  /// Gives a vertex its axis and miter by their plan angles.
  void set(CMlineVertex& vertex, double axisAngle, double miterAngle) const;

  /// The direction that halves the corner on the left of the path, from the directions to the next and the previous vertex.
  static double bisector(double toNext, double toPrevious);

 private:
  KdResbuf m_world, m_target;
};

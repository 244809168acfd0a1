#pragma once

#include <span>

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

/// A copy of a vertex, to be changed and written back. Requires: there is one with that index.
CMlineVertex readMlineVertex(const KdDbMline& mline, int index);

/// Makes this the vertex with an index, or adds it in front of that one, in a multiline that is open for write.
/// @return false when a value is no number; nothing is changed then
bool writeMlineVertex(KdDbMline& mline, int index, const CMlineVertex& vertex);
bool insertMlineVertex(KdDbMline& mline, int index, const CMlineVertex& vertex);

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

#pragma once

#include <vector>

#include <kdrx/export.h>
#include <kdrx/ge.h>

class KdDbObjectImp;

/// The internal side of a multiline that modules may use: whole lists replaced at once, one entry per vertex.
/// Obtained by KdDbMlineImp::of(KdDbSystemInternals::getImpObject(mline)); owned by the multiline.
class KDRX_API KdDbMlineImp {
 public:
  enum Selector : int { kMiters = 0, kAxes = 1 };

  /// The multiline side of an internal object; null when it is of another class or null.
  static KdDbMlineImp* of(KdDbObjectImp* imp);

  /// Replaces the positions of the existing vertices, in order. Axes, miters and lists stay as they are.
  /// @return false, changing nothing, when the sizes differ, a value is no number or the multiline is not open for write
  virtual bool appendSegments(const std::vector<KdGePoint3d>& points) = 0;
  /// Replaces the axes (selector kAxes) or miters (kMiters) of the existing vertices, in order.
  /// @return false, changing nothing, when the sizes differ, a value is no number or the multiline is not open for write
  virtual bool appendSeg(const std::vector<KdGeVector3d>& vectors, int selector) = 0;

 protected:
  ~KdDbMlineImp() = default;
};

#pragma once

#include <algorithm>
#include <limits>

#include <kdrx/ge.h>

namespace torva::geom {

/// Axis-aligned box; empty until a point is added.
struct Box3 {
  KdGePoint3d min{kInfinity, kInfinity, kInfinity};
  KdGePoint3d max{-kInfinity, -kInfinity, -kInfinity};

  bool isEmpty() const { return !(min.x <= max.x); }
  void add(const KdGePoint3d& p) {
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
  }
  void add(const Box3& box) {
    if (box.isEmpty()) return;
    add(box.min);
    add(box.max);
  }
  /// Whether all of another box lies in this one; an empty one does.
  bool holds(const Box3& box) const {
    return box.isEmpty() || (min.x <= box.min.x && min.y <= box.min.y && min.z <= box.min.z && max.x >= box.max.x &&
                             max.y >= box.max.y && max.z >= box.max.z);
  }
  /// Moves every side outward; an empty box stays empty.
  Box3 grownBy(double distance) const {
    if (isEmpty()) return *this;
    const KdGeVector3d d{distance, distance, distance};
    return {min - d, max + d};
  }

 private:
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();
};

}  // namespace torva::geom

#pragma once

#include "dxf/record.h"
#include "geom/box.h"

namespace torva::view {

/// A box in single precision that holds a given one: rounded outward.
struct SmallBox {
  float min[3], max[3];

  static SmallBox around(const geom::Box3& box);
  static SmallBox empty();
  bool isEmpty() const { return !(min[0] <= max[0]); }
  void add(const SmallBox& box);
  bool meetsInPlan(const SmallBox& box) const {
    return min[0] <= box.max[0] && max[0] >= box.min[0] && min[1] <= box.max[1] && max[1] >= box.min[1];
  }
  geom::Box3 box() const { return {{min[0], min[1], min[2]}, {max[0], max[1], max[2]}}; }
};

/// An entity and the box of what it draws, in world coordinates.
struct BoxedEntity {
  dxf::RecordId id;
  SmallBox box;
};

}  // namespace torva::view

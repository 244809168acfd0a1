#pragma once

#include <memory>
#include <vector>

#include "draw/drawer.h"
#include "view/hit_test.h"
#include "view/view.h"

namespace torva::view {

/// Finds entities of model space by place: an R-tree over their boxes, built on first need and kept up to date by the
/// drawing's changes.
class Picker {
 public:
  explicit Picker(const db::Database& database);
  ~Picker();

  /// The entity whose drawn geometry is nearest to `pointWcs`, among those that meet the pick square (centre the point, half
  /// side `halfSide` drawing units, in the plane of the view); of equals the later drawn wins. kNoRecord when none meets it.
  dxf::RecordId pick(const KdGePoint3d& pointWcs, double halfSide, const View& view);

  /// The entities of which the whole, or a part, lies in a window, in drawing order.
  std::vector<dxf::RecordId> pickAll(const PickWindow& window, WindowRule rule, const View& view);

  /// Entities whose boxes meet a box of world coordinates (x and y count), in drawing order.
  std::vector<dxf::RecordId> query(const geom::Box3& boxWcs);

  /// Box of all that is drawn, in world coordinates; empty for an empty drawing.
  geom::Box3 extents();

  const draw::Drawer& drawer() const;

 private:
  class Index;
  draw::Drawer m_drawer;
  std::unique_ptr<Index> m_index;
};

}  // namespace torva::view

#pragma once

#include <memory>
#include <vector>

#include "base/export.h"
#include "base/watch.h"
#include "draw/drawer.h"
#include "view/hit_test.h"
#include "view/small_box.h"
#include "view/view.h"

namespace torva::view {

/// How far the changes of a drawing were followed. The one made by default is before all of them.
struct ChangeMark {
  std::size_t looks = 0, builds = 0, position = 0;
};

/// What looks different.
struct Changes {
  bool areAll = false;                ///< Anything may look different; no entities are listed then.
  std::vector<BoxedEntity> entities;  ///< For every change of an entity: its box before and its box after; empty: not drawn.
};

/// Finds entities of model space by place: an R-tree over their boxes, built on first need and kept up to date by the
/// drawing's changes.
class TORVA_API Picker {
 public:
  explicit Picker(const db::Database& database);
  ~Picker();

  /// Builds the tree ahead, on whichever thread; one thread at a time may use a picker and its drawing.
  /// @return false when that was cancelled; what needs the tree then builds it
  [[nodiscard]] bool prepare(const Progress& progress);

  /// The entity whose drawn geometry is nearest to `pointWcs`, among those that meet the pick square (centre the point, half
  /// side `halfSide` drawing units, in the plane of the view); of equals the later drawn wins. kNoRecord when none meets it.
  dxf::RecordId pick(const KdGePoint3d& pointWcs, double halfSide, const View& view);

  /// The entities of which the whole, or a part, lies in a window, in drawing order.
  std::vector<dxf::RecordId> pickAll(const PickWindow& window, WindowRule rule, const View& view);

  /// The entities that may show something in a window, in drawing order.
  std::vector<dxf::RecordId> candidates(const PickWindow& window, const View& view);

  /// Entities whose boxes meet a box of world coordinates (x and y count), in drawing order.
  std::vector<dxf::RecordId> query(const geom::Box3& boxWcs);

  /// Entities whose boxes meet a window, in drawing order.
  /// @return false when there are more than `most`; `found` then holds any `most` of them
  bool query(const PickWindow& window, const View& view, std::size_t most, std::vector<BoxedEntity>& found);

  /// All entities piece by piece in drawing order, for what is too much for query() at once: those among the `count` records
  /// from number `from` on. The first call after a change costs up to a pass over all boxes.
  /// @return the number to go on from; kNoRecord at the end
  dxf::RecordId scan(dxf::RecordId from, std::size_t count, std::vector<BoxedEntity>& found);

  /// What changed since a mark, which moves to now. From the first call on the changes are kept.
  Changes changesSince(ChangeMark& mark);

  /// Box of all that is drawn, in world coordinates; empty for an empty drawing.
  geom::Box3 extents();

  const draw::Drawer& drawer() const;
  const db::Database& database() const;

 private:
  class TORVA_INTERNAL Index;
  draw::Drawer m_drawer;
  std::unique_ptr<Index> m_index;
};

}  // namespace torva::view

#pragma once

#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <cstdint>
#include <unordered_map>
#include <vector>

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
  geom::Box3 box() const;
};

/// Boxes of records, for finding those at a place. The boxes known from the start are packed along a curve that keeps
/// neighbours together, and an R-tree is made of their runs: little time and memory for a million boxes. What changes later
/// is kept in a second R-tree beside it.
class BoxIndex {
 public:
  struct Entry {
    dxf::RecordId id;
    SmallBox box;
  };

  /// Replaces all.
  void build(std::vector<Entry> entries);
  /// Gives a record another box; an empty one takes it out.
  void set(dxf::RecordId id, const geom::Box3& box);

  /// Calls visit(id) for the records whose boxes meet a box in x and y.
  template <class Visit>
  void query(const SmallBox& wanted, const Visit& visit) const {
    for (auto run = m_runTree.qbegin(boost::geometry::index::intersects(planOf(wanted))); run != m_runTree.qend(); ++run) {
      visitRun(
          run->second, [&](const SmallBox& box) { return box.meetsInPlan(wanted); }, visit);
    }
    for (auto late = m_lateTree.qbegin(boost::geometry::index::intersects(planOf(wanted))); late != m_lateTree.qend();
         ++late)
      visit(late->second);
  }

  /// Calls visit(id) for the records whose boxes, and the boxes of whose neighbourhoods, `meets` holds for. Looks at all
  /// neighbourhoods.
  template <class Meets, class Visit>
  void queryIf(const Meets& meets, const Visit& visit) const {
    for (std::uint32_t run = 0; run < m_runs.size(); ++run) {
      if (meets(m_runs[run])) visitRun(run, meets, visit);
    }
    for (const auto& [id, box] : m_late) {
      if (!box.isEmpty() && meets(box)) visit(id);
    }
  }

 private:
  using Point = boost::geometry::model::d2::point_xy<float>;
  using Box = boost::geometry::model::box<Point>;
  using Value = std::pair<Box, std::uint32_t>;
  using Tree = boost::geometry::index::rtree<Value, boost::geometry::index::quadratic<16>>;

  static constexpr std::uint32_t kRun = 16;

  static Box planOf(const SmallBox& box) { return {{box.min[0], box.min[1]}, {box.max[0], box.max[1]}}; }

  template <class Meets, class Visit>
  void visitRun(std::uint32_t run, const Meets& meets, const Visit& visit) const {
    const std::size_t end = std::min<std::size_t>(m_entries.size(), std::size_t{run + 1} * kRun);
    for (std::size_t i = std::size_t{run} * kRun; i < end; ++i) {
      if (meets(m_entries[i].box) && !m_late.contains(m_entries[i].id)) visit(m_entries[i].id);
    }
  }

  std::vector<Entry> m_entries;
  std::vector<SmallBox> m_runs;
  Tree m_runTree, m_lateTree;
  std::unordered_map<dxf::RecordId, SmallBox> m_late;
};

}  // namespace torva::view

#pragma once

#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "view/small_box.h"

namespace torva::view {

/// Boxes of records, for finding those at a place. The boxes known from the start are packed along a curve that keeps
/// neighbours together, and an R-tree is made of their runs: little time and memory for a million boxes. What changes later
/// is kept in a second R-tree beside it.
class BoxIndex {
 public:
  using Entry = BoxedEntity;

  /// Replaces all.
  void build(std::vector<Entry> entries);
  /// Gives a record another box; an empty one takes it out.
  void set(dxf::RecordId id, const geom::Box3& box);

  /// The box of a record; empty for one that has none. The first call after build() costs a pass over all.
  SmallBox boxOf(dxf::RecordId id) const;
  /// Above the numbers of all records that have boxes.
  dxf::RecordId idLimit() const { return m_idLimit; }

  /// Calls visit(entry) for the records whose boxes meet a box in x and y, until it returns false.
  /// @return false when it did
  template <class Visit>
  bool query(const SmallBox& wanted, const Visit& visit) const {
    const auto meets = [&](const SmallBox& box) { return box.meetsInPlan(wanted); };
    for (auto run = m_runTree.qbegin(boost::geometry::index::intersects(planOf(wanted))); run != m_runTree.qend(); ++run) {
      if (!visitRun(run->second, meets, visit)) return false;
    }
    for (auto late = m_lateTree.qbegin(boost::geometry::index::intersects(planOf(wanted))); late != m_lateTree.qend();
         ++late) {
      if (!visit(Entry{late->second, m_late.at(late->second)})) return false;
    }
    return true;
  }

  /// The same for the records whose boxes, and the boxes of whose neighbourhoods, `meets` holds for. Looks at all
  /// neighbourhoods.
  template <class Meets, class Visit>
  bool queryIf(const Meets& meets, const Visit& visit) const {
    for (std::uint32_t run = 0; run < m_runs.size(); ++run) {
      if (meets(m_runs[run]) && !visitRun(run, meets, visit)) return false;
    }
    for (const auto& [id, box] : m_late) {
      if (!box.isEmpty() && meets(box) && !visit(Entry{id, box})) return false;
    }
    return true;
  }

 private:
  using Point = boost::geometry::model::d2::point_xy<float>;
  using Box = boost::geometry::model::box<Point>;
  using Value = std::pair<Box, std::uint32_t>;
  using Tree = boost::geometry::index::rtree<Value, boost::geometry::index::quadratic<16>>;

  static constexpr std::uint32_t kRun = 16;

  /// The boxes of the runs of m_entries.
  void findRuns();

  static Box planOf(const SmallBox& box) { return {{box.min[0], box.min[1]}, {box.max[0], box.max[1]}}; }

  template <class Meets, class Visit>
  bool visitRun(std::uint32_t run, const Meets& meets, const Visit& visit) const {
    const std::size_t end = std::min<std::size_t>(m_entries.size(), std::size_t{run + 1} * kRun);
    for (std::size_t i = std::size_t{run} * kRun; i < end; ++i) {
      const bool isWanted = meets(m_entries[i].box) && !m_late.contains(m_entries[i].id);
      if (isWanted && !visit(m_entries[i])) return false;
    }
    return true;
  }

  std::vector<Entry> m_entries;
  std::vector<SmallBox> m_runs;
  Tree m_runTree, m_lateTree;
  std::unordered_map<dxf::RecordId, SmallBox> m_late;
  dxf::RecordId m_idLimit = 0;
  mutable std::vector<std::uint32_t> m_places;  // where in m_entries a record stands; made by boxOf()
};

}  // namespace torva::view

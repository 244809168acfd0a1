#include "view/box_index.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace torva::view {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// A float at or below a value: the value is lowered by more than rounding can raise it. All values beyond the range of
/// floats are its end, which keeps their order and every box finite.
float roundedDown(double value) {
  constexpr double kShare = std::numeric_limits<float>::epsilon(), kLeast = std::numeric_limits<float>::min();
  constexpr double kMost = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(value - std::abs(value) * kShare - kLeast, -kMost, kMost));
}

float roundedUp(double value) {
  return -roundedDown(-value);
}

/// Puts a zero bit before each of the lower 16 bits.
std::uint32_t spread(std::uint32_t bits) {
  bits = (bits | bits << 8) & 0x00FF00FFu;
  bits = (bits | bits << 4) & 0x0F0F0F0Fu;
  bits = (bits | bits << 2) & 0x33333333u;
  return (bits | bits << 1) & 0x55555555u;
}

/// Place along a curve that visits the plane quarter by quarter, from coordinates between 0 and 1.
std::uint32_t curvePosition(double x, double y) {
  constexpr double kSteps = 65'535;
  const auto step = [](double share) { return static_cast<std::uint32_t>(std::clamp(share, 0.0, 1.0) * kSteps); };
  return spread(step(x)) | spread(step(y)) << 1;
}

struct Key {
  std::uint32_t position, entry;
};

/// Sorts by position in four passes over its bytes: faster than comparing for so many plain numbers.
void sortByPosition(std::vector<Key>& keys) {
  constexpr int kPasses = 4, kBits = 8;
  std::vector<Key> other(keys.size());
  for (int pass = 0; pass < kPasses; ++pass) {
    const auto digit = [&](const Key& key) { return key.position >> (pass * kBits) & 0xFFu; };
    std::array<std::size_t, (1 << kBits) + 1> begins{};
    for (const Key& key : keys) ++begins[digit(key) + 1];
    for (std::size_t i = 1; i < begins.size(); ++i) begins[i] += begins[i - 1];
    for (const Key& key : keys) other[begins[digit(key)]++] = key;
    std::swap(keys, other);
  }
}

std::vector<Key> keysAlongCurve(const std::vector<BoxIndex::Entry>& entries) {
  // In double precision no difference of floats overflows.
  const auto center = [](const SmallBox& box, int axis) { return (double{box.min[axis]} + double{box.max[axis]}) / 2; };
  double low[2] = {kInfinity, kInfinity}, high[2] = {-kInfinity, -kInfinity};
  for (const auto& entry : entries) {
    for (const int axis : {0, 1}) {
      low[axis] = std::min(low[axis], center(entry.box, axis));
      high[axis] = std::max(high[axis], center(entry.box, axis));
    }
  }
  const double size = std::max({high[0] - low[0], high[1] - low[1], double{std::numeric_limits<float>::min()}});
  std::vector<Key> keys;
  keys.reserve(entries.size());
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    const SmallBox& box = entries[i].box;
    keys.push_back({curvePosition((center(box, 0) - low[0]) / size, (center(box, 1) - low[1]) / size), i});
  }
  return keys;
}

/// Moves every entry to the place that its key has, without a second array of entries.
void arrange(std::vector<BoxIndex::Entry>& entries, std::vector<Key>& keys) {
  constexpr std::uint32_t kDone = std::numeric_limits<std::uint32_t>::max();
  for (std::uint32_t start = 0; start < keys.size(); ++start) {
    if (keys[start].entry == kDone) continue;
    const BoxIndex::Entry first = entries[start];
    std::uint32_t place = start;
    for (;;) {
      const std::uint32_t source = std::exchange(keys[place].entry, kDone);
      if (source == start) break;
      entries[place] = entries[source];
      place = source;
    }
    entries[place] = first;
  }
}

/// Whether the runs are about as small as runs of neighbours would be: the sum of their areas tells in how many of them a
/// point lies on average. People draw one part after the other, so that the order in the drawing will mostly do.
bool areCompact(const std::vector<SmallBox>& runs) {
  constexpr double kMostAtAPoint = 10;
  SmallBox all = SmallBox::empty();
  for (const SmallBox& run : runs) all.add(run);
  const auto extent = [](const SmallBox& box, int axis) { return double{box.max[axis]} - double{box.min[axis]}; };
  // Runs without any width are looked at too where they are near.
  const double margin = std::max(extent(all, 0), extent(all, 1)) / std::sqrt(static_cast<double>(runs.size()));
  const auto area = [&](const SmallBox& box) { return (extent(box, 0) + margin) * (extent(box, 1) + margin); };
  double sum = 0;
  for (const SmallBox& run : runs) sum += area(run);
  return sum <= kMostAtAPoint * area(all);
}

}  // namespace

SmallBox SmallBox::around(const geom::Box3& box) {
  return {{roundedDown(box.min.x), roundedDown(box.min.y), roundedDown(box.min.z)},
          {roundedUp(box.max.x), roundedUp(box.max.y), roundedUp(box.max.z)}};
}

SmallBox SmallBox::empty() {
  return {{kInfinity, kInfinity, kInfinity}, {-kInfinity, -kInfinity, -kInfinity}};
}

void SmallBox::add(const SmallBox& box) {
  for (int axis = 0; axis < 3; ++axis) {
    min[axis] = std::min(min[axis], box.min[axis]);
    max[axis] = std::max(max[axis], box.max[axis]);
  }
}

void BoxIndex::build(std::vector<Entry> entries) {
  m_entries = std::move(entries);
  m_late.clear();
  m_lateTree.clear();
  m_runs.clear();
  m_places.clear();
  m_idLimit = 0;
  for (const Entry& entry : m_entries) m_idLimit = std::max(m_idLimit, entry.id + 1);
  findRuns();
  if (!areCompact(m_runs)) {
    std::vector<Key> keys = keysAlongCurve(m_entries);
    sortByPosition(keys);
    arrange(m_entries, keys);
    findRuns();
  }
  std::vector<Value> runs;
  runs.reserve(m_runs.size());
  for (const SmallBox& run : m_runs) runs.emplace_back(planOf(run), static_cast<std::uint32_t>(runs.size()));
  m_runTree = Tree(runs);
}

void BoxIndex::findRuns() {
  m_runs.clear();
  m_runs.reserve(m_entries.size() / kRun + 1);
  for (std::size_t begin = 0; begin < m_entries.size(); begin += kRun) {
    SmallBox box = SmallBox::empty();
    for (std::size_t i = begin; i < std::min<std::size_t>(begin + kRun, m_entries.size()); ++i) box.add(m_entries[i].box);
    m_runs.push_back(box);
  }
}

void BoxIndex::set(dxf::RecordId id, const geom::Box3& box) {
  const SmallBox fresh = box.isEmpty() ? SmallBox::empty() : SmallBox::around(box);
  const auto [late, isNew] = m_late.try_emplace(id, fresh);
  if (!isNew) m_lateTree.remove(Value{planOf(std::exchange(late->second, fresh)), id});
  if (!box.isEmpty()) m_lateTree.insert(Value{planOf(fresh), id});
  m_idLimit = std::max(m_idLimit, id + 1);
}

SmallBox BoxIndex::boxOf(dxf::RecordId id) const {
  constexpr std::uint32_t kNowhere = std::numeric_limits<std::uint32_t>::max();
  if (!m_late.empty()) {
    if (const auto late = m_late.find(id); late != m_late.end()) return late->second;
  }
  if (m_places.empty() && !m_entries.empty()) {
    m_places.assign(m_idLimit, kNowhere);
    for (std::uint32_t place = 0; place < m_entries.size(); ++place) m_places[m_entries[place].id] = place;
  }
  const std::uint32_t place = id < m_places.size() ? m_places[id] : kNowhere;
  return place == kNowhere ? SmallBox::empty() : m_entries[place].box;
}

}  // namespace torva::view

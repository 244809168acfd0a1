#include "view/picker.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "view/box_index.h"

namespace torva::view {
namespace {

PickWindow windowOf(const PickSquare& square) {
  const KdGeVector3d half{square.halfSide, square.halfSide, 0};
  return {square.centerDcs - half, square.centerDcs + half};
}

geom::Box3 inWorld(const PickWindow& window, const View& view) {
  const KdGePoint3d &a = window.minDcs, &b = window.maxDcs;
  geom::Box3 box;
  for (const KdGePoint3d& corner : {a, {b.x, a.y, a.z}, {b.x, b.y, a.z}, {a.x, b.y, a.z}}) box.add(view.toWorld(corner));
  return box;
}

geom::Box3 inDisplay(const SmallBox& small, const View& view) {
  const geom::Box3 box = small.box();
  geom::Box3 result;
  for (const double x : {box.min.x, box.max.x}) {
    for (const double y : {box.min.y, box.max.y}) {
      for (const double z : {box.min.z, box.max.z}) result.add(view.toDisplay({x, y, z}));
    }
  }
  return result;
}

bool meets(const geom::Box3& boxDcs, const PickWindow& window) {
  return boxDcs.min.x <= window.maxDcs.x && boxDcs.max.x >= window.minDcs.x && boxDcs.min.y <= window.maxDcs.y &&
         boxDcs.max.y >= window.minDcs.y;
}

/// Visits the entities whose boxes meet a window, until visit() returns false.
template <class Visit>
bool forEachBoxIn(const BoxIndex& index, const PickWindow& window, const View& view, const Visit& visit) {
  if (view.isPlan()) return index.query(SmallBox::around(inWorld(window, view)), visit);
  return index.queryIf([&](const SmallBox& box) { return meets(inDisplay(box, view), window); }, visit);
}

/// Visits the entities that may show something in a window.
template <class Visit>
void forEachNear(const BoxIndex& index, const draw::Drawer& drawer, const PickWindow& window, const View& view,
                 const Visit& visit) {
  const geom::Box3 box = inWorld(window, view);
  forEachBoxIn(index, window, view, [&](const BoxedEntity& entity) {
    if (!view.isPlan() || drawer.mayMeet(entity.id, box)) visit(entity.id);
    return true;
  });
}

/// Gathers the extents of many entities. One whose bounds may be much too large is measured if these reach beyond everything
/// else.
class Extents {
 public:
  explicit Extents(const draw::Drawer& drawer) : m_drawer(drawer) {}

  void add(dxf::RecordId entity, const geom::Box3& bounds) {
    if (!m_drawer.hasLooseBounds(entity)) {
      m_box.add(bounds);
    } else if (reachesBeyond(bounds)) {
      m_loose.emplace_back(entity, bounds);
    }
  }

  const geom::Box3& box() {
    for (const auto& [entity, bounds] : std::exchange(m_loose, {})) {
      if (reachesBeyond(bounds)) m_box.add(m_drawer.drawnExtents(entity));
    }
    return m_box;
  }

 private:
  bool reachesBeyond(const geom::Box3& bounds) const {
    constexpr double kRoundingShare = 1e-9;  // all that is flat lies at one height, but for rounding
    return m_box.isEmpty() || !m_box.grownBy(kRoundingShare * m_box.min.distanceTo(m_box.max)).holds(bounds);
  }

  const draw::Drawer& m_drawer;
  geom::Box3 m_box;
  std::vector<std::pair<dxf::RecordId, geom::Box3>> m_loose;
};

bool isEarlier(const BoxedEntity& a, const BoxedEntity& b) {
  return a.id < b.id;
}

}  // namespace

/// The boxes of model space, and what has to be known to keep them up to date.
class Picker::Index {
 public:
  Index(const db::Database& database, const draw::Drawer& drawer) : m_database(database), m_drawer(drawer) {}

  /// The extents too: a window asks for them first of all.
  bool prepare(const Progress& progress) {
    if (!build(progress)) return false;
    m_extents->box();
    return true;
  }

  const BoxIndex& current() {
    if (m_drawer.refresh().boxes != m_generation || !m_isBuilt) {
      build();
      return m_boxes;
    }
    const std::size_t count = m_database.changeCount();
    dxf::RecordId last = dxf::kNoRecord;
    for (const dxf::RecordId record : m_database.changesSince(m_seen)) {
      m_extents.reset();
      const dxf::RecordId entity = entityOf(record);
      if (entity == dxf::kNoRecord) {
        build();
        break;
      }
      if (std::exchange(last, entity) != entity) update(entity);
    }
    m_seen = count;
    return m_boxes;
  }

  Changes changesSince(ChangeMark& mark) {
    m_isFollowed = true;
    current();
    const ChangeMark now{m_drawer.refresh().looks, m_builds, m_changed.size()};
    Changes changes;
    changes.areAll = now.looks != mark.looks || now.builds != mark.builds;
    if (!changes.areAll) {
      changes.entities.assign(m_changed.begin() + static_cast<std::ptrdiff_t>(mark.position), m_changed.end());
    }
    mark = now;
    return changes;
  }

  const db::Database& database() const { return m_database; }

  geom::Box3 extents() {
    current();
    if (!m_extents) {
      m_extents.emplace(m_drawer);
      m_database.forEachEntity([&](dxf::RecordId entity) { m_extents->add(entity, m_drawer.modelSpaceBounds(entity)); });
    }
    return m_extents->box();
  }

 private:
  bool build(const Progress& progress = {}) {
    constexpr std::size_t kWatchedEntities = 4096;
    constexpr double kBoxesShare = 0.8;  // of the work; the rest is ordering them
    const auto count = static_cast<double>(m_database.file().recordCount());
    std::vector<BoxIndex::Entry> entries;
    entries.reserve(m_database.file().recordCount());
    m_isBuilt = false;
    m_extents.emplace(m_drawer);
    bool isWanted = progress.goOn(0);
    std::size_t untilLook = kWatchedEntities;
    m_database.forEachEntity([&](dxf::RecordId entity) {
      if (!isWanted) return;
      if (--untilLook == 0) {
        untilLook = kWatchedEntities;
        isWanted = progress.goOn(kBoxesShare * std::min(1.0, entity / count));
      }
      const geom::Box3 box = m_drawer.modelSpaceBounds(entity);
      if (box.isEmpty()) return;
      m_extents->add(entity, box);
      entries.push_back({entity, SmallBox::around(box)});
    });
    if (!isWanted || !progress.goOn(kBoxesShare)) return false;
    m_boxes.build(std::move(entries));
    m_seen = m_database.changeCount();
    m_generation = m_drawer.refresh().boxes;
    m_isBuilt = true;
    ++m_builds;
    m_changed.clear();
    return progress.goOn(1);
  }

  /// The entity that a record is or is a part of; kNoRecord when only building anew tells.
  dxf::RecordId entityOf(dxf::RecordId record) const {
    using dxf::RecordType;
    const RecordType type = m_database.file().type(record);
    const bool isPart = type == RecordType::vertex || type == RecordType::attrib || type == RecordType::seqend;
    return isPart ? ownerOf(record) : record;
  }

  void update(dxf::RecordId entity) {
    if (!m_database.isTopLevelEntity(entity)) return;
    if (m_isFollowed) m_changed.push_back({entity, m_boxes.boxOf(entity)});
    m_boxes.set(entity, m_drawer.modelSpaceBounds(entity));
    if (m_isFollowed) m_changed.push_back({entity, m_boxes.boxOf(entity)});
  }

  dxf::RecordId ownerOf(dxf::RecordId record) const {
    for (const dxf::Group& group : m_database.file().groups(record)) {
      if (group.code != 330) continue;
      const dxf::RecordId owner = m_database.file().find(group.handle().value_or(0));
      const bool isEntity = owner != dxf::kNoRecord && m_database.file().type(owner) != dxf::RecordType::blockRecord;
      return isEntity ? owner : dxf::kNoRecord;
    }
    return dxf::kNoRecord;
  }

  const db::Database& m_database;
  const draw::Drawer& m_drawer;
  BoxIndex m_boxes;
  std::optional<Extents> m_extents;
  std::size_t m_seen = 0, m_generation = 0;
  bool m_isBuilt = false;
  // For those who follow the changes: how often all was made new, and what changed since the last time.
  std::size_t m_builds = 0;
  std::vector<BoxedEntity> m_changed;
  bool m_isFollowed = false;
};

Picker::Picker(const db::Database& database) : m_drawer(database), m_index(std::make_unique<Index>(database, m_drawer)) {}

Picker::~Picker() = default;

bool Picker::prepare(const Progress& progress) {
  return m_index->prepare(progress);
}

dxf::RecordId Picker::pick(const KdGePoint3d& pointWcs, double halfSide, const View& view) {
  const PickSquare square{view.toDisplay(pointWcs), halfSide};
  dxf::RecordId nearest = dxf::kNoRecord;
  double least = 0;
  draw::DisplayList list;
  const auto consider = [&](dxf::RecordId entity) {
    list.clear();
    m_drawer.drawShapes(entity, list);
    const auto distance = distanceIfMet(list, view, square);
    if (!distance) return;
    const bool isBetter = nearest == dxf::kNoRecord || *distance < least || (*distance == least && entity > nearest);
    if (isBetter) nearest = entity, least = *distance;
  };
  forEachNear(m_index->current(), m_drawer, windowOf(square), view, consider);
  return nearest;
}

std::vector<dxf::RecordId> Picker::pickAll(const PickWindow& window, WindowRule rule, const View& view) {
  std::vector<dxf::RecordId> found;
  draw::DisplayList list;
  forEachNear(m_index->current(), m_drawer, window, view, [&](dxf::RecordId entity) {
    list.clear();
    m_drawer.drawShapes(entity, list);
    if (liesIn(list, view, window, rule)) found.push_back(entity);
  });
  std::sort(found.begin(), found.end());
  return found;
}

std::vector<dxf::RecordId> Picker::candidates(const PickWindow& window, const View& view) {
  std::vector<dxf::RecordId> found;
  forEachNear(m_index->current(), m_drawer, window, view, [&](dxf::RecordId entity) { found.push_back(entity); });
  std::sort(found.begin(), found.end());
  return found;
}

std::vector<dxf::RecordId> Picker::query(const geom::Box3& boxWcs) {
  std::vector<dxf::RecordId> found;
  if (boxWcs.isEmpty()) return found;
  m_index->current().query(SmallBox::around(boxWcs), [&](const BoxedEntity& entity) {
    found.push_back(entity.id);
    return true;
  });
  std::sort(found.begin(), found.end());
  return found;
}

bool Picker::query(const PickWindow& window, const View& view, std::size_t most, std::vector<BoxedEntity>& found) {
  found.clear();
  const bool areAll = forEachBoxIn(m_index->current(), window, view, [&](const BoxedEntity& entity) {
    if (found.size() == most) return false;
    found.push_back(entity);
    return true;
  });
  std::sort(found.begin(), found.end(), isEarlier);
  return areAll;
}

dxf::RecordId Picker::scan(dxf::RecordId from, std::size_t count, std::vector<BoxedEntity>& found) {
  found.clear();
  const BoxIndex& index = m_index->current();
  const auto end = static_cast<dxf::RecordId>(std::min<std::size_t>(index.idLimit(), from + count));
  for (dxf::RecordId id = from; id < end; ++id) {
    const SmallBox box = index.boxOf(id);
    if (!box.isEmpty()) found.push_back({id, box});
  }
  return end >= index.idLimit() ? dxf::kNoRecord : end;
}

Changes Picker::changesSince(ChangeMark& mark) {
  return m_index->changesSince(mark);
}

geom::Box3 Picker::extents() {
  return m_index->extents();
}

const draw::Drawer& Picker::drawer() const {
  return m_drawer;
}

const db::Database& Picker::database() const {
  return m_index->database();
}

}  // namespace torva::view

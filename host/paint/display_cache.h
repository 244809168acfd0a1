#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>

#include "draw/drawer.h"

namespace torva::paint {

/// Display lists of entities, the least recently used ones thrown out when they need more memory than allowed.
class DisplayCache {
 public:
  explicit DisplayCache(const draw::Drawer& drawer) : m_drawer(drawer) {}

  /// The display list of an entity. Valid until the next call of any function.
  const draw::DisplayList& of(dxf::RecordId entity);
  void forget(dxf::RecordId entity);
  void clear();
  void setLimit(std::size_t bytes);

 private:
  struct Item {
    dxf::RecordId entity = dxf::kNoRecord;
    draw::DisplayList list;
    std::size_t bytes = 0;
  };

  void shrink();

  const draw::Drawer& m_drawer;
  std::size_t m_limit = 96 << 20, m_bytes = 0;
  std::list<Item> m_items;  // the most recently used first
  std::unordered_map<dxf::RecordId, std::list<Item>::iterator> m_places;
};

}  // namespace torva::paint

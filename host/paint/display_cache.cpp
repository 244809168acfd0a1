#include "paint/display_cache.h"

#include <variant>

namespace torva::paint {
namespace {

struct ShapeBytes {
  std::size_t operator()(const draw::Polyline& polyline) const { return polyline.points.capacity() * sizeof(KdGePoint3d); }
  std::size_t operator()(const draw::Arc&) const { return 0; }
  std::size_t operator()(const draw::Fill& fill) const {
    std::size_t bytes = fill.loops.capacity() * sizeof(fill.loops.front());
    for (const auto& loop : fill.loops) bytes += loop.capacity() * sizeof(KdGePoint3d);
    return bytes;
  }
  std::size_t operator()(const draw::Text& text) const { return text.text.capacity() * sizeof(wchar_t); }
};

std::size_t bytesOf(const draw::DisplayList& list) {
  std::size_t bytes = list.primitives.capacity() * sizeof(draw::Primitive);
  for (const draw::Primitive& primitive : list.primitives) bytes += std::visit(ShapeBytes{}, primitive.shape);
  bytes += list.appearances.capacity() * sizeof(draw::Appearance);
  for (const draw::Appearance& appearance : list.appearances) bytes += appearance.dashes.capacity() * sizeof(double);
  return bytes;
}

/// What the lists and the table take beside the display list itself.
constexpr std::size_t kItemBytes = 160;

}  // namespace

const draw::DisplayList& DisplayCache::of(dxf::RecordId entity) {
  if (const auto known = m_places.find(entity); known != m_places.end()) {
    m_items.splice(m_items.begin(), m_items, known->second);
    return known->second->list;
  }
  Item& item = m_items.emplace_front();
  item.entity = entity;
  m_drawer.draw(entity, item.list);
  item.list.primitives.shrink_to_fit();
  item.list.appearances.shrink_to_fit();
  item.bytes = bytesOf(item.list) + kItemBytes;
  m_bytes += item.bytes;
  m_places.emplace(entity, m_items.begin());
  shrink();
  return item.list;
}

void DisplayCache::forget(dxf::RecordId entity) {
  const auto known = m_places.find(entity);
  if (known == m_places.end()) return;
  m_bytes -= known->second->bytes;
  m_items.erase(known->second);
  m_places.erase(known);
}

void DisplayCache::clear() {
  m_items.clear();
  m_places.clear();
  m_bytes = 0;
}

void DisplayCache::setLimit(std::size_t bytes) {
  m_limit = bytes;
  shrink();
}

void DisplayCache::shrink() {
  // The latest stays, however large: it is in use.
  while (m_bytes > m_limit && m_items.size() > 1) forget(m_items.back().entity);
}

}  // namespace torva::paint

#include "dxf/record_index.h"

#include <algorithm>

namespace torva::dxf {
namespace {

constexpr Handle kMostHandlesPerRecord = 4;
constexpr Handle kAlwaysDense = 4096;

}  // namespace

HandleTable::HandleTable(const RecordIndex& index, const std::function<void(RecordId, RecordId)>& onDuplicate) {
  RecordId count = 0;
  for (RecordId id = 0; id < index.size(); ++id) {
    m_highest = std::max(m_highest, index.handle(id));
    count += index.handle(id) != 0 ? 1 : 0;
  }
  if (m_highest < kAlwaysDense || m_highest / kMostHandlesPerRecord < count) {
    m_byHandle.resize(m_highest + 1);
    for (RecordId id = 0; id < index.size(); ++id) {
      const Handle handle = index.handle(id);
      if (handle == 0) continue;
      if (m_byHandle[handle] != 0) {
        onDuplicate(m_byHandle[handle] - 1, id);
      } else {
        m_byHandle[handle] = id + 1;
      }
    }
    return;
  }
  m_sorted.reserve(count);
  for (RecordId id = 0; id < index.size(); ++id) {
    if (index.handle(id) != 0) m_sorted.push_back(id);
  }
  const auto precedes = [&](RecordId a, RecordId b) {
    return index.handle(a) != index.handle(b) ? index.handle(a) < index.handle(b) : a < b;
  };
  if (!std::is_sorted(m_sorted.begin(), m_sorted.end(), precedes)) std::sort(m_sorted.begin(), m_sorted.end(), precedes);
  for (std::size_t i = 1; i < m_sorted.size(); ++i) {
    if (index.handle(m_sorted[i]) == index.handle(m_sorted[i - 1])) onDuplicate(m_sorted[i - 1], m_sorted[i]);
  }
}

RecordId HandleTable::find(const RecordIndex& index, Handle handle) const {
  if (handle == 0 || handle > m_highest) return kNoRecord;
  if (!m_byHandle.empty()) return m_byHandle[handle] - 1;  // 0 - 1 is kNoRecord
  const auto found = std::lower_bound(m_sorted.begin(), m_sorted.end(), handle,
                                      [&](RecordId id, Handle wanted) { return index.handle(id) < wanted; });
  return found != m_sorted.end() && index.handle(*found) == handle ? *found : kNoRecord;
}

}  // namespace torva::dxf

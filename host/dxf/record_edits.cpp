#include "dxf/record_edits.h"

#include <algorithm>
#include <utility>

namespace torva::dxf {

void RecordEdits::setState(RecordId id, RecordState state) {
  if (isInserted(id)) {
    const RecordState* former = changed(id);
    m_erasedInserted -= former != nullptr && former->isErased ? 1 : 0;
    m_erasedInserted += state.isErased ? 1 : 0;
  }
  const bool isKept = state.bytes || state.isErased;
  if (isKept) {
    m_states.insert_or_assign(id, std::move(state));
    if (id >= m_hasState.size()) m_hasState.resize(id + 1);
  } else {
    m_states.erase(id);
  }
  if (id < m_hasState.size()) m_hasState[id] = isKept;
}

bool RecordEdits::isAnyChanged() const {
  // An inserted record that is erased has a state of its own, and leaves the drawing as it was.
  return hasInserted() || m_states.size() != m_erasedInserted;
}

Handle RecordEdits::highestInserted() const {
  Handle highest = 0;
  for (RecordId id = m_originalCount; id < recordCount(); ++id) {
    const RecordState* state = changed(id);
    if (state == nullptr || !state->isErased) highest = std::max(highest, inserted(id).handle);
  }
  return highest;
}

RecordId RecordEdits::insertAfter(RecordId previous, InsertedRecord record) {
  const RecordId id = recordCount();
  RecordId place = previous;
  for (auto last = m_lastBehind.find(place); last != m_lastBehind.end(); last = m_lastBehind.find(place))
    place = last->second;
  m_lastBehind[previous] = id;
  if (isInserted(place)) {
    InsertedRecord& before = m_inserted[place - m_originalCount];
    record.anchor = before.anchor;
    record.next = std::exchange(before.next, id);
  } else {
    record.anchor = place;
    m_firstBehind.emplace(place, id);
  }
  if (record.handle != 0) m_insertedByHandle.emplace(record.handle, id);
  m_inserted.push_back(std::move(record));
  return id;
}

RecordId RecordEdits::findInserted(Handle handle) const {
  const auto found = m_insertedByHandle.find(handle);
  return found == m_insertedByHandle.end() ? kNoRecord : found->second;
}

RecordId RecordEdits::firstBehind(RecordId original) const {
  const auto found = m_firstBehind.find(original);
  return found == m_firstBehind.end() ? kNoRecord : found->second;
}

RecordId RecordEdits::next(RecordId id) const {
  RecordId original = id;
  if (isInserted(id)) {
    if (inserted(id).next != kNoRecord) return inserted(id).next;
    original = inserted(id).anchor;
  } else if (!m_firstBehind.empty()) {
    if (const RecordId first = firstBehind(id); first != kNoRecord) return first;
  }
  return original + 1 < m_originalCount ? original + 1 : kNoRecord;
}

std::vector<RecordId> RecordEdits::touchedOriginals() const {
  std::vector<RecordId> touched;
  touched.reserve(m_states.size() + m_firstBehind.size());
  for (const auto& [id, state] : m_states) {
    if (!isInserted(id)) touched.push_back(id);
  }
  for (const auto& [id, first] : m_firstBehind) touched.push_back(id);
  std::sort(touched.begin(), touched.end());
  touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
  return touched;
}

}  // namespace torva::dxf

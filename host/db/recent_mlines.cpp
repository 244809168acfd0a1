#include "db/recent_mlines.h"

#include <algorithm>

namespace torva::db {

const MlineData& RecentMlines::data(dxf::RecordId record) {
  if (const Entry* entry = find(record)) return entry->source.data;
  Entry& entry = m_entries[m_oldest];
  m_oldest = (m_oldest + 1) % m_entries.size();
  entry = {m_file.isChanged(record) ? dxf::kNoRecord : record, readMlineSource(m_file, m_file.groups(record))};
  return entry.source.data;
}

MlineSource RecentMlines::source(dxf::RecordId record) const {
  const Entry* entry = find(record);
  return entry ? entry->source : readMlineSource(m_file, m_file.groups(record));
}

const RecentMlines::Entry* RecentMlines::find(dxf::RecordId record) const {
  const auto found = std::find_if(m_entries.begin(), m_entries.end(), [=](const Entry& e) { return e.record == record; });
  return found == m_entries.end() || m_file.isChanged(record) ? nullptr : found;
}

}  // namespace torva::db

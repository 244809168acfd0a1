#include "db/recent_mlines.h"

#include <algorithm>

namespace torva::db {

std::shared_ptr<MlineSource> RecentMlines::source(dxf::RecordId record) {
  // A record that was changed may change again and is read anew each time.
  const bool isKept = !m_file.isChanged(record);
  const auto found = std::ranges::find(m_entries, record, &Entry::record);
  if (isKept && found != m_entries.end()) return found->source;
  Entry& entry = m_entries[m_oldest];
  m_oldest = (m_oldest + 1) % m_entries.size();
  entry = {isKept ? record : dxf::kNoRecord, std::make_shared<MlineSource>(readMlineSource(m_file, m_file.bytes(record)))};
  return entry.source;
}

const MlineData* RecentMlines::known(dxf::RecordId record) const {
  const auto found = std::ranges::find(m_entries, record, &Entry::record);
  return found == m_entries.end() || m_file.isChanged(record) ? nullptr : &found->source->data;
}

}  // namespace torva::db

#include "db/recent_mlines.h"

#include <algorithm>

namespace torva::db {

std::shared_ptr<MlineSource> RecentMlines::source(dxf::RecordId record) {
  // A record that was changed may change again and is read anew each time.
  const bool isKept = !m_file.isChanged(record);
  const auto found = std::find_if(m_entries.begin(), m_entries.end(), [=](const Entry& e) { return e.record == record; });
  if (isKept && found != m_entries.end()) return found->source;
  Entry& entry = m_entries[m_oldest];
  m_oldest = (m_oldest + 1) % m_entries.size();
  entry = {isKept ? record : dxf::kNoRecord, std::make_shared<MlineSource>(readMlineSource(m_file, m_file.bytes(record)))};
  return entry.source;
}

}  // namespace torva::db

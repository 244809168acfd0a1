#pragma once

#include <array>

#include "db/mline_groups.h"

namespace torva::db {

/// Reads multilines and keeps the last few: what is picked is looked at more than once, and mostly opened next.
class RecentMlines {
 public:
  explicit RecentMlines(const dxf::DrawingFile& file) : m_file(file) {}

  /// What an MLINE record says. Valid until the next such call.
  const MlineData& data(dxf::RecordId record);
  /// The same, with what is found wrong, to be kept by the caller.
  MlineSource source(dxf::RecordId record) const;

 private:
  struct Entry {
    dxf::RecordId record = dxf::kNoRecord;
    MlineSource source;
  };

  /// Null for a record that is not at hand. One that was changed may change again and is never.
  const Entry* find(dxf::RecordId record) const;

  const dxf::DrawingFile& m_file;
  std::array<Entry, 8> m_entries;
  std::size_t m_oldest = 0;
};

}  // namespace torva::db

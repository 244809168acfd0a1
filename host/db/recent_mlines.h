#pragma once

#include <array>
#include <memory>

#include "db/mline_groups.h"

namespace torva::db {

/// Reads multilines and keeps the last few: what is picked is looked at more than once, and mostly opened next.
class RecentMlines {
 public:
  explicit RecentMlines(const dxf::DrawingFile& file) : m_file(file) {}

  /// What an MLINE record says, shared with all who ask for it: nobody changes it.
  std::shared_ptr<MlineSource> source(dxf::RecordId record);
  /// The same without reading: null for a record that is not among the last few.
  const MlineData* known(dxf::RecordId record) const;

 private:
  struct Entry {
    dxf::RecordId record = dxf::kNoRecord;
    std::shared_ptr<MlineSource> source;
  };

  const dxf::DrawingFile& m_file;
  std::array<Entry, 8> m_entries;
  std::size_t m_oldest = 0;
};

}  // namespace torva::db

#pragma once

#include <vector>

#include "dxf/record.h"

namespace torva::db {

class Database;

/// All multilines of a drawing in its order, in whatever block, erased ones left out, with what can be told of each from the
/// groups at its front. No other entity is looked into.
class MlineIndex {
 public:
  struct Entry {
    dxf::RecordId record;
    dxf::Handle styleHandle;  ///< 0 when it names none.
  };

  explicit MlineIndex(const Database& database);

  const std::vector<Entry>& all() const { return m_entries; }

 private:
  std::vector<Entry> m_entries;
};

}  // namespace torva::db

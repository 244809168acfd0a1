#pragma once

#include <span>

#include "db/database.h"

namespace torva::db {

/// Erases entities with their parts and with what is theirs alone: extension dictionaries and all that these own. Groups
/// lose them as members, and a group that has no other goes too. Other references stay: to readers they name nothing.
/// Requires: the records are entities; no object is open.
void eraseEntities(Database& database, std::span<const dxf::RecordId> entities);

}  // namespace torva::db

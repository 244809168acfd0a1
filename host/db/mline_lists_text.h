#pragma once

#include "dxf/text_cursor.h"

namespace torva::db {

/// Takes both lists of an element that nothing is cut out of, as most programs write them: its place on the miter and a
/// zero, and no fill. `takeOffset(cursor)` reads the place; false when that is no number. Any other lists are left.
template <class TakeOffset>
[[gnu::always_inline]] inline bool takeUncutLists(dxf::TextCursor& cursor, const TakeOffset& takeOffset) {
  dxf::TextCursor at = cursor;
  const bool isTaken = at.take(" 74\n2\n 41\n") && takeOffset(at) && at.take(" 41\n0.0\n 75\n0\n") && !at.isAt<42>();
  if (isTaken) cursor = at;
  return isTaken;
}

}  // namespace torva::db

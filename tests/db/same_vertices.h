#pragma once

#include "db/mline_data.h"

// In the namespace of the class, so that containers of vertices can be compared.
inline bool operator==(const KdMlineVertex& a, const KdMlineVertex& b) {
  return torva::db::isSame(a, b);
}

#pragma once

#include <string>

#include "base/export.h"

namespace torva::runtime {

/// Numbers of the host's own texts.
enum class HostText : unsigned {
  byLayer = 200,
  byBlock = 201,
  continuous = 202,
  firstColor = 210,  ///< Of color index 1; those of the indices up to 7 follow.
  selectColor = 220,
  selectColorTitle = 221,
  color = 222,
  trueColor = 223,
};

/// A text of the host's own resource library in the user's language; empty without the library.
TORVA_API std::wstring hostText(HostText text);
/// The name of a color index from 1 to 7; empty for others.
TORVA_API std::wstring hostColorName(int index);

}  // namespace torva::runtime

#pragma once

#include <optional>

#include <kdrx/ed.h>

/// Value of an integer system variable; nothing when it is unknown or no integer.
inline std::optional<int> integerVariable(const wchar_t* name) {
  KdResbuf value;
  if (kdedGetVar(name, &value) != kKdInputNormal) return std::nullopt;
  if (value.restype == kKdResultShort) return value.value.shortInteger;
  if (value.restype == kKdResultLong) return value.value.longInteger;
  return std::nullopt;
}

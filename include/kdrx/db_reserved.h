#pragma once

#include <string>

#include <kdrx/export.h>

/// Names that have a meaning of their own in every drawing.
enum class KdReservedName { byLayer, byBlock, continuous };

/// A reserved name as the user sees it, in his language; drawings always hold "ByLayer", "ByBlock" and "Continuous".
KDRX_API std::wstring kddbReservedString(KdReservedName name) noexcept;

#pragma once

#include <functional>

#include <kdrx/export.h>

/// Shows the dialog that it owns until the user closes it.
using StyleManager = std::function<void()>;

/// What libKdrxMLStyleDialogs.so offers the module, which looks it up by name and needs no Qt itself.
/// @param[out] manager takes its texts from the resource library that is current now
extern "C" KDRX_API void CreateStyleManager(StyleManager* manager);

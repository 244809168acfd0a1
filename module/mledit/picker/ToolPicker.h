#pragma once

#include <functional>

#include <kdrx/export.h>

/// Shows the dialog that it owns, and returns the number of the tool chosen there: 1 to 12; 0 and 13 stand for none.
using ToolPicker = std::function<int()>;

/// What libKdrxMLStyleDialogs.so offers the module, which looks it up by name and needs no Qt itself.
/// @param[out] picker takes its pictures from the resource library that is current now
extern "C" KDRX_API void CreateToolPicker(ToolPicker* picker);

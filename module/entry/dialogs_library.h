#pragma once

#include "mledit/picker/ToolPicker.h"

/// Makes the picker of editing tools, loading libKdrxMLStyleDialogs.so from the module's folder on first need; it stays
/// loaded. Requires: the host shows dialogs.
/// @return empty when the library, or what it needs, cannot be loaded
ToolPicker createToolPicker();

#pragma once

#include "mledit/picker/ToolPicker.h"
#include "mlstyle/manager/StyleManager.h"

// The dialogs of libKdrxMLStyleDialogs.so, which is loaded from the module's folder on first need and stays loaded.
// Requires: the host shows dialogs. Empty when the library, or what it needs, cannot be loaded.

/// Makes the picker of editing tools.
ToolPicker createToolPicker();
/// Makes the manager of multiline styles.
StyleManager createStyleManager();

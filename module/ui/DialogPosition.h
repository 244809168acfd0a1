#pragma once

#include <kdrx/ui.h>

// Where a dialog was when it was last left with OK: four integers of the profile's section "Settings", under a prefix of
// each dialog's own and "PosLeft", "PosTop", "PosRight", "PosBottom".

/// Moves the dialog there. Nothing happens unless all four are kept.
void RestorePosition(CWnd& dialog, const wchar_t* prefix);
/// Keeps where the dialog is now.
void KeepPosition(const CWnd& dialog, const wchar_t* prefix);

/// Gives a dialog the host's icon.
void ShowHostIcon(CDialog& dialog);

#pragma once

#include <kdrx/text.h>

/// The number of the editing tool that a keyword names, ignoring case, from 1 (CC) to 12 (WA); 0 for any other text.
int toolOfKeyword(const wchar_t* keyword);

/// Runs one editing tool until the user ends it. The engine lives for this one run.
/// @param tool 1 to 12; any other number makes and destroys the engine and does nothing else
/// @param resources library with the tool's prompts
void mlineEditOperation(int tool, KdModuleHandle resources);

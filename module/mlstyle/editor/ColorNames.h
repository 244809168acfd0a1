#pragma once

#include <kdrx/text.h>

// The names of color indices: "BYBLOCK" (0), "BYLAYER" (256), those of the colors 1 to 7 from the current resource library,
// the number for every other index.

void ColorToString(int index, CStdStr<wchar_t>& name);
/// The index of a name, ignoring case; for any other text the number that it begins with, or 0.
int StringToColor(const CStdStr<wchar_t>& name);

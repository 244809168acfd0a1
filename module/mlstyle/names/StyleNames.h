#pragma once

#include <string>

#include <kdrx/db_object.h>
#include <kdrx/ui.h>

/// Longest name that the dialogs take, in characters.
inline constexpr int kLongestStyleName = 31;

/// Whether a new style may have a name: letters and digits of any language, "$", "-" and "_". An empty name may.
bool IsNewStyleName(const std::wstring& name);
/// Whether a style may be given a name: letters and digits alone. That is narrower than for new styles, deliberately: a
/// style that has a hyphen cannot be given that name again.
bool IsRenamedStyleName(const std::wstring& name);

/// Which names of a dictionary are meant: all, or those alone whose style is there.
enum class EStyleNames { all, ofStyles };

/// Adds the names of a dictionary to a box, in the dictionary's order.
void AddStyleNames(CComboBox& box, KdDbObjectId dictionary, EStyleNames which);
/// Whether a dictionary has a name, ignoring case; also one whose style is missing.
bool HasStyleName(KdDbObjectId dictionary, const std::wstring& name);

#pragma once

#include <optional>
#include <string>
#include <vector>

#include <kdrx/db_database.h>

// Style library files: text files with multiline styles, one record each, of which several may have the same name; readers
// take the first. The default one is "Support/TORVA.mln" under the host's root folder. Nothing shows a message.

/// The names in a library file, in its order; nothing when it cannot be opened.
std::optional<std::vector<std::wstring>> listLibrary(const std::wstring& path);

/// Saves the style that the dictionary has under `name` into a library file, in the place of the first record of that name,
/// else at the end. The file is replaced at once, so that a failure loses nothing.
/// @return false when there is no such style, or the file cannot be read or written; nothing is changed then
bool saveToLibrary(const std::wstring& path, const std::wstring& name, KdDbObjectId dictionary);

/// Sees to it that the dictionary has a style under `name`: a new one has two elements by layer, at 0.5 and -0.5.
/// @return its id; null when the dictionary cannot be changed
KdDbObjectId addStyle(const std::wstring& name, KdDbObjectId dictionary);

/// Reads the first record of a name into a style of the drawing, which is closed again whatever the file holds.
/// @return false when the file or the style cannot be opened or there is no such record; the style is unchanged then
bool loadFromLibrary(const std::wstring& path, const std::wstring& name, KdDbObjectId style);

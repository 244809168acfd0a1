#pragma once

#include <string>
#include <vector>

#include <kdrx/db_database.h>
#include <kdrx/db_mline_style.h>

/// The names of all records in the content of a style library file, in their order, blanks around and carriage returns cut
/// off.
std::vector<std::wstring> styleNames(const std::string& content);

/// Reads the first record of a name (ignoring case and blanks around) into a style that is open for write. What the record
/// lacks stays as it is.
/// @return false when there is no such record; nothing is changed then
///
/// The format is our own and kept as it is: true colors do not survive, as of the number in a color line (420) the first
/// digit alone is read and its red and blue change places. A saved fill always has that line, behind the one of its index
/// (62), so that no fill keeps its color: each comes back as the raw value 0x30000, which is by layer. Elements are read by
/// the place of their lines, so that a record with fewer elements than it says takes those of later records, and one that
/// finds too few, or says 0, leaves the elements as SetNumElements() made them. A count beyond 1000 makes no more elements
/// than the file can hold.
bool readStyle(const std::string& content, const std::wstring& name, KdDbMlineStyle& style, KdDbDatabase* database);

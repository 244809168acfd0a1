#pragma once

#include <string>

#include "mlstyle/library/library_lines.h"

#include <kdrx/db_mline_style.h>

/// A style, open for read, as the lines of a record under a name.
///
/// The format is our own and kept as it is: the flag line (70) holds one of the style's flags, the first of fill, joints and
/// caps that is on; true colors of elements are written signed, that of the fill unsigned; the color-book line (430) of an
/// element holds the fill's name. An element whose linetype is none of the drawing has the name of it all the same: our
/// own decision, as a record without that line could not be read.
LibraryLines styleRecord(const KdDbMlineStyle& style, const std::wstring& name);

/// Puts a record into the text of a library: in the place of the first one of its name (ignoring case and blanks around),
/// else at the end. Requires: the record comes from styleRecord().
void putRecord(std::wstring& library, const LibraryLines& record);

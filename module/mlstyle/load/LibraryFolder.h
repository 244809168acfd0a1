#pragma once

#include <kdrx/text.h>

/// The folder of the style library files that come with the host, with "/" at its end.
CStdStr<wchar_t> LibraryFolder();

#pragma once

#include <vector>

#include <kdrx/export.h>
#include <kdrx/text.h>

// The application's profile: settings that are kept for the user from run to run, by section and key, compared exactly. What
// is written can be read at once. A host without a profile has an empty one and keeps nothing.

/// @return `otherwise` when there is no such entry, or it is no integer
KDRX_API int kdrxGetProfileInt(const wchar_t* section, const wchar_t* key, int otherwise) noexcept;
/// @return false for a section or key that is null or no name: empty, with a blank at an end, with '=', '[', ']' or a line's
///   end, or a key that begins with '#'
KDRX_API bool kdrxWriteProfileInt(const wchar_t* section, const wchar_t* key, int value) noexcept;

KDRX_API CStdStr<wchar_t> kdrxGetProfileString(const wchar_t* section, const wchar_t* key,
                                               const wchar_t* otherwise = L"") noexcept;
/// @return as of kdrxWriteProfileInt(); false also for a null text
KDRX_API bool kdrxWriteProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* text) noexcept;

/// @return empty when there is no such entry, or it was not written as a block
KDRX_API std::vector<unsigned char> kdrxGetProfileBinary(const wchar_t* section, const wchar_t* key) noexcept;
KDRX_API bool kdrxWriteProfileBinary(const wchar_t* section, const wchar_t* key,
                                     const std::vector<unsigned char>& block) noexcept;

#pragma once

#include <string>

#include <kdrx/export.h>

/// Handle of a loaded library or resource library; null is none.
using KdModuleHandle = struct KdModuleHandleTag*;

/// Copies the text `id` of a resource library into `buffer`, cut to `capacity` - 1 characters and terminated by 0.
/// @return the number of characters copied; 0 when there is no such text or library, and `buffer` is then empty
KDRX_API int LoadStringW(KdModuleHandle resources, unsigned id, wchar_t* buffer, int capacity) noexcept;

/// The handle through which the running module reads its texts and dialogs. See AfxSetResourceHandle() in rx.h.
KDRX_API KdModuleHandle AfxGetResourceHandle() noexcept;

/// UTF-8 to wide text and back. Bytes that are no UTF-8 become characters that come back as the same bytes.
KDRX_API std::wstring kdutWideFromUtf8(const std::string& text);
KDRX_API std::string kdutUtf8FromWide(const std::wstring& text);

/// What the text of a file is written in: a Windows code page by its number, or UTF-8.
inline constexpr int kKdUtf8 = 65001;

/// The text of a file that may be older than UTF-8: UTF-8 if all of it is, else in the code page of the working drawing if
/// all of it is, else in 1252, whose free bytes are control characters. So it holds nothing but characters.
/// @param[out] codePage what it is written in
KDRX_API std::wstring kddbWideFromFileText(const std::string& content, int& codePage);
/// The reverse. A text that the code page cannot hold, or that would not be read as one of that page, becomes UTF-8.
KDRX_API std::string kddbFileTextFromWide(const std::wstring& text, int codePage);

/// Whether two texts are equal ignoring case, as names in drawings are compared. Null equals null alone.
KDRX_API bool kdutEqualsIgnoringCase(const wchar_t* a, const wchar_t* b) noexcept;

/// The string class of the interface: a standard string that can load itself from a resource library.
template <class Char>
class CStdStr : public std::basic_string<Char> {
 public:
  using Base = std::basic_string<Char>;
  using Base::Base;
  CStdStr() = default;
  CStdStr(const Base& text) : Base(text) {}
  CStdStr(Base&& text) noexcept : Base(static_cast<Base&&>(text)) {}

  /// Replaces the content by the text `id` of `resources`, cut to 2048 characters.
  /// @return false when there is no such text; the string is then empty
  bool LoadStringW(KdModuleHandle resources, unsigned id) {
    Char buffer[2049];
    const int length = ::LoadStringW(resources, id, buffer, 2049);
    this->assign(buffer, static_cast<std::size_t>(length));
    return length > 0;
  }
};

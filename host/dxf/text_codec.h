#pragma once

#include <string>
#include <string_view>

#include "base/code_page.h"

namespace torva::dxf {

/// Texts of a drawing: its character set, and the escapes for what the set cannot hold (\U+XXXX, \M+nXXXX) and for control
/// characters (^I, ^J; a caret itself is written with a blank behind it).
class TextCodec {
 public:
  /// `page` null: UTF-8.
  explicit TextCodec(const CodePage* page) : m_page(page) {}

  /// Bytes that cannot be decoded become U+DC80..U+DCFF. An escape that stands for no character stays as it is.
  std::wstring decode(std::string_view value) const;
  /// Holds no line end and no zero byte. What the character set does not have is escaped, never replaced.
  std::string encode(std::wstring_view text) const;

 private:
  void encodeCharacter(wchar_t c, std::string& out) const;

  const CodePage* m_page;
};

}  // namespace torva::dxf

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace torva {

/// A character set of one or two bytes a character, as drawings before R2007 use them. ASCII characters stand for themselves
/// in all of them. Pages are made on first use and live as long as the program.
class CodePage {
 public:
  /// The page with a Windows number (874, 932, 936, 949, 950, 1250 to 1258, 1361); null when it is none of these.
  static const CodePage* find(int number);
  /// The page that a drawing's header names ("ANSI_1252", "ansi_936", "GB2312"), ignoring case; null for unknown names.
  static const CodePage* find(std::string_view name);

  int number() const { return m_number; }

  /// Wide text; a byte that is no part of a character becomes U+DC80..U+DCFF.
  std::wstring decode(std::string_view text) const;
  /// Whether all bytes of `text` are characters of this page.
  bool canDecode(std::string_view text) const;
  /// The bytes of a character; nothing when this page does not have it. U+DC80..U+DCFF are bytes again.
  std::optional<std::string> encode(wchar_t character) const;

 private:
  explicit CodePage(int number, const char* iconvName);
  struct Decoded {
    wchar_t character = 0;
    std::size_t length = 0;  // 0: no character begins here
  };
  Decoded decodeAt(std::string_view text, std::size_t at) const;

  int m_number;
  std::array<wchar_t, 128> m_single{};  // by byte - 80h; 0 where there is none
  std::vector<wchar_t> m_pairs;         // by (lead - 80h) * 256 + trail; empty for pages of single bytes
  std::unordered_map<wchar_t, std::uint16_t> m_codes;
};

}  // namespace torva

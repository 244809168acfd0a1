#include "dxf/text_codec.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "base/text.h"

namespace torva::dxf {
namespace {

constexpr std::wstring_view kUnicodeMark = L"\\U+";
constexpr std::wstring_view kMultibyteMark = L"\\M+";
constexpr wchar_t kFirstControlLetter = L'@';  // ^@ would be character 0, ^I a tab
constexpr wchar_t kLastControlLetter = L'_';

struct Unescaped {
  wchar_t character;
  std::size_t length;  // of the escape
};

std::optional<std::uint32_t> hexAt(std::wstring_view text, std::size_t at) {
  constexpr std::size_t kDigits = 4;
  if (at + kDigits > text.size()) return std::nullopt;
  std::uint32_t value = 0;
  for (const wchar_t c : text.substr(at, kDigits)) {
    const bool isDigit = c >= L'0' && c <= L'9';
    const bool isLetter = (c >= L'A' && c <= L'F') || (c >= L'a' && c <= L'f');
    if (!isDigit && !isLetter) return std::nullopt;
    value = value << 4 | static_cast<std::uint32_t>(isDigit ? c - L'0' : (c | 0x20) - L'a' + 10);
  }
  return value;
}

std::optional<std::uint32_t> unicodeAt(std::wstring_view text, std::size_t at) {
  return text.substr(at, kUnicodeMark.size()) == kUnicodeMark ? hexAt(text, at + kUnicodeMark.size()) : std::nullopt;
}

std::optional<Unescaped> unescapeUnicode(std::wstring_view text, std::size_t at) {
  constexpr std::size_t kLength = 7;
  const auto first = unicodeAt(text, at);
  if (!first || *first == 0) return std::nullopt;
  if (*first < 0xD800 || *first > 0xDFFF) return Unescaped{static_cast<wchar_t>(*first), kLength};
  const auto second = *first < 0xDC00 ? unicodeAt(text, at + kLength) : std::nullopt;
  if (!second || *second < 0xDC00 || *second > 0xDFFF) return std::nullopt;
  return Unescaped{static_cast<wchar_t>(0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00)), 2 * kLength};
}

std::optional<Unescaped> unescapeMultibyte(std::wstring_view text, std::size_t at) {
  constexpr int kPages[] = {932, 950, 949, 1361, 936};
  if (text.substr(at, kMultibyteMark.size()) != kMultibyteMark) return std::nullopt;
  const std::size_t digitAt = at + kMultibyteMark.size();
  if (digitAt >= text.size() || text[digitAt] < L'1' || text[digitAt] > L'5') return std::nullopt;
  const auto code = hexAt(text, digitAt + 1);
  if (!code || *code < 0x80) return std::nullopt;
  std::string bytes;
  if (*code > 0xFF) bytes += static_cast<char>(*code >> 8);
  bytes += static_cast<char>(*code & 0xFF);
  const std::wstring decoded = CodePage::find(kPages[text[digitAt] - L'1'])->decode(bytes);
  if (decoded.size() != 1 || rawByte(decoded[0])) return std::nullopt;
  return Unescaped{decoded[0], digitAt + 5 - at};
}

std::optional<Unescaped> unescapeCaret(std::wstring_view text, std::size_t at) {
  if (at + 1 >= text.size()) return std::nullopt;
  const wchar_t letter = text[at + 1];
  if (letter == L' ') return Unescaped{L'^', 2};
  if (letter <= kFirstControlLetter || letter > kLastControlLetter) return std::nullopt;
  return Unescaped{static_cast<wchar_t>(letter - kFirstControlLetter), 2};
}

std::optional<Unescaped> unescape(std::wstring_view text, std::size_t at) {
  if (text[at] == L'^') return unescapeCaret(text, at);
  if (text[at] != L'\\') return std::nullopt;
  const auto unicode = unescapeUnicode(text, at);
  return unicode ? unicode : unescapeMultibyte(text, at);
}

std::wstring unescaped(std::wstring_view text) {
  std::wstring result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto found = unescape(text, at);
    result += found ? found->character : text[at];
    at += found ? found->length : 1;
  }
  return result;
}

void appendEscape(std::string& out, std::uint32_t unit) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  out += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) out += kDigits[unit >> shift & 0xF];
}

void appendEscaped(std::string& out, wchar_t c) {
  constexpr wchar_t kNoCharacter = 0xFFFD;
  const bool isInRange = c >= 0 && c <= 0x10FFFF;
  const auto code = static_cast<char32_t>(isInRange ? c : kNoCharacter);
  if (code <= 0xFFFF) return appendEscape(out, code);
  appendEscape(out, 0xD800 + ((code - 0x10000) >> 10));
  appendEscape(out, 0xDC00 + ((code - 0x10000) & 0x3FF));
}

bool isUnescapedAscii(std::string_view value) {
  return std::all_of(value.begin(), value.end(), [](char c) { return c >= 0 && c != '\\' && c != '^'; });
}

}  // namespace

std::wstring TextCodec::decode(std::string_view value) const {
  if (isUnescapedAscii(value)) return std::wstring(value.begin(), value.end());
  // Escapes are looked for in characters, not bytes: a backslash byte can be the second half of a character.
  return unescaped(m_page == nullptr ? wideFromUtf8(value) : m_page->decode(value));
}

std::string TextCodec::encode(std::wstring_view text) const {
  std::string out;
  out.reserve(text.size());
  for (const wchar_t c : text) encodeCharacter(c, out);
  return out;
}

void TextCodec::encodeCharacter(wchar_t c, std::string& out) const {
  if (c == L'^') {
    out += "^ ";
  } else if (c >= 0 && c < L' ') {
    out += '^';
    out += static_cast<char>(c + kFirstControlLetter);
  } else if (c >= L' ' && c < 0x80) {
    out += static_cast<char>(c);
  } else if (const auto raw = rawByte(c)) {
    out += *raw;
  } else if (m_page != nullptr) {
    const auto bytes = m_page->encode(c);
    if (bytes) {
      out += *bytes;
    } else {
      appendEscaped(out, c);
    }
  } else {
    const bool isCharacter = (c >= 0 && c < 0xD800) || (c > 0xDFFF && c <= 0x10FFFF);
    if (isCharacter) {
      out += utf8FromWide({&c, 1});
    } else {
      appendEscaped(out, c);
    }
  }
}

}  // namespace torva::dxf

#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <locale.h>
#include <type_traits>
#include <wctype.h>

namespace torva {
namespace {

constexpr wchar_t kFirstRawByte = 0xDC00;  // U+DC80..U+DCFF stand for the bytes 80..FF that are no UTF-8.

bool isRawByte(wchar_t c) {
  return c >= kFirstRawByte + 0x80 && c <= kFirstRawByte + 0xFF;
}

struct Sequence {
  wchar_t character = 0;
  int length = 0;  // 0: no valid sequence begins here
};

bool isContinuation(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

Sequence sequenceAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(text[at + i])); };
  const std::uint32_t first = byte(0);
  if (first < 0x80) return {static_cast<wchar_t>(first), 1};
  if (first < 0xC2 || first > 0xF4 || !isContinuation(text, at + 1)) return {};
  if (first < 0xE0) return {static_cast<wchar_t>((first & 0x1F) << 6 | (byte(1) & 0x3F)), 2};
  if (!isContinuation(text, at + 2)) return {};
  if (first < 0xF0) {
    const std::uint32_t c = (first & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    const bool isValid = c >= 0x800 && (c < 0xD800 || c > 0xDFFF);
    return isValid ? Sequence{static_cast<wchar_t>(c), 3} : Sequence{};
  }
  if (!isContinuation(text, at + 3)) return {};
  const std::uint32_t c = (first & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
  return c >= 0x10000 && c <= 0x10FFFF ? Sequence{static_cast<wchar_t>(c), 4} : Sequence{};
}

void appendCharacter(std::string& out, std::uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

/// Not among what is called for every character.
[[gnu::noinline]] wchar_t upperCaseBeyondAscii(wchar_t c) {
  // The program's own locale must not decide which names are equal.
  static const locale_t kLocale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return kLocale == nullptr ? c : static_cast<wchar_t>(towupper_l(static_cast<wint_t>(c), kLocale));
}

wchar_t upperCase(wchar_t c) {
  if (c >= L'a' && c <= L'z') return static_cast<wchar_t>(c - L'a' + L'A');
  return c < 0x80 ? c : upperCaseBeyondAscii(c);
}

/// Looks at all characters whatever the first ones are, many at a time.
template <class Character>
bool isAscii(std::basic_string_view<Character> text) {
  std::make_unsigned_t<Character> all = 0;
  for (const Character c : text) all |= static_cast<std::make_unsigned_t<Character>>(c);
  return all < 0x80;
}

char asciiUpperCase(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool isUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const int length = sequenceAt(text, at).length;
    if (length == 0) return false;
    at += static_cast<std::size_t>(length);
  }
  return true;
}

std::wstring wideFromUtf8(std::string_view text) {
  if (isAscii(text)) return {text.begin(), text.end()};
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Sequence sequence = sequenceAt(text, at);
    wide += sequence.length != 0 ? sequence.character : rawByteCharacter(text[at]);
    at += static_cast<std::size_t>(std::max(sequence.length, 1));
  }
  return wide;
}

std::string utf8FromWide(std::wstring_view text) {
  std::string bytes;
  appendUtf8(bytes, text);
  return bytes;
}

void appendUtf8(std::string& bytes, std::wstring_view text) {
  const std::size_t former = bytes.size();
  if (isAscii(text)) {
    bytes.resize(former + text.size());
    std::ranges::transform(text, bytes.begin() + static_cast<std::ptrdiff_t>(former),
                           [](wchar_t c) { return static_cast<char>(c); });
    return;
  }
  bytes.reserve(former + text.size());
  for (const wchar_t c : text) {
    if (const auto raw = rawByte(c)) {
      bytes += *raw;
    } else {
      const bool isCharacter = (c >= 0 && c < 0xD800) || (c > 0xDFFF && c <= 0x10FFFF);
      appendCharacter(bytes, static_cast<std::uint32_t>(isCharacter ? c : L'\xFFFD'));
    }
  }
}

wchar_t rawByteCharacter(char byte) {
  return static_cast<wchar_t>(kFirstRawByte + static_cast<unsigned char>(byte));
}

std::optional<char> rawByte(wchar_t character) {
  if (!isRawByte(character)) return std::nullopt;
  return static_cast<char>(character - kFirstRawByte);
}

bool equalsIgnoringCase(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const bool mayDifferInCase = (a[i] ^ b[i]) == (L'a' ^ L'A') || (a[i] | b[i]) >= 0x80;
    if (a[i] != b[i] && !(mayDifferInCase && upperCase(a[i]) == upperCase(b[i]))) return false;
  }
  return true;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return asciiUpperCase(x) == asciiUpperCase(y); });
}

std::wstring upperCase(std::wstring_view text) {
  std::wstring upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](wchar_t c) { return upperCase(c); });
  return upper;
}

std::wstring trimmed(std::wstring_view text) {
  constexpr std::wstring_view kBlanks = L" \t\r\n\v\f";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::wstring_view::npos) return {};
  return std::wstring(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

}  // namespace torva

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/export.h"

namespace torva {

/// UTF-8 to wide text and back. Bytes that are no UTF-8 become U+DC80..U+DCFF and come back as the same bytes, so that
/// nothing is lost on the way.
TORVA_API std::wstring wideFromUtf8(std::string_view text);
TORVA_API std::string utf8FromWide(std::wstring_view text);
/// The same at the end of `bytes`.
void appendUtf8(std::string& bytes, std::wstring_view text);
/// Whether all of `text` is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// The character U+DC80..U+DCFF that stands for a byte (80..FF) which cannot be decoded.
wchar_t rawByteCharacter(char byte);
/// The byte that such a character stands for; nothing for all other characters.
std::optional<char> rawByte(wchar_t character);

/// Compares ignoring case, character by character; narrow texts ignore the case of ASCII letters alone.
bool equalsIgnoringCase(std::wstring_view a, std::wstring_view b);
bool equalsIgnoringCase(std::string_view a, std::string_view b);

/// Simple upper case, character by character; what names are compared in.
std::wstring upperCase(std::wstring_view text);
/// Without blanks, tabs and line ends at both ends.
std::wstring trimmed(std::wstring_view text);
/// The part of a line between the blanks and tabs at both ends.
inline std::string_view withoutBlanks(std::string_view line) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
  while (!line.empty() && isBlank(line.back())) line.remove_suffix(1);
  return line;
}

}  // namespace torva

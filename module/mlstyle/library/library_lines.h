#pragma once

#include <optional>
#include <string>
#include <vector>

// The text of a style library file as lines. A file is UTF-8; bytes that are none come back as they were.

using LibraryLines = std::vector<std::wstring>;

/// The content of a file; nothing when it cannot be read or is no regular file.
std::optional<std::string> readLibraryFile(const std::wstring& path);

/// The lines as they are rewritten: split at line feeds, carriage returns kept.
LibraryLines splitLines(const std::string& content);
/// The reverse: a line feed behind each line.
std::string joinLines(const LibraryLines& lines);

/// The lines as they are read, one after the other. A line longer than 2048 characters comes in pieces, each a line of its
/// own; a line of just that length is followed by an empty one. What stands behind a zero character is not seen.
class CLibraryReader {
 public:
  explicit CLibraryReader(const std::string& content);

  /// False at the end; `line` is unchanged then.
  bool next(std::wstring& line);
  /// The next line without its first character, the blank in front of a value.
  bool nextValue(std::wstring& value);
  /// Goes behind the next line that is equal to `text`. @return false when there is none
  bool skipTo(const wchar_t* text);
  /// How many elements of a style can be left at most.
  int mostElementsLeft() const;

 private:
  std::wstring m_text;
  std::size_t m_at = 0;
};

/// Whether a line is equal to a text, ignoring case.
bool isLine(const std::wstring& line, const wchar_t* text);

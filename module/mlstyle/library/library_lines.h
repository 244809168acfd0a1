#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <kdrx/text.h>

// The text of a style library file, and its lines.

using LibraryLines = std::vector<std::wstring>;

/// The text of a file, and how it is stored: mostly as UTF-8, in older files in a code page as a whole.
struct LibraryText {
  std::wstring text;
  bool hasMark = false;  ///< a byte order mark, which is not part of the text
  int codePage = kKdUtf8;
};

/// The content of a file; nothing when it cannot be read or is no regular file.
std::optional<std::string> readLibraryFile(const std::wstring& path);

LibraryText decodeLibrary(const std::string& content);
/// The reverse. What the code page cannot hold makes the file one of UTF-8.
std::string encodeLibrary(const LibraryText& library);

/// The lines as they are read, one after the other. A line longer than 2048 characters comes in pieces, each a line of its
/// own; a line of just that length is followed by an empty one. What stands behind a zero character is not seen.
class CLibraryReader {
 public:
  explicit CLibraryReader(std::wstring text) : m_text(std::move(text)) {}

  /// False at the end; `line` is unchanged then.
  bool next(std::wstring& line);
  /// The next line without its first character, the blank in front of a value.
  bool nextValue(std::wstring& value);
  /// Goes behind the next line that is equal to `text`. @return false when there is none
  bool skipTo(const wchar_t* text);
  /// Goes behind the name of the next record that has this one, ignoring case and blanks around.
  /// @return where the record begins in the text; nothing when there is none
  std::optional<std::size_t> skipToRecord(const std::wstring& name);
  /// Where the next line begins in the text.
  std::size_t position() const { return m_at; }
  /// How many elements of a style can be left at most.
  int mostElementsLeft() const;

 private:
  std::wstring m_text;
  std::size_t m_at = 0;
};

/// Whether a line is equal to a text, ignoring case.
bool isLine(const std::wstring& line, const wchar_t* text);
/// A line without the blanks around it, as names of records are taken.
std::wstring withoutBlanks(const std::wstring& line);

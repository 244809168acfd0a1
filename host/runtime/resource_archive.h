#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/result.h"
#include "runtime/folders.h"

namespace torva::runtime {

/// The content of a resource library: a zip archive with a table of texts for each language, "texts.LANGUAGE.txt", and
/// pictures, "pictures/NAME.png".
///
/// A table of texts is UTF-8, a text a line: its number, a tab, the text, in which \n, \t and \\ stand for a line end, a tab
/// and a backslash. Empty lines and lines that begin with '#' are passed over. English is the language that has every text;
/// what another one lacks is taken from it.
class ResourceArchive {
 public:
  /// @param languages wanted ones, best first ("de_AT", "de")
  /// @return fileNotFound (no regular file), fileNotReadable (no archive, or damaged); badText for a table that cannot be
  /// read (with its
  ///   line) and an archive without English texts
  static Result<std::shared_ptr<const ResourceArchive>> open(const std::string& path,
                                                             const std::vector<std::string>& languages);

  const std::string& path() const { return m_path; }
  /// The state of the file when it was read.
  const FileStamp& stamp() const { return m_stamp; }

  /// Null when there is none.
  const std::wstring* text(unsigned id) const;
  /// Bytes of the picture "pictures/NAME.png". @return fileNotFound, fileNotReadable
  Result<std::string> picture(const std::string& name) const;

 private:
  std::string m_path;
  FileStamp m_stamp;
  std::unordered_map<unsigned, std::wstring> m_texts;
};

/// The languages that the user's environment asks for, best first, English left out: LC_ALL, LC_MESSAGES or LANG, the first
/// that is set. "de_AT.UTF-8" gives "de_AT" and "de".
std::vector<std::string> userLanguages();

}  // namespace torva::runtime

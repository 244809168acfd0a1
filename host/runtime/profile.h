#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/export.h"
#include "base/result.h"

namespace torva::runtime {

/// What a user's programs remember from run to run: texts and integers by section and key, in the file "profile.ini" of the
/// profile folder. Sections and keys are compared exactly.
///
/// Nothing is written unless something was set to another value. What other running programs wrote meanwhile is kept, except
/// for the keys set here.
class TORVA_API Profile {
 public:
  /// @param folder read if it exists, made when something is to be kept; empty: nothing is ever read or kept
  explicit Profile(std::string folder);

  std::optional<std::wstring> text(const std::string& section, const std::string& key) const;
  /// Nothing also for a value that is no integer of 32 bits.
  std::optional<int> integer(const std::string& section, const std::string& key) const;

  /// @return invalidValue for a section or key that is empty or holds '=', '[', ']', a line end or a blank at an end, and
  /// for a
  ///   key that begins with '#'
  Result<void> setText(const std::string& section, const std::string& key, const std::wstring& value);
  Result<void> setInteger(const std::string& section, const std::string& key, int value);

  /// Reads anew what other running programs may have written; what was set here since the last save stays.
  void reload();

  /// Writes what was set since the last save; the file is replaced as a whole or not at all.
  /// @return fileNotWritable; what was set stays set and unsaved
  Result<void> save();

 private:
  using Key = std::pair<std::string, std::string>;  // section, key
  using Values = std::map<Key, std::string>;        // UTF-8
  static Values read(const std::string& path);

  std::string m_folder;
  Values m_values;
  Values m_changes;
};

}  // namespace torva::runtime

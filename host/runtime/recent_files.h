#pragma once

#include <string>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "runtime/profile.h"

namespace torva::runtime {

/// The drawings that a user opened or saved last, kept in the profile, section "RecentFiles".
class TORVA_API RecentFiles {
 public:
  static constexpr std::size_t kMost = 9;

  /// The profile must outlive it.
  explicit RecentFiles(Profile& profile) : m_profile(profile) {}

  /// Absolute paths, links followed, the latest first, none twice, at most kMost. They need not exist any more.
  std::vector<std::string> list() const;
  /// Puts a file first, and keeps that at once, with what other running programs put there. The empty path is none.
  /// @return fileNotWritable; the list has the file all the same, until the program ends
  Result<void> add(const std::string& path);

 private:
  Profile& m_profile;
};

}  // namespace torva::runtime

#include "runtime/recent_files.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/text.h"

namespace torva::runtime {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSection = "RecentFiles";

std::string keyOf(std::size_t place) {
  return "File" + std::to_string(place + 1);
}

std::string resolved(const std::string& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  const fs::path canonical = fs::weakly_canonical(absolute, error);
  return (error ? absolute.lexically_normal() : canonical).string();
}

}  // namespace

std::vector<std::string> RecentFiles::list() const {
  std::vector<std::string> files;
  for (std::size_t place = 0; place < kMost; ++place) {
    const std::string file = utf8FromWide(m_profile.text(kSection, keyOf(place)).value_or(L""));
    // Two programs that wrote at the same moment may both have put it there.
    const bool isNew = std::find(files.begin(), files.end(), file) == files.end();
    if (!file.empty() && isNew) files.push_back(file);
  }
  return files;
}

Result<void> RecentFiles::add(const std::string& path) {
  if (path.empty()) return {};
  m_profile.reload();
  std::vector<std::string> files = list();
  const std::string file = resolved(path);
  std::erase(files, file);
  files.insert(files.begin(), file);
  files.resize(kMost);
  for (std::size_t place = 0; place < kMost; ++place) {
    const bool isEmptyAlready = files[place].empty() && !m_profile.text(kSection, keyOf(place));
    if (isEmptyAlready) continue;
    if (auto set = m_profile.setText(kSection, keyOf(place), wideFromUtf8(files[place])); !set) return set;
  }
  return m_profile.save();
}

}  // namespace torva::runtime

#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>

/// A folder of a test's own, removed with its content at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "torva-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    m_path = std::filesystem::canonical(name);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(const std::string& name = {}) const { return name.empty() ? m_path.string() : (m_path / name).string(); }
  std::string write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories((m_path / name).parent_path());
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }
  std::string read(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(path(name), std::ios::binary).rdbuf();
    return content.str();
  }
  std::size_t fileCount() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_path)) count += entry.is_regular_file();
    return count;
  }

 private:
  std::filesystem::path m_path;
};

#include "runtime/folders.h"

#include <cstdlib>
#include <memory>

namespace torva::runtime {
namespace {

std::string resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? real.get() : std::string();
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// Our part of a folder that a variable names; else of one below the user's home. Empty when neither is known.
std::string userFolder(const char* variable, const char* belowHome) {
  // The base directory rules ask that a relative path be ignored.
  if (const std::string folder = environment(variable); folder.starts_with('/')) return folder + "/torva";
  if (const std::string home = environment("HOME"); home.starts_with('/')) return home + belowHome + "/torva";
  return {};
}

}  // namespace

Folders Folders::of(const std::string& programFolder) {
  const std::string program = programFolder.empty() ? folderOf(resolved("/proc/self/exe")) : resolved(programFolder);
  return {program, folderOf(program)};
}

std::string folderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

std::optional<std::string> regularFile(const std::string& path) {
  if (!FileStamp::of(path)) return std::nullopt;
  std::string real = resolved(path);
  if (real.empty()) return std::nullopt;
  return real;
}

std::optional<FileStamp> FileStamp::of(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileStamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

bool FileStamp::operator==(const FileStamp& other) const {
  return device == other.device && inode == other.inode && size == other.size && modified.tv_sec == other.modified.tv_sec &&
         modified.tv_nsec == other.modified.tv_nsec;
}

std::string defaultProfileFolder() {
  return userFolder("XDG_CONFIG_HOME", "/.config");
}

std::string defaultRecoveryFolder() {
  const std::string state = userFolder("XDG_STATE_HOME", "/.local/state");
  return state.empty() ? state : state + "/recovery";
}

}  // namespace torva::runtime

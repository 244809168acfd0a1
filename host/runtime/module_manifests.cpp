#include "runtime/module_manifests.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <dirent.h>
#include <memory>
#include <optional>
#include <string_view>

#include "base/text.h"
#include "runtime/folders.h"

namespace torva::runtime {
namespace {

constexpr std::string_view kManifestEnding = ".kdrx.commands";
/// Largest manifest that is read, in bytes.
constexpr std::size_t kLargestManifest = 64u << 10;

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Sorted, since the order of a folder is not the same on every machine.
std::vector<std::string> manifestsIn(const std::string& folder) {
  std::vector<std::string> paths;
  const std::unique_ptr<DIR, CloseFolder> entries(::opendir(folder.c_str()));
  if (!entries) return paths;
  while (const dirent* entry = ::readdir(entries.get())) {
    if (std::string_view(entry->d_name).ends_with(kManifestEnding)) paths.push_back(folder + '/' + entry->d_name);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string contentOf(const std::string& path) {
  if (!FileStamp::of(path)) return {};
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rbe"));
  if (!file) return {};
  std::string content(kLargestManifest, '\0');
  content.resize(std::fread(content.data(), 1, content.size(), file.get()));
  return content;
}

}  // namespace

std::map<std::wstring, std::string> readModuleManifests(const std::vector<std::string>& folders) {
  std::map<std::wstring, std::string> modules;
  for (const std::string& folder : folders) {
    for (const std::string& path : manifestsIn(folder)) {
      const std::string module = path.substr(0, path.rfind('.'));
      const std::string content = contentOf(path);
      for (std::string_view rest = content; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::wstring name = upperCase(trimmed(wideFromUtf8(rest.substr(0, end))));
        if (!name.empty() && name.front() != L'#') modules.emplace(name, module);
        rest.remove_prefix(std::min(end + 1, rest.size()));
      }
    }
  }
  return modules;
}

}  // namespace torva::runtime

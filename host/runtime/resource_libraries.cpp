#include "runtime/resource_libraries.h"

#include <algorithm>

namespace torva::runtime {

class ResourceLibraries::Library final : public KdModuleHandleTag {
 public:
  explicit Library(std::shared_ptr<const ResourceArchive> content) : archive(std::move(content)) {}
  const std::string& path() const override { return archive->path(); }

  // Shared by the handles of one file; the last one to close frees it.
  const std::shared_ptr<const ResourceArchive> archive;
};

ResourceLibraries::ResourceLibraries(Folders folders, std::vector<std::string> languages)
    : m_folders(std::move(folders)), m_support(m_folders.root + "/Support"), m_languages(std::move(languages)) {}

ResourceLibraries::~ResourceLibraries() = default;

KdModuleHandle ResourceLibraries::open(const std::string& name, const std::string& callerFolder) {
  const auto library = lookFor(name, callerFolder);
  if (!library) m_lastFailure = name + ": not found";
  return library.value_or(nullptr);
}

std::optional<KdModuleHandle> ResourceLibraries::lookFor(const std::string& name, const std::string& callerFolder) {
  if (name.empty()) return std::nullopt;
  if (name.front() == '/') return openAt(name);
  const std::string* const folders[] = {&callerFolder, &m_folders.program, &m_folders.root, &m_support};
  std::string path;
  for (const std::string* folder : folders) {
    if (folder->empty()) continue;
    path.assign(*folder).append(1, '/').append(name);
    if (const auto library = openAt(path)) return library;
  }
  return std::nullopt;
}

std::optional<KdModuleHandle> ResourceLibraries::openAt(const std::string& path) {
  auto archive = archiveOf(path);
  if (archive) {
    m_lastFailure.clear();
    m_open.push_back(std::make_unique<Library>(std::move(*archive)));
    return m_open.back().get();
  }
  if (archive.error().code == ErrorCode::fileNotFound) return std::nullopt;
  m_lastFailure = archive.error().message();
  return nullptr;
}

bool ResourceLibraries::close(KdModuleHandle library) {
  const auto found = std::find_if(m_open.begin(), m_open.end(), [=](const auto& open) { return open.get() == library; });
  if (found == m_open.end()) return false;
  if (m_current == library) m_current = nullptr;
  m_open.erase(found);
  return true;
}

const ResourceArchive* ResourceLibraries::archive(KdModuleHandle library) const {
  const Library* open = find(library);
  return open ? open->archive.get() : nullptr;
}

void ResourceLibraries::setCurrent(KdModuleHandle library) {
  m_current = find(library) ? library : nullptr;
}

Result<std::shared_ptr<const ResourceArchive>> ResourceLibraries::archiveOf(const std::string& path) const {
  const auto stamp = FileStamp::of(path);
  for (const auto& open : m_open) {
    if (stamp && open->archive->path() == path && open->archive->stamp() == *stamp) return open->archive;
  }
  return ResourceArchive::open(path, m_languages);
}

const ResourceLibraries::Library* ResourceLibraries::find(KdModuleHandle library) const {
  const auto found = std::find_if(m_open.begin(), m_open.end(), [=](const auto& open) { return open.get() == library; });
  return found == m_open.end() ? nullptr : found->get();
}

}  // namespace torva::runtime

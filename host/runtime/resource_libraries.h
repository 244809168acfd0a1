#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"
#include "runtime/folders.h"
#include "runtime/module_handle.h"
#include "runtime/resource_archive.h"

namespace torva::runtime {

/// The open resource libraries and the one that is the current source of texts.
///
/// Every opening gives a handle of its own. Handles of one unchanged file share its content, so that a command that opens
/// its library afresh pays for a look at the file and not for reading it again.
class ResourceLibraries {
 public:
  ResourceLibraries(Folders folders, std::vector<std::string> languages);
  ~ResourceLibraries();

  /// Opens a library by file name: an absolute path as it stands, else looked for in `callerFolder`, the program's folder,
  /// the root folder and its Support.
  /// @return null when it is missing or cannot be read
  KdModuleHandle open(const std::string& name, const std::string& callerFolder);
  /// False when `library` is no open library. The current source, if freed, becomes none.
  bool close(KdModuleHandle library);

  /// Why the last opening failed, a sentence with the file's name; empty when it did not, and when asked again.
  std::string takeFailure() { return std::exchange(m_lastFailure, {}); }

  /// Null for an unknown handle.
  const ResourceArchive* archive(KdModuleHandle library) const;

  KdModuleHandle current() const { return m_current; }
  /// An unknown handle counts as null: none.
  void setCurrent(KdModuleHandle library);

 private:
  class Library;
  /// Nothing when there is no such file, null when it cannot be read.
  std::optional<KdModuleHandle> lookFor(const std::string& name, const std::string& callerFolder);
  std::optional<KdModuleHandle> openAt(const std::string& path);
  Result<std::shared_ptr<const ResourceArchive>> archiveOf(const std::string& path) const;
  const Library* find(KdModuleHandle library) const;

  Folders m_folders;
  std::string m_support;
  std::vector<std::string> m_languages;
  std::vector<std::unique_ptr<Library>> m_open;
  KdModuleHandle m_current = nullptr;
  std::string m_lastFailure;
};

}  // namespace torva::runtime

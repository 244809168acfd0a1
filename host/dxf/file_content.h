#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "base/result.h"
#include "base/watch.h"
#include "dxf/file_identity.h"

namespace torva::dxf {

/// The bytes of a file, unchanged by whatever happens to the file on disk meanwhile.
///
/// The file is mapped under a read lease of the kernel: another program that opens it for writing or cuts it short waits
/// until we have copied it into memory, in a signal handler and at the same address. Where no lease can be had (the file
/// belongs to somebody else, lies on a network, or is open for writing) it is read into memory at once.
class FileContent {
 public:
  /// @return fileNotFound, isDirectory, fileNotReadable (also for what is no regular file), emptyFile, cancelled
  static Result<FileContent> open(const std::string& path, const Progress& progress = {});
  static FileContent fromBytes(std::string bytes);

  FileContent(FileContent&&) noexcept;
  FileContent& operator=(FileContent&&) noexcept;
  ~FileContent();

  /// The same bytes for another holder; they are given up with the last one.
  FileContent shared() const { return FileContent(m_imp); }

  /// The same place in memory as long as this object lives, also after it was moved.
  std::string_view bytes() const;
  /// The file as it was when opened; all zero for bytes from memory.
  const FileIdentity& identity() const;

 private:
  class Imp;
  explicit FileContent(std::shared_ptr<const Imp> imp);
  std::shared_ptr<const Imp> m_imp;  // what is being written of a drawing may outlive the drawing
};

}  // namespace torva::dxf

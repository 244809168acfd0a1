#include "dxf/file_writer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <signal.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace torva::dxf {
namespace {

namespace fs = std::filesystem;

/// Lets a write that meets a limit or a closed pipe fail instead of ending the program. Both signals go to the thread that
/// writes, so they are held back there alone, and others may write at the same time.
class WriteSignalsIgnored {
 public:
  WriteSignalsIgnored() {
    for (const int signal : {SIGXFSZ, SIGPIPE}) sigaddset(&m_held, signal);
    pthread_sigmask(SIG_BLOCK, &m_held, &m_former);
    sigset_t pending;
    sigpending(&pending);
    for (const int signal : {SIGXFSZ, SIGPIPE}) {
      // What was under way before is not ours to take.
      if (sigismember(&pending, signal) == 1) sigdelset(&m_held, signal);
    }
  }
  ~WriteSignalsIgnored() {
    const int error = errno;
    const timespec atOnce{};
    while (sigtimedwait(&m_held, nullptr, &atOnce) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &m_former, nullptr);
    errno = error;
  }
  WriteSignalsIgnored(const WriteSignalsIgnored&) = delete;
  WriteSignalsIgnored& operator=(const WriteSignalsIgnored&) = delete;

 private:
  sigset_t m_held{}, m_former{};
};

tl::unexpected<Error> writingError(const std::string& path, int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return fail(ErrorCode::diskFull, "no space is left to write the file", path);
    case EFBIG:
      return fail(ErrorCode::diskFull, "the file would be larger than one may be here", path);
    case EACCES:
    case EPERM:
    case EROFS:
      return fail(ErrorCode::fileNotWritable, "no permission to write here", path);
    case ENOENT:
    case ENOTDIR:
      return fail(ErrorCode::fileNotWritable, "there is no such folder", path);
    case EISDIR:
      return fail(ErrorCode::isDirectory, "this is a folder", path);
    default:
      return fail(ErrorCode::fileNotWritable, std::string("the file cannot be written: ") + std::strerror(error), path);
  }
}

/// 0, or the error number.
int writePieces(int descriptor, const std::vector<std::string_view>& pieces) {
  constexpr std::size_t kMostAtOnce = 1024;
  std::vector<iovec> left;
  left.reserve(pieces.size());
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) left.push_back({const_cast<char*>(piece.data()), piece.size()});
  }
  for (std::size_t first = 0; first < left.size();) {
    const auto count = static_cast<int>(std::min(kMostAtOnce, left.size() - first));
    const ssize_t written = writev(descriptor, &left[first], count);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    auto rest = static_cast<std::size_t>(written);
    while (first < left.size() && rest >= left[first].iov_len) rest -= left[first++].iov_len;
    if (rest == 0) continue;
    left[first].iov_base = static_cast<char*>(left[first].iov_base) + rest;
    left[first].iov_len -= rest;
  }
  return 0;
}

/// A file beside another one that is removed unless it takes that one's place.
class TemporaryFile {
 public:
  static Result<TemporaryFile> beside(const std::string& target) {
    constexpr int kTries = 1000;
    const std::string folder = fs::path(target).parent_path().string();
    const std::string stem = (folder.empty() ? "." : folder) + "/.torva-" + std::to_string(getpid()) + "-";
    for (int i = 0; i < kTries; ++i) {
      std::string path = stem + std::to_string(i) + ".tmp";
      const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (descriptor >= 0) return TemporaryFile(std::move(path), descriptor);
      if (errno != EEXIST) return writingError(target, errno);
    }
    return writingError(target, EEXIST);
  }

  TemporaryFile(TemporaryFile&& other) noexcept
      : m_path(std::exchange(other.m_path, {})), m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  TemporaryFile& operator=(TemporaryFile&&) = delete;
  ~TemporaryFile() {
    if (m_descriptor >= 0) close(m_descriptor);
    if (!m_path.empty()) unlink(m_path.c_str());
  }

  int descriptor() const { return m_descriptor; }

  /// 0, or the error number.
  int renameTo(const std::string& target) {
    if (rename(m_path.c_str(), target.c_str()) != 0) return errno;
    m_path.clear();
    return 0;
  }

 private:
  TemporaryFile(std::string path, int descriptor) : m_path(std::move(path)), m_descriptor(descriptor) {}
  std::string m_path;
  int m_descriptor;
};

void keepPermissions(int descriptor, const struct stat& former) {
  // A program that may not give the file away saves it as its own; chown clears mode bits, so it goes first.
  if (fchown(descriptor, former.st_uid, former.st_gid) != 0 &&
      fchown(descriptor, static_cast<uid_t>(-1), former.st_gid) != 0) {
    errno = 0;
  }
  fchmod(descriptor, former.st_mode & 07777);
}

void syncFolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);  // not all file systems can; the file itself is synced
  close(descriptor);
}

Result<void> makeBackup(const std::string& path) {
  const std::string backup = fs::path(path).replace_extension(".bak").string();
  const std::string linked = backup + "." + std::to_string(getpid()) + ".tmp";
  if (link(path.c_str(), linked.c_str()) == 0) {
    if (rename(linked.c_str(), backup.c_str()) == 0) return {};
    unlink(linked.c_str());
  }
  std::error_code error;
  fs::copy_file(path, backup, fs::copy_options::overwrite_existing, error);
  if (error) return fail(ErrorCode::fileNotWritable, "no backup can be kept: " + error.message(), backup);
  return {};
}

Result<FileIdentity> writeDirectly(const std::string& path, const std::vector<std::string_view>& pieces) {
  // A pipe that nobody reads must not keep us waiting.
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return writingError(path, errno);
  fcntl(descriptor, F_SETFL, 0);
  int error = writePieces(descriptor, pieces);
  const auto identity = identityOf(descriptor);
  if (close(descriptor) != 0 && error == 0) error = errno;
  if (error != 0) return writingError(path, error);
  return identity.value_or(FileIdentity{});
}

Result<FileIdentity> writeInPlace(const std::string& path, const std::vector<std::string_view>& pieces, off_t formerSize) {
  const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return writingError(path, errno);
  off_t size = 0;
  for (const std::string_view piece : pieces) size += static_cast<off_t>(piece.size());
  // What is overwritten cannot be had back, so room is made first.
  int error = size > formerSize ? posix_fallocate(descriptor, 0, size) : 0;
  if (error != 0) {
    size = formerSize;
  } else {
    error = writePieces(descriptor, pieces);
  }
  if ((ftruncate(descriptor, size) != 0 || fsync(descriptor) != 0) && error == 0) error = errno;
  const auto identity = identityOf(descriptor);
  if (close(descriptor) != 0 && error == 0) error = errno;
  if (error != 0) return writingError(path, error);
  return identity.value_or(FileIdentity{});
}

}  // namespace

std::string resolvedPath(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path resolved = path;
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(resolved, error)); ++i) {
    const fs::path target = fs::read_symlink(resolved, error);
    if (error) break;
    resolved = target.is_absolute() ? target : resolved.parent_path() / target;
  }
  const fs::path folder = fs::canonical(resolved.has_parent_path() ? resolved.parent_path() : fs::path("."), error);
  return error ? resolved.string() : (folder / resolved.filename()).string();
}

Result<FileIdentity> replaceFile(const std::string& path, const std::vector<std::string_view>& pieces, Backup backup,
                                 ClosedFolder closedFolder) {
  const WriteSignalsIgnored ignored;
  struct stat former {};
  const bool isThere = stat(path.c_str(), &former) == 0;
  if (isThere && S_ISDIR(former.st_mode)) return writingError(path, EISDIR);
  if (isThere && !S_ISREG(former.st_mode)) return writeDirectly(path, pieces);
  const std::string target = resolvedPath(path);
  // The rename would replace a write-protected file as well.
  if (isThere && access(target.c_str(), W_OK) != 0) return writingError(path, errno);

  auto file = TemporaryFile::beside(target);
  if (!file && isThere && closedFolder == ClosedFolder::writeInPlace) return writeInPlace(target, pieces, former.st_size);
  if (!file) return tl::unexpected(file.error());
  if (const int error = writePieces(file->descriptor(), pieces); error != 0) return writingError(path, error);
  if (isThere) keepPermissions(file->descriptor(), former);
  if (fsync(file->descriptor()) != 0) return writingError(path, errno);
  const auto identity = identityOf(file->descriptor());
  if (isThere && backup == Backup::keep) {
    if (const auto kept = makeBackup(target); !kept) return tl::unexpected(kept.error());
  }
  if (const int error = file->renameTo(target); error != 0) return writingError(path, error);
  syncFolderOf(target);
  return identity.value_or(FileIdentity{});
}

}  // namespace torva::dxf

#include "dxf/file_content.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "dxf/lease.h"

namespace torva::dxf {
namespace {

tl::unexpected<Error> openingError(const std::string& path, int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return fail(ErrorCode::fileNotFound, "there is no such file", path);
    case EACCES:
    case EPERM:
      return fail(ErrorCode::fileNotReadable, "no permission to read the file", path);
    case EISDIR:
      return fail(ErrorCode::isDirectory, "this is a folder, not a drawing", path);
    default:
      return fail(ErrorCode::fileNotReadable, std::string("the file cannot be read: ") + std::strerror(error), path);
  }
}

/// A descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) {}
  Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (m_number >= 0) close(m_number);
  }
  int get() const { return m_number; }

 private:
  int m_number;
};

Result<Descriptor> openRegular(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return openingError(path, errno);
  if (S_ISDIR(status.st_mode)) return openingError(path, EISDIR);
  // Opening a pipe could wait for ever, and a device may have no end.
  if (!S_ISREG(status.st_mode)) return fail(ErrorCode::fileNotReadable, "this is no regular file", path);
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (number < 0) return openingError(path, errno);
  return Descriptor(number);
}

/// Memory pages: a map of a file, or a copy of its content.
class Pages {
 public:
  Pages(void* address, std::size_t size) : m_address(address), m_size(size) {}
  Pages(Pages&& other) noexcept : m_address(std::exchange(other.m_address, MAP_FAILED)), m_size(other.m_size) {}
  Pages& operator=(Pages&&) = delete;
  ~Pages() {
    if (m_address != MAP_FAILED) munmap(m_address, m_size);
  }
  bool isValid() const { return m_address != MAP_FAILED; }
  char* data() const { return static_cast<char*>(m_address); }
  std::size_t size() const { return m_size; }

 private:
  void* m_address;
  std::size_t m_size;
};

/// The number of bytes read; fewer than asked for when the file has become shorter or they are not wanted any more.
std::optional<std::size_t> readAll(int descriptor, char* to, std::size_t size, const Progress& progress) {
  std::size_t done = 0;
  while (done < size && progress.goOn(static_cast<double>(done) / static_cast<double>(size))) {
    const ssize_t count = pread(descriptor, to + done, std::min(size - done, kWatchedStretch), static_cast<off_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

}  // namespace

class FileContent::Imp {
 public:
  static Result<std::unique_ptr<Imp>> open(const std::string& path, const Progress& progress);

  std::string m_string;
  FileIdentity m_identity;
  // In this order: a lease ends before its map, the map before its file.
  std::optional<Descriptor> m_descriptor;
  std::optional<Pages> m_pages;
  std::optional<Lease> m_lease;

 private:
  bool mapUnderLease();
  Result<void> readIntoMemory(const std::string& path, const Progress& progress);
};

Result<std::unique_ptr<FileContent::Imp>> FileContent::Imp::open(const std::string& path, const Progress& progress) {
  auto descriptor = openRegular(path);
  if (!descriptor) return tl::unexpected(descriptor.error());
  auto imp = std::make_unique<Imp>();
  imp->m_descriptor.emplace(std::move(*descriptor));
  if (imp->mapUnderLease()) return imp;
  if (const auto isRead = imp->readIntoMemory(path, progress); !isRead) return tl::unexpected(isRead.error());
  if (imp->m_identity.size == 0) return fail(ErrorCode::emptyFile, "the file is empty", path);
  return imp;
}

bool FileContent::Imp::mapUnderLease() {
  const int descriptor = m_descriptor->get();
  const auto before = identityOf(descriptor);
  if (!before || before->size == 0) return false;
  Pages pages(mmap(nullptr, before->size, PROT_READ, MAP_PRIVATE, descriptor, 0), before->size);
  if (!pages.isValid()) return false;
  auto lease = Lease::take(descriptor, pages.data(), pages.size());
  if (!lease || identityOf(descriptor) != before) return false;
  m_identity = *before;
  m_pages.emplace(std::move(pages));
  m_lease.emplace(std::move(*lease));
  return true;
}

Result<void> FileContent::Imp::readIntoMemory(const std::string& path, const Progress& progress) {
  constexpr int kTries = 3;
  for (int i = 0; i < kTries; ++i) {
    const auto before = identityOf(m_descriptor->get());
    if (!before) return openingError(path, errno);
    m_identity = *before;
    if (before->size == 0) return {};
    Pages pages(mmap(nullptr, before->size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0), before->size);
    if (!pages.isValid()) return openingError(path, errno);
    madvise(pages.data(), pages.size(), MADV_HUGEPAGE);
    const auto count = readAll(m_descriptor->get(), pages.data(), pages.size(), progress);
    if (!count) return openingError(path, errno);
    if (!progress.goOn(1)) return fail(ErrorCode::cancelled, "opening was cancelled", path);
    if (*count != pages.size() || identityOf(m_descriptor->get()) != before) continue;
    m_pages.emplace(std::move(pages));
    m_descriptor.reset();
    return {};
  }
  return fail(ErrorCode::fileNotReadable, "another program is writing the file", path);
}

Result<FileContent> FileContent::open(const std::string& path, const Progress& progress) {
  auto imp = Imp::open(path, progress);
  if (!imp) return tl::unexpected(imp.error());
  return FileContent(std::move(*imp));
}

FileContent FileContent::fromBytes(std::string bytes) {
  auto imp = std::make_unique<Imp>();
  imp->m_string = std::move(bytes);
  return FileContent(std::move(imp));
}

FileContent::FileContent(std::shared_ptr<const Imp> imp) : m_imp(std::move(imp)) {}
FileContent::FileContent(FileContent&&) noexcept = default;
FileContent& FileContent::operator=(FileContent&&) noexcept = default;
FileContent::~FileContent() = default;

std::string_view FileContent::bytes() const {
  return m_imp->m_pages ? std::string_view(m_imp->m_pages->data(), m_imp->m_pages->size()) : m_imp->m_string;
}

const FileIdentity& FileContent::identity() const {
  return m_imp->m_identity;
}

}  // namespace torva::dxf

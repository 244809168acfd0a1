#include "runtime/recovery.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <optional>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "dxf/file_writer.h"

namespace torva::runtime {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLockName = "/lock";
constexpr const char* kCopyName = "/drawing.dxf";
constexpr const char* kTextName = "/original.txt";

/// The path stands last, as it may hold anything, line ends too.
std::string textOf(const dxf::FileOrigin& original) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const dxf::FileIdentity& identity = original.identity;
  return fmt::format("kept {}\nfile {} {} {} {} {}\noriginal {}",
                     std::chrono::duration_cast<std::chrono::seconds>(now).count(), identity.device, identity.inode,
                     identity.size, identity.modifiedSeconds, identity.modifiedNanoseconds, original.path);
}

/// Leaves what it cannot read: a copy of something unknown is still a copy.
void readText(const std::string& path, LeftDrawing& left) {
  std::ifstream text(path, std::ios::binary);
  std::string name;
  std::int64_t keptAt = 0;
  dxf::FileIdentity identity;
  text >> name >> keptAt >> name >> identity.device >> identity.inode >> identity.size >> identity.modifiedSeconds >>
      identity.modifiedNanoseconds >> name;
  if (!text || name != "original") return;
  text.ignore(1);
  std::ostringstream original;
  original << text.rdbuf();
  left.keptAt = keptAt;
  left.original = {original.str(), identity};
}

std::string absolutePath(const std::string& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return error ? path : absolute.lexically_normal().string();
}

}  // namespace

/// A folder in the recovery folder, held locked.
class Recovery::Place {
 public:
  /// Nothing when it is no such folder or another program holds it.
  static std::optional<Place> lock(const std::string& folder, int flags) {
    const int descriptor = ::open((folder + kLockName).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, 0600);
    if (descriptor < 0) return std::nullopt;
    Place place(folder, descriptor);
    struct stat status {};
    // Who had the lock before may have removed the folder meanwhile.
    const bool isOurs = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::fstat(descriptor, &status) == 0;
    if (!isOurs || status.st_nlink == 0) return std::nullopt;
    return place;
  }

  Place(Place&& other) noexcept : m_folder(std::move(other.m_folder)), m_lock(std::exchange(other.m_lock, -1)) {}
  Place& operator=(Place&&) = delete;
  ~Place() {
    if (m_lock >= 0) ::close(m_lock);
  }

  std::string copy() const { return m_folder + kCopyName; }
  std::string text() const { return m_folder + kTextName; }
  bool hasCopy() const { return fs::is_regular_file(copy()) && fs::is_regular_file(text()); }

  void remove() const {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
  }

 private:
  Place(std::string folder, int descriptor) : m_folder(std::move(folder)), m_lock(descriptor) {}
  std::string m_folder;
  int m_lock;
};

Recovery::Recovery(std::string folder) : m_folder(std::move(folder)) {}

Recovery::~Recovery() {
  drop();
}

Result<void> Recovery::keep(db::Database& database) {
  if (m_writing.valid() && m_writing.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return {};
  auto finished = finish();
  if (m_folder.empty() || !database.openObjects().empty()) return finished;
  database.flush();
  if (!database.file().isModified()) {
    drop();
    return {};
  }
  const bool isKept = m_keptSerial == database.serial() && m_keptChanges == database.changeCount();
  if (isKept) return finished;
  if (auto found = findPlace(); !found) return found;

  dxf::FileOrigin original = database.file().origin();
  if (!original.path.empty()) original.path = absolutePath(original.path);
  // The text first: a copy without one would not be offered.
  if (auto written = dxf::replaceFile(m_place->text(), {textOf(original)}, dxf::Backup::none); !written) {
    return tl::unexpected(written.error());
  }
  m_keptSerial = database.serial();
  m_keptChanges = database.changeCount();
  m_writing =
      std::async(std::launch::async, [path = m_place->copy(), snapshot = database.file().snapshot()]() -> Result<void> {
        auto written = dxf::replaceFile(path, snapshot.pieces(), dxf::Backup::none);
        if (!written) return tl::unexpected(written.error());
        return {};
      });
  return finished;
}

Result<void> Recovery::finish() {
  if (!m_writing.valid()) return {};
  auto written = m_writing.get();
  if (!written) m_keptSerial = 0;
  return written;
}

void Recovery::drop() {
  // Whether the copy could be written does not matter any more.
  if (m_writing.valid()) m_writing.wait();
  m_writing = {};
  m_keptSerial = 0;
  if (!m_place) return;
  m_place->remove();
  m_place.reset();
}

Result<void> Recovery::findPlace() {
  constexpr int kTries = 1000;
  if (m_place) return {};
  std::error_code error;
  fs::create_directories(fs::path(m_folder).parent_path(), error);
  // What is drawn concerns nobody else.
  ::mkdir(m_folder.c_str(), 0700);
  for (int i = 0; i < kTries; ++i) {
    const std::string folder = fmt::format("{}/{}-{}", m_folder, ::getpid(), i);
    if (::mkdir(folder.c_str(), 0700) != 0) {
      if (errno == EEXIST) continue;
      error.assign(errno, std::generic_category());
      break;
    }
    auto place = Place::lock(folder, O_CREAT);
    if (!place) continue;
    m_place = std::make_unique<Place>(std::move(*place));
    return {};
  }
  return fail(ErrorCode::fileNotWritable, "unsaved changes cannot be kept for recovery: " + error.message(), m_folder);
}

std::vector<LeftDrawing> Recovery::list() const {
  std::vector<LeftDrawing> all;
  std::error_code error;
  for (fs::directory_iterator entry(m_folder, error), end; !error && entry != end; entry.increment(error)) {
    const auto place = Place::lock(entry->path().string(), 0);
    if (!place) continue;
    if (!place->hasCopy()) {
      place->remove();
      continue;
    }
    LeftDrawing left{entry->path().string(), place->copy()};
    readText(place->text(), left);
    all.push_back(std::move(left));
  }
  std::sort(all.begin(), all.end(), [](const LeftDrawing& a, const LeftDrawing& b) { return a.keptAt > b.keptAt; });
  return all;
}

Result<Recovery::Place> Recovery::claim(const LeftDrawing& left) {
  auto place = Place::lock(left.folder, 0);
  if (place && place->hasCopy()) return std::move(*place);
  return fail(ErrorCode::fileNotFound, "the unsaved drawing is gone or was taken by another program", left.copy);
}

Result<void> Recovery::take(const LeftDrawing& left) {
  auto place = claim(left);
  if (!place) return tl::unexpected(place.error());
  drop();
  m_place = std::make_unique<Place>(std::move(*place));
  return {};
}

Result<void> Recovery::discard(const LeftDrawing& left) {
  const auto place = claim(left);
  if (!place) return tl::unexpected(place.error());
  place->remove();
  return {};
}

}  // namespace torva::runtime

#include "runtime/profile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/numbers.h"
#include "base/text.h"
#include "runtime/folders.h"

namespace torva::runtime {
namespace {

/// Largest profile that is read, in bytes; what lies behind is not taken for a profile of ours.
constexpr std::size_t kLargestProfile = 4u << 20;

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
  ~FileDescriptor() {
    if (m_descriptor >= 0) ::close(m_descriptor);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return m_descriptor; }
  bool isOpen() const { return m_descriptor >= 0; }

 private:
  int m_descriptor;
};

std::string fileOf(const std::string& folder) {
  return folder + "/profile.ini";
}

std::string contentOf(const std::string& path) {
  std::string content;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.isOpen()) return content;
  std::array<char, 4096> chunk;
  for (ssize_t length; (length = ::read(file.get(), chunk.data(), chunk.size())) > 0;) {
    if (content.size() + static_cast<std::size_t>(length) > kLargestProfile) return {};
    content.append(chunk.data(), static_cast<std::size_t>(length));
  }
  return content;
}

bool isName(const std::string& name) {
  return !name.empty() && name.find_first_of("=[]\r\n") == std::string::npos && name.front() != ' ' && name.back() != ' ' &&
         name.front() != '\t' && name.back() != '\t' && name.front() != '#';
}

std::string escaped(const std::string& value) {
  std::string result;
  for (const char c : value) {
    if (c == '\\')
      result += "\\\\";
    else if (c == '\n')
      result += "\\n";
    else if (c == '\r')
      result += "\\r";
    else
      result += c;
  }
  return result;
}

std::string unescaped(std::string_view value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      result += value[i];
      continue;
    }
    const char mark = value[++i];
    result += mark == 'n' ? '\n' : mark == 'r' ? '\r' : mark;
  }
  return result;
}

Result<void> makeFolder(const std::string& folder) {
  for (std::size_t slash = folder.find('/', 1); slash != std::string::npos; slash = folder.find('/', slash + 1)) {
    ::mkdir(folder.substr(0, slash).c_str(), 0777);
  }
  if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return {};
  return fail(ErrorCode::fileNotWritable, std::string("the profile folder cannot be made: ") + std::strerror(errno), folder);
}

bool writeWhole(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t length = ::write(file, content.data(), content.size());
    if (length < 0 && errno == EINTR) continue;
    if (length <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(length));
  }
  return ::fsync(file) == 0;
}

Result<void> replaceFile(const std::string& path, const std::string& content) {
  std::string name = path + ".XXXXXX";
  const FileDescriptor file(::mkostemp(name.data(), O_CLOEXEC));
  const bool isWritten = file.isOpen() && writeWhole(file.get(), content) && ::rename(name.c_str(), path.c_str()) == 0;
  if (isWritten) return {};
  const int cause = errno;
  if (file.isOpen()) ::unlink(name.c_str());
  return fail(ErrorCode::fileNotWritable, std::string("the profile cannot be written: ") + std::strerror(cause), path);
}

}  // namespace

Profile::Profile(std::string folder) : m_folder(std::move(folder)) {
  reload();
}

void Profile::reload() {
  if (m_folder.empty()) return;
  m_values = read(fileOf(m_folder));
  for (const auto& [key, value] : m_changes) m_values.insert_or_assign(key, value);
}

std::optional<std::wstring> Profile::text(const std::string& section, const std::string& key) const {
  const auto found = m_values.find({section, key});
  if (found == m_values.end()) return std::nullopt;
  return wideFromUtf8(found->second);
}

std::optional<int> Profile::integer(const std::string& section, const std::string& key) const {
  const auto found = m_values.find({section, key});
  if (found == m_values.end()) return std::nullopt;
  const auto value = parseInteger(found->second);
  if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(*value);
}

Result<void> Profile::setText(const std::string& section, const std::string& key, const std::wstring& value) {
  if (!isName(section) || !isName(key))
    return fail(ErrorCode::invalidValue, "is no name for a profile entry: " + section + "/" + key);
  std::string bytes = utf8FromWide(value);
  const auto [entry, isNew] = m_values.try_emplace({section, key});
  if (!isNew && entry->second == bytes) return {};
  entry->second = bytes;
  m_changes.insert_or_assign({section, key}, std::move(bytes));
  return {};
}

Result<void> Profile::setInteger(const std::string& section, const std::string& key, int value) {
  return setText(section, key, std::to_wstring(value));
}

Result<void> Profile::save() {
  if (m_changes.empty() || m_folder.empty()) return {};
  if (auto made = makeFolder(m_folder); !made) return made;

  // Locking the folder keeps two programs that end together from losing each other's values, without a lock file.
  const FileDescriptor folder(::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.isOpen()) ::flock(folder.get(), LOCK_EX);
  Values values = read(fileOf(m_folder));
  for (const auto& [key, value] : m_changes) values.insert_or_assign(key, value);

  std::string content;
  const std::string* section = nullptr;
  for (const auto& [key, value] : values) {
    if (!section || *section != key.first) content += (section ? "\n[" : "[") + key.first + "]\n";
    section = &key.first;
    content += key.second + '=' + escaped(value) + '\n';
  }
  if (auto replaced = replaceFile(fileOf(m_folder), content); !replaced) return replaced;
  m_changes.clear();
  return {};
}

Profile::Values Profile::read(const std::string& path) {
  Values values;
  std::string section;
  const std::string content = contentOf(path);
  for (std::string_view rest = content; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.starts_with('[') && line.ends_with(']')) section = line.substr(1, line.size() - 2);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.starts_with('#')) continue;
    const std::string key(line.substr(0, equals));
    if (isName(section) && isName(key)) values.insert_or_assign({section, key}, unescaped(line.substr(equals + 1)));
  }
  return values;
}

}  // namespace torva::runtime

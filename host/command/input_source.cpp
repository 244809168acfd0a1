#include "command/input_source.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "base/text.h"

namespace torva::command {

namespace {

constexpr std::size_t kReadSize = std::size_t{64} << 10;

void dropByteOrderMark(std::string& line) {
  if (line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
}

}  // namespace

InputSource::~InputSource() = default;

ScriptSource::ScriptSource(int file, std::string text, std::string name)
    : m_file(file), m_buffer(std::move(text)), m_name(std::move(name)) {}

ScriptSource::~ScriptSource() {
  if (m_file > STDERR_FILENO) ::close(m_file);
}

Result<std::unique_ptr<ScriptSource>> ScriptSource::open(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (file < 0) {
    const ErrorCode code = errno == ENOENT ? ErrorCode::fileNotFound : ErrorCode::fileNotReadable;
    return fail(code, std::string("cannot read the script: ") + std::strerror(errno), path);
  }
  std::unique_ptr<ScriptSource> source(new ScriptSource(file, {}, path));
  struct stat status {};
  if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
    return fail(ErrorCode::isDirectory, "cannot read the script: it is a directory", path);
  }
  return source;
}

std::unique_ptr<ScriptSource> ScriptSource::fromText(std::string text, std::string name) {
  return std::unique_ptr<ScriptSource>(new ScriptSource(-1, std::move(text), std::move(name)));
}

std::unique_ptr<ScriptSource> ScriptSource::standardInput() {
  return std::unique_ptr<ScriptSource>(new ScriptSource(STDIN_FILENO, {}, "standard input"));
}

InputSource::Line ScriptSource::next(const Question&) {
  std::string line;
  const Read result = readLine(line);
  if (result == Read::end) return {Kind::end, {}, m_lineNumber};
  ++m_lineNumber;
  if (result == Read::error) return {Kind::failure, wideFromUtf8(std::strerror(errno)), m_lineNumber};
  if (result == Read::tooLong) return {Kind::failure, L"the line is too long", m_lineNumber};
  if (m_lineNumber == 1) dropByteOrderMark(line);
  if (line.ends_with('\r')) line.pop_back();
  return {Kind::line, wideFromUtf8(line), m_lineNumber};
}

ScriptSource::Read ScriptSource::readLine(std::string& line) {
  std::size_t searched = m_position;
  for (;;) {
    const std::size_t end = m_buffer.find('\n', searched);
    if (end != std::string::npos) {
      line.assign(m_buffer, m_position, end - m_position);
      m_position = end + 1;
      return Read::line;
    }
    if (m_buffer.size() - m_position > kLongestLine) return Read::tooLong;
    m_buffer.erase(0, std::exchange(m_position, 0));
    searched = m_buffer.size();
    const Read more = readMore();
    if (more == Read::error) return more;
    if (more == Read::end) break;
  }
  if (m_buffer.empty()) return Read::end;
  line = std::exchange(m_buffer, {});
  return Read::line;
}

/// Appends what the file gives next to the buffer.
ScriptSource::Read ScriptSource::readMore() {
  if (m_file < 0) return Read::end;
  const std::size_t size = m_buffer.size();
  m_buffer.resize(size + kReadSize);
  ssize_t count = 0;
  do count = ::read(m_file, m_buffer.data() + size, kReadSize);
  while (count < 0 && errno == EINTR);
  m_buffer.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  if (count < 0) return Read::error;
  return count == 0 ? Read::end : Read::line;
}

}  // namespace torva::command

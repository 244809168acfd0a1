#include "mlstyle/library/library_lines.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace {

constexpr std::size_t kLongestLine = 2048;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr wchar_t kBlanks[] = L" \t";

}  // namespace

std::optional<std::string> readLibraryFile(const std::wstring& path) {
  const std::string name = kdutUtf8FromWide(path);
  std::error_code ignored;
  // Opening a pipe would wait for its other end.
  if (!std::filesystem::is_regular_file(name, ignored)) return std::nullopt;
  std::ifstream file(name, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) return std::nullopt;
  return content;
}

LibraryText decodeLibrary(const std::string& content) {
  LibraryText library;
  library.hasMark = content.starts_with(kByteOrderMark);
  library.text = kddbWideFromFileText(library.hasMark ? content.substr(kByteOrderMark.size()) : content, library.codePage);
  return library;
}

std::string encodeLibrary(const LibraryText& library) {
  const std::string content = kddbFileTextFromWide(library.text, library.codePage);
  return library.hasMark ? std::string(kByteOrderMark) + content : content;
}

bool CLibraryReader::next(std::wstring& line) {
  if (m_at == m_text.size()) return false;
  const std::wstring_view rest = std::wstring_view(m_text).substr(m_at, kLongestLine);
  const std::size_t end = rest.find(L'\n');
  line = rest.substr(0, end);
  m_at += end == rest.npos ? rest.size() : end + 1;
  line.resize(std::min(line.find(L'\0'), line.size()));
  return true;
}

bool CLibraryReader::nextValue(std::wstring& value) {
  if (!next(value)) return false;
  if (!value.empty()) value.erase(0, 1);
  return true;
}

bool CLibraryReader::skipTo(const wchar_t* text) {
  for (std::wstring line; next(line);) {
    if (isLine(line, text)) return true;
  }
  return false;
}

std::optional<std::size_t> CLibraryReader::skipToRecord(const std::wstring& name) {
  const std::wstring wanted = withoutBlanks(name.substr(0, kLongestLine));
  // Each line may be the first of a record, also one that stands where a name was looked for.
  std::wstring first, second, third;
  std::size_t begins[] = {0, 0, m_at};
  while (next(third)) {
    if (isLine(first, L"MLSTYLE") && isLine(second, L"2") && isLine(withoutBlanks(third), wanted.c_str())) return begins[0];
    first = std::exchange(second, std::move(third));
    std::shift_left(std::begin(begins), std::end(begins), 1);
    begins[2] = m_at;
  }
  return std::nullopt;
}

int CLibraryReader::mostElementsLeft() const {
  constexpr std::size_t kShortestElement = 7;  // "49" and five empty lines, the last without its end
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::min((m_text.size() - m_at) / kShortestElement, kMost));
}

bool isLine(const std::wstring& line, const wchar_t* text) {
  return kdutEqualsIgnoringCase(line.c_str(), text);
}

std::wstring withoutBlanks(const std::wstring& line) {
  const std::size_t first = std::min(line.find_first_not_of(kBlanks), line.size());
  return line.substr(first, line.find_last_not_of(kBlanks) + 1 - first);
}

#include "mlstyle/library/library_lines.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include <kdrx/text.h>

namespace {

constexpr std::size_t kLongestLine = 2048;
constexpr wchar_t kByteOrderMark = 0xFEFF;

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

LibraryLines splitLines(const std::string& content) {
  LibraryLines lines;
  for (std::size_t begin = 0; begin < content.size();) {
    const std::size_t end = std::min(content.find('\n', begin), content.size());
    lines.push_back(kdutWideFromUtf8(content.substr(begin, end - begin)));
    begin = end + 1;
  }
  return lines;
}

std::string joinLines(const LibraryLines& lines) {
  std::string content;
  for (const std::wstring& line : lines) content += kdutUtf8FromWide(line) + '\n';
  return content;
}

CLibraryReader::CLibraryReader(const std::string& content) : m_text(kdutWideFromUtf8(content)) {
  if (m_text.starts_with(kByteOrderMark)) m_text.erase(0, 1);
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

int CLibraryReader::mostElementsLeft() const {
  constexpr std::size_t kShortestElement = 7;  // "49" and five empty lines, the last without its end
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::min((m_text.size() - m_at) / kShortestElement, kMost));
}

bool isLine(const std::wstring& line, const wchar_t* text) {
  return kdutEqualsIgnoringCase(line.c_str(), text);
}

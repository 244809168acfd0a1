#include "runtime/resource_archive.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <minizip/unzip.h>

#include "base/text.h"

namespace torva::runtime {
namespace {

/// Largest file in an archive that is read, in bytes; a damaged or hostile archive must not take the memory.
constexpr std::size_t kLargestEntry = 16u << 20;

class Zip {
 public:
  explicit Zip(const std::string& path) : m_file(unzOpen64(path.c_str())) {}
  ~Zip() {
    if (m_file) unzClose(m_file);
  }
  Zip(const Zip&) = delete;
  Zip& operator=(const Zip&) = delete;

  bool isOpen() const { return m_file != nullptr; }
  bool has(const std::string& name) { return unzLocateFile(m_file, name.c_str(), kCaseSensitive) == UNZ_OK; }
  Result<std::string> read(const std::string& name);

 private:
  static constexpr int kCaseSensitive = 1;
  Result<std::string> readOpened(const std::string& name);

  unzFile m_file;
};

Result<std::string> Zip::read(const std::string& name) {
  if (!has(name)) return fail(ErrorCode::fileNotFound, "the archive has no " + name);
  if (unzOpenCurrentFile(m_file) != UNZ_OK) return fail(ErrorCode::fileNotReadable, name + " cannot be unpacked");
  auto content = readOpened(name);
  const bool isWhole = unzCloseCurrentFile(m_file) == UNZ_OK;
  if (content && !isWhole) return fail(ErrorCode::fileNotReadable, name + " is damaged");
  return content;
}

Result<std::string> Zip::readOpened(const std::string& name) {
  std::string content;
  std::array<char, 16384> chunk;
  while (true) {
    const int length = unzReadCurrentFile(m_file, chunk.data(), chunk.size());
    if (length < 0) return fail(ErrorCode::fileNotReadable, name + " cannot be unpacked");
    if (length == 0) return content;
    if (content.size() + static_cast<std::size_t>(length) > kLargestEntry)
      return fail(ErrorCode::fileNotReadable, name + " is too large");
    content.append(chunk.data(), static_cast<std::size_t>(length));
  }
}

std::string unescaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      result += text[i];
      continue;
    }
    const char mark = text[++i];
    result += mark == 'n' ? '\n' : mark == 't' ? '\t' : mark;
  }
  return result;
}

using Texts = std::unordered_map<unsigned, std::wstring>;

bool addLine(std::string_view line, Texts& texts) {
  unsigned id = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), id);
  if (error != std::errc() || end == line.data() + line.size() || *end != '\t') return false;
  texts.insert_or_assign(id, wideFromUtf8(unescaped(line.substr(static_cast<std::size_t>(end - line.data()) + 1))));
  return true;
}

Result<void> addTable(std::string_view table, const std::string& name, Texts& texts) {
  for (std::size_t number = 1; !table.empty(); ++number) {
    const std::size_t end = std::min(table.find('\n'), table.size());
    std::string_view line = table.substr(0, end);
    table.remove_prefix(std::min(end + 1, table.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) continue;
    if (!addLine(line, texts)) return fail(ErrorCode::badText, "expected a number, a tab and a text", name, number);
  }
  return {};
}

/// English first, then the languages from the least wanted to the best, each over the one before.
std::vector<std::string> tableNames(const std::vector<std::string>& languages) {
  std::vector<std::string> names = {"texts.en.txt"};
  for (auto language = languages.rbegin(); language != languages.rend(); ++language) {
    names.push_back("texts." + *language + ".txt");
  }
  return names;
}

}  // namespace

Result<std::shared_ptr<const ResourceArchive>> ResourceArchive::open(const std::string& path,
                                                                     const std::vector<std::string>& languages) {
  const auto stamp = FileStamp::of(path);
  if (!stamp) return fail(ErrorCode::fileNotFound, "no such file", path);
  Zip zip(path);
  if (!zip.isOpen()) return fail(ErrorCode::fileNotReadable, "is no resource library", path);

  auto archive = std::make_shared<ResourceArchive>();
  archive->m_path = path;
  archive->m_stamp = *stamp;
  for (const std::string& name : tableNames(languages)) {
    const bool isRequired = name == "texts.en.txt";
    if (!isRequired && !zip.has(name)) continue;
    const auto table = zip.read(name);
    if (!table) return fail(isRequired ? ErrorCode::badText : table.error().code, table.error().text, path);
    if (auto added = addTable(*table, path + '(' + name + ')', archive->m_texts); !added) {
      return tl::unexpected(added.error());
    }
  }
  return archive;
}

const std::wstring* ResourceArchive::text(unsigned id) const {
  const auto found = m_texts.find(id);
  return found == m_texts.end() ? nullptr : &found->second;
}

Result<std::string> ResourceArchive::picture(const std::string& name) const {
  Zip zip(m_path);
  if (!zip.isOpen()) return fail(ErrorCode::fileNotReadable, "is no resource library", m_path);
  return zip.read("pictures/" + name + ".png");
}

std::vector<std::string> userLanguages() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value) continue;
    const std::string_view locale = std::string_view(value).substr(0, std::string_view(value).find_first_of(".@"));
    // The name becomes part of a file's name in the archive, so nothing but a language's own characters is taken.
    if (locale.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_") != std::string_view::npos)
      return {};
    const std::string language(locale.substr(0, locale.find('_')));
    if (language == "en" || language == "C" || language == "POSIX") return {};
    if (language == locale) return {language};
    return {std::string(locale), language};
  }
  return {};
}

}  // namespace torva::runtime

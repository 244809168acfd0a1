// Lists and loads what it is given as a style library file, into a drawing, saves what was loaded into it, and holds the
// outcome against what must hold for any input.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "base/current.h"
#include "base/text.h"
#include "db/database.h"
#include "mlstyle/OpenedObject.h"
#include "mlstyle/library/record_reader.h"
#include "mlstyle/library/record_writer.h"
#include "mlstyle/library/style_library.h"

namespace {

void require(bool isTrue, const char* rule) {
  if (isTrue) return;
  std::fprintf(stderr, "broken rule: %s\n", rule);
  std::abort();
}

/// A file that is in memory alone.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& content) : m_descriptor(memfd_create("library", MFD_CLOEXEC)) {
    require(write(m_descriptor, content.data(), content.size()) == static_cast<ssize_t>(content.size()), "there is memory");
  }
  ~MemoryFile() { close(m_descriptor); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(m_descriptor); }

 private:
  int m_descriptor;
};

bool isListed(const std::string& content, const std::wstring& name) {
  const std::vector<std::wstring> names = styleNames(content);
  return std::ranges::find(names, name) != names.end();
}

void save(const std::string& content, const KdDbMlineStyle& style) {
  LibraryText library = decodeLibrary(content);
  putRecord(library.text, styleRecord(style, L"SAVED"));
  const std::wstring once = library.text;
  require(isListed(encodeLibrary(library), L"SAVED"), "a saved style is listed");
  putRecord(library.text, styleRecord(style, L"SAVED"));
  require(library.text == once, "a style saved again takes its own place");
}

void loadAndSave(const std::string& content, const std::wstring& name, torva::db::Database& drawing) {
  const auto dictionary = drawing.findInDictionary(std::array<std::wstring_view, 1>{L"ACAD_MLINESTYLE"});
  const KdDbObjectId id = addStyle(name, drawing.idOf(dictionary));
  if (id.isNull()) return require(name.empty(), "a style is made for every name");
  const auto elements = [id] { return COpenedObject<KdDbMlineStyle>(id, KdOpenMode::forRead)->numElements(); };
  const int former = elements();
  const bool isFound = loadFromLibrary(MemoryFile(content).path(), name, id);
  require(isFound || elements() == former, "without a record nothing is changed");
  require(elements() <= 1000 + static_cast<int>(content.size()), "a count in a file asks for no memory");
  save(content, *COpenedObject<KdDbMlineStyle>(id, KdOpenMode::forRead).Get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  // One for each input: erased records stay in a drawing, so that a common one would make each input slower than the last.
  const auto drawing = torva::db::Database::create();
  const std::string empty = drawing->file().toBytes();
  const torva::Current<torva::db::Database> current(*drawing);
  constexpr std::size_t kMostNames = 8;
  std::vector<std::wstring> names = styleNames(content);
  names.resize(std::min(names.size(), kMostNames));
  names.push_back(L"STANDARD");
  drawing->beginUndoStep(L"load");
  for (const std::wstring& name : names) loadAndSave(content, name, *drawing);
  require(drawing->openObjects().empty(), "nothing is left open");
  drawing->endUndoStep();
  require(torva::isUtf8(drawing->file().toBytes()), "what is no text gets into no drawing");
  drawing->undo();
  require(drawing->file().toBytes() == empty, "a drawing is as it was when the loading is taken back");
  return 0;
}

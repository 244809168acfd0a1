// Lists and loads what it is given as a style library file, saves what was loaded into it, and holds the outcome against
// what must hold for any input.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/current.h"
#include "db/database.h"
#include "mlstyle/library/record_reader.h"
#include "mlstyle/library/record_writer.h"

#include <kdrx/text.h>

namespace {

void require(bool isTrue, const char* rule) {
  if (isTrue) return;
  std::fprintf(stderr, "broken rule: %s\n", rule);
  std::abort();
}

bool isListed(const std::string& content, const std::wstring& name) {
  const std::vector<std::wstring> names = styleNames(content);
  return std::ranges::find(names, name) != names.end();
}

void loadAndSave(const std::string& content, const std::wstring& name, KdDbDatabase& drawing) {
  KdDbMlineStyle style;
  style.initMlineStyle();
  const bool isFound = readStyle(content, name, style, &drawing);
  require(isFound || style.numElements() == 0, "without a record nothing is changed");
  require(style.numElements() <= 1000 + static_cast<int>(content.size()), "a count in a file asks for no memory");

  const LibraryLines record = styleRecord(style, L"SAVED");
  LibraryLines library = splitLines(content);
  putRecord(library, record, L"SAVED");
  const std::string saved = joinLines(library);
  require(isListed(saved, L"SAVED"), "a saved style is listed");
  putRecord(library, record, L"saved");
  require(joinLines(library) == saved, "a style saved again takes its own place");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  static const auto drawing = torva::db::Database::create();
  const torva::Current<torva::db::Database> current(*drawing);
  constexpr std::size_t kMostNames = 8;
  std::vector<std::wstring> names = styleNames(content);
  names.resize(std::min(names.size(), kMostNames));
  names.push_back(L"STANDARD");
  for (const std::wstring& name : names) loadAndSave(content, name, *drawing);
  require(drawing->openObjects().empty(), "nothing is left open");
  return 0;
}

#include "command/commands/layer_names.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "base/wildcard.h"
#include "command/editor.h"
#include "command/session.h"
#include "db/layers.h"

namespace torva::command {

std::vector<std::wstring> namesInList(const std::wstring& list) {
  std::vector<std::wstring> names;
  for (std::size_t begin = 0; begin <= list.size();) {
    const std::size_t end = std::min(list.find(L',', begin), list.size());
    std::wstring name = trimmed(list.substr(begin, end - begin));
    if (!name.empty()) names.push_back(std::move(name));
    begin = end + 1;
  }
  return names;
}

std::vector<dxf::RecordId> layersInList(Editor& editor, const std::wstring& list) {
  const std::vector<dxf::RecordId> all = editor.database().symbols(dxf::RecordType::layer);
  const auto fits = [&](const std::wstring& pattern) {
    return
        [&](dxf::RecordId record) { return matchesWildcard(db::readLayer(editor.database().file(), record).name, pattern); };
  };
  const std::vector<std::wstring> patterns = namesInList(list);
  for (const std::wstring& pattern : patterns) {
    if (std::ranges::any_of(all, fits(pattern))) continue;
    editor.report({ErrorCode::unknownName, utf8FromWide(L"there is no layer " + inQuotes(pattern))}, Fault::script);
  }
  std::vector<dxf::RecordId> found;
  std::ranges::copy_if(all, std::back_inserter(found), [&](dxf::RecordId record) {
    return std::ranges::any_of(patterns, [&](const std::wstring& pattern) { return fits(pattern)(record); });
  });
  return found;
}

}  // namespace torva::command

#include "mlstyle/library/style_library.h"

#include <filesystem>
#include <memory>

#include "mlaccess/mlstyle_access.h"
#include "mlstyle/OpenedObject.h"
#include "mlstyle/library/library_lines.h"
#include "mlstyle/library/record_reader.h"
#include "mlstyle/library/record_writer.h"

#include <kdrx/text.h>

namespace {

std::unique_ptr<KdDbMlineStyle> makeDefaultStyle(const std::wstring& name) {
  constexpr int kElements = 2;
  const wchar_t* const linetypes[kElements] = {L"BYLAYER", L"BYLAYER"};
  const double offsets[kElements] = {0.5, -0.5};
  int indices[kElements] = {256, 256};
  auto style = std::make_unique<KdDbMlineStyle>();
  style->initMlineStyle();
  style->setName(name);
  style->setDescription(L"");
  SetNumElements(style.get(), kElements);
  SetElemLtype(style.get(), linetypes, kElements, kddbWorkingDatabase());
  SetElemOffset(style.get(), offsets, kElements);
  SetElemColor(style.get(), indices, kElements);
  return style;
}

}  // namespace

std::optional<std::vector<std::wstring>> listLibrary(const std::wstring& path) {
  const auto content = readLibraryFile(path);
  if (!content) return std::nullopt;
  return styleNames(*content);
}

bool saveToLibrary(const std::wstring& path, const std::wstring& name, KdDbObjectId dictionary) {
  const COpenedObject<KdDbDictionary> styles(dictionary, KdOpenMode::forRead);
  KdDbObjectId id;
  if (!styles || styles->getAt(name, id) != KdStatus::ok) return false;
  const COpenedObject<KdDbMlineStyle> style(id, KdOpenMode::forRead);
  if (!style) return false;
  const std::string file = kdutUtf8FromWide(path);
  std::error_code ignored;
  const auto former = std::filesystem::exists(file, ignored) ? readLibraryFile(path) : std::string();
  if (!former) return false;
  LibraryText library = decodeLibrary(*former);
  putRecord(library.text, styleRecord(*style.Get(), name));
  const std::string content = encodeLibrary(library);
  return kdutReplaceFile(file.c_str(), content.data(), content.size()) == kKdInputNormal;
}

KdDbObjectId addStyle(const std::wstring& name, KdDbObjectId dictionary) {
  KdDbObjectId id;
  const COpenedObject<KdDbDictionary> styles(dictionary, KdOpenMode::forWrite);
  if (!styles || styles->getAt(name, id) == KdStatus::ok) return id;
  std::unique_ptr<KdDbMlineStyle> style = makeDefaultStyle(name);
  if (styles->setAt(name, style.get(), id) == KdStatus::ok) style.release()->close();
  return id;
}

bool loadFromLibrary(const std::wstring& path, const std::wstring& name, KdDbObjectId style) {
  const auto content = readLibraryFile(path);
  if (!content) return false;
  const COpenedObject<KdDbMlineStyle> opened(style, KdOpenMode::forWrite);
  return opened && readStyle(*content, name, *opened.Get(), kddbWorkingDatabase());
}

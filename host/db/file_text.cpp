#include "base/code_page.h"
#include "base/current.h"
#include "base/text.h"
#include "db/database.h"

#include <kdrx/text.h>

namespace {

using torva::CodePage;

constexpr int kWestern = 1252;

/// Control characters that 1252 leaves out, which its free bytes are read as.
bool isOuterControl(wchar_t c) {
  return c >= 0x80 && c < 0xA0;
}

const CodePage* pageOfDrawing() {
  const auto* drawing = torva::Current<torva::db::Database>::get();
  if (!drawing) return nullptr;
  for (const torva::dxf::Group& group : drawing->file().headerVariable("$DWGCODEPAGE")) {
    if (group.code == 3) return CodePage::find(torva::withoutBlanks(group.value));
  }
  return nullptr;
}

}  // namespace

std::wstring kddbWideFromFileText(const std::string& content, int& codePage) {
  codePage = kKdUtf8;
  if (torva::isUtf8(content)) return torva::wideFromUtf8(content);
  const CodePage* page = pageOfDrawing();
  if (!page || !page->canDecode(content)) page = CodePage::find(kWestern);
  codePage = page->number();
  std::wstring text = page->decode(content);
  for (wchar_t& c : text) {
    if (const auto byte = torva::rawByte(c)) c = static_cast<unsigned char>(*byte);
  }
  return text;
}

std::string kddbFileTextFromWide(const std::wstring& text, int codePage) {
  const CodePage* page = CodePage::find(codePage);
  if (!page) return torva::utf8FromWide(text);
  std::string content;
  for (const wchar_t c : text) {
    auto bytes = page->encode(c);
    if (!bytes && codePage == kWestern && isOuterControl(c)) bytes = std::string(1, static_cast<char>(c));
    if (!bytes) return torva::utf8FromWide(text);
    content += *bytes;
  }
  // What is UTF-8 by chance would be read as that.
  return torva::isUtf8(content) ? torva::utf8FromWide(text) : content;
}

#include "mlstyle/library/record_writer.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>

#include "mlaccess/mlstyle_access.h"
#include "mlstyle/OpenedObject.h"
#include "mlstyle/VariableSetting.h"

#include <kdrx/db_tables.h>
#include <kdrx/ut.h>

namespace {

constexpr int kAngleDigits = 14, kOffsetDigits = 14;
constexpr wchar_t kNoCharacter = 0xFFFD;
constexpr std::size_t kLongestKey = 2048;

bool hasBookKey(const KdCmColor& color) {
  return !color.dictionaryKey().empty() && color.dictionaryKey().size() <= kLongestKey;
}

// One flag, not all that are on.
int firstFlag(const KdDbMlineStyle& style) {
  if (style.filled()) return kStyleFilled;
  if (style.showMiters()) return kStyleShowMiters;
  if (style.startSquareCap()) return kStyleStartSquareCap;
  if (style.startInnerArcs()) return kStyleStartInnerArcs;
  if (style.startRoundCap()) return kStyleStartRoundCap;
  if (style.endSquareCap()) return kStyleEndSquareCap;
  if (style.endInnerArcs()) return kStyleEndInnerArcs;
  return style.endRoundCap() ? kStyleEndRoundCap : 0;
}

std::wstring angleText(double angleRad) {
  const CVariableSetting allZeros(L"DIMZIN", 0);
  wchar_t text[64] = L"";
  return kddbAngToS(angleRad, kKdDegrees, kAngleDigits, text, 64) == kKdInputNormal ? text : L"0";
}

// Without regard to the program's locale, which may have a decimal comma.
std::wstring offsetText(double offset) {
  char text[400];
  const auto [end, error] = std::to_chars(text, std::end(text), offset, std::chars_format::fixed, kOffsetDigits);
  return std::wstring(text, end);
}

bool isNoCharacter(wchar_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

class CRecordBuilder {
 public:
  void mark(const wchar_t* line) { m_lines.push_back(line); }
  void pair(const wchar_t* code, std::wstring value) {
    // A line feed would end the line, and a byte that is no character would make the file none of UTF-8.
    std::ranges::replace(value, L'\n', L' ');
    std::ranges::replace_if(value, isNoCharacter, kNoCharacter);
    m_lines.push_back(code);
    m_lines.push_back(L' ' + value);
  }
  LibraryLines take() { return std::move(m_lines); }

 private:
  LibraryLines m_lines;
};

// Never nothing: elements are read by the place of their lines, so one line too few would take the next record's elements
// for this one's.
std::wstring linetypeName(const KdDbMlineStyle& style, int index, KdDbObjectId linetype) {
  const COpenedObject<KdDbLinetypeTableRecord> opened(linetype, KdOpenMode::forRead);
  if (opened) return opened->name();
  std::wstring name;
  style.getLinetypeNameAt(index, name);
  return name.empty() ? L"ByLayer" : name;
}

void addElement(CRecordBuilder& record, const KdDbMlineStyle& style, int index) {
  double offset = 0;
  KdCmColor color;
  KdDbObjectId linetype;
  style.getElementAt(index, offset, color, linetype);
  record.pair(L"49", offsetText(offset));
  record.pair(L"62", std::to_wstring(color.colorIndex()));
  if (color.isTrueColor()) record.pair(L"420", std::to_wstring(static_cast<std::int32_t>(color.color())));
  const KdCmColor& fill = style.fillColor();
  if (!color.colorName().empty() && hasBookKey(fill)) record.pair(L"430", fill.dictionaryKey());
  record.pair(L"6", linetypeName(style, index, linetype));
}

}  // namespace

LibraryLines styleRecord(const KdDbMlineStyle& style, const std::wstring& name) {
  CRecordBuilder record;
  record.mark(L"MLSTYLE");
  record.pair(L"2", name);
  record.pair(L"70", std::to_wstring(firstFlag(style)));
  record.pair(L"3", style.description());
  const KdCmColor& fill = style.fillColor();
  record.pair(L"62", std::to_wstring(fill.colorIndex()));
  record.pair(L"420", std::to_wstring(fill.color()));
  if (hasBookKey(fill)) record.pair(L"430", fill.dictionaryKey());
  record.pair(L"51", angleText(style.startAngle()));
  record.pair(L"52", angleText(style.endAngle()));
  record.pair(L"71", std::to_wstring(style.numElements()));
  for (int i = 0; i < style.numElements(); ++i) addElement(record, style, i);
  record.mark(L"0");
  return record.take();
}

void putRecord(std::wstring& library, const LibraryLines& record) {
  constexpr std::size_t kName = 2;
  std::wstring text;
  for (const std::wstring& line : record) text += line + L'\n';
  if (!library.empty() && library.back() != L'\n') library += L'\n';
  CLibraryReader reader(library);
  const auto former = reader.skipToRecord(record[kName]);
  if (!former) {
    library += text;
    return;
  }
  reader.skipTo(L"0");
  library.replace(*former, reader.position() - *former, text);
}

#include "mlstyle/library/record_reader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>

#include "mlaccess/mlstyle_access.h"
#include "mlstyle/library/library_lines.h"

#include <kdrx/ut.h>

namespace {

constexpr wchar_t kSpaces[] = L" \t\n\v\f\r";

// The number at the front of a text, blanks and a plus sign passed over; 0 when there is none.
template <class Number>
Number leadingNumber(const std::wstring& text) {
  const std::size_t first = std::min(text.find_first_not_of(kSpaces), text.size());
  std::string digits;
  for (const wchar_t c : text.substr(first)) digits += c > 0 && c < 0x80 ? static_cast<char>(c) : '\0';
  if (digits.starts_with('+')) digits.erase(0, 1);
  Number number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

int integerOf(const std::wstring& text) {
  constexpr std::int64_t kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(leadingNumber<std::int64_t>(text), kLeast, kMost));
}

// Our own decision: of a color's number the first digit counts, with red and blue exchanged.
unsigned colorOf(const std::wstring& text) {
  const bool isDigit = !text.empty() && text[0] >= L'0' && text[0] <= L'9';
  const unsigned rgb = isDigit ? static_cast<unsigned>(text[0] - L'0') : 0;
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | (rgb >> 16 & 0xFF);
}

// The elements of a record, one entry each.
struct ElementArrays {
  std::vector<double> offsets;
  std::vector<int> indices;
  std::vector<unsigned> rgbs;
  std::vector<std::wstring> names, linetypes;

  // Reads one element's lines by their places. @return false at the end of the file
  bool read(CLibraryReader& reader) {
    std::wstring value, line;
    if (!reader.skipTo(L"49") || !reader.nextValue(value)) return false;
    offsets.push_back(leadingNumber<double>(value));
    if (!reader.next(line) || !reader.nextValue(value) || !reader.next(line)) return false;
    indices.push_back(integerOf(value));
    rgbs.push_back(kNoRgb);
    names.emplace_back();
    if (line == L"420") {
      if (!reader.nextValue(value) || !reader.next(line)) return false;
      rgbs.back() = colorOf(value);
    }
    if (line == L"430") {
      // With the blank in front, which stays part of the name.
      if (!reader.next(names.back()) || !reader.next(line)) return false;
    }
    if (!reader.nextValue(value)) return false;
    linetypes.push_back(value);
    return true;
  }
};

std::vector<const wchar_t*> pointersTo(const std::vector<std::wstring>& texts) {
  std::vector<const wchar_t*> pointers;
  for (const std::wstring& text : texts) pointers.push_back(text.c_str());
  return pointers;
}

// @return false at the end of the file
bool readElements(CLibraryReader& reader, int count, KdDbMlineStyle& style, KdDbDatabase* database) {
  constexpr int kAlwaysMade = 1000;
  SetNumElements(&style, std::min(count, std::max(kAlwaysMade, reader.mostElementsLeft())));
  ElementArrays elements;
  // A count of 0 is never reached: all elements to the end of the file are passed over.
  do {
    if (!elements.read(reader)) return false;
  } while (static_cast<int>(elements.offsets.size()) != count);
  SetElemLtype(&style, pointersTo(elements.linetypes).data(), count, database);
  SetElemOffset(&style, elements.offsets.data(), count);
  SetElemColor(&style, elements.indices.data(), count);
  SetElemRgb(&style, elements.rgbs.data(), count);
  SetElemName(&style, pointersTo(elements.names).data(), count);
  return true;
}

void setAngle(KdDbMlineStyle& style, KdStatus (KdDbMlineStyle::*set)(double), const std::wstring& value) {
  double angleRad = 0;
  if (kddbAngToF(value.c_str(), kKdDegrees, &angleRad) == kKdInputNormal) (style.*set)(angleRad);
}

bool isStyleCode(const std::wstring& code) {
  constexpr std::wstring_view kCodes[] = {L"3", L"70", L"62", L"420", L"430", L"51", L"52"};
  return std::ranges::find(kCodes, code) != std::end(kCodes);
}

void setStyleValue(KdDbMlineStyle& style, KdCmColor& fill, const std::wstring& code, const std::wstring& value) {
  if (code == L"3") {
    style.setDescription(value);
  } else if (code == L"70") {
    SetFlag(&style, integerOf(value));
  } else if (code == L"51") {
    setAngle(style, &KdDbMlineStyle::setStartAngle, value);
  } else if (code == L"52") {
    setAngle(style, &KdDbMlineStyle::setEndAngle, value);
  } else {
    if (code == L"62") fill.setColorIndex(integerOf(value));
    if (code == L"420") fill.setColor(colorOf(value));
    if (code == L"430") fill.setNamesFromDictionaryKey(value);
    style.setFillColor(fill);
  }
}

}  // namespace

std::vector<std::wstring> styleNames(const std::string& content) {
  std::vector<std::wstring> names;
  CLibraryReader reader(decodeLibrary(content).text);
  std::wstring line;
  const auto next = [&] {
    if (!reader.next(line)) return false;
    line.resize(std::min(line.find(L'\r'), line.size()));
    return true;
  };
  while (next()) {
    if (line != L"2" || !next()) continue;
    names.push_back(withoutBlanks(line));
  }
  return names;
}

bool readStyle(const std::string& content, const std::wstring& name, KdDbMlineStyle& style, KdDbDatabase* database) {
  CLibraryReader reader(decodeLibrary(content).text);
  if (!reader.skipToRecord(name)) return false;
  KdCmColor fill = style.fillColor();
  std::wstring code, value;
  while (reader.next(code) && code != L"0") {
    const bool isCount = code == L"71";
    if (!isCount && !isStyleCode(code)) continue;
    if (!reader.nextValue(value)) break;
    if (!isCount) setStyleValue(style, fill, code, value);
    if (isCount && !readElements(reader, integerOf(value), style, database)) break;
  }
  return true;
}

#include "dxf/group.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/numbers.h"
#include "base/text.h"
#include "dxf/binary_group.h"
#include "dxf/byte_masks.h"

namespace torva::dxf {
namespace {

struct CodeRange {
  int first, last;
  ValueKind kind;
};

constexpr CodeRange kRanges[] = {
    {0, 4, ValueKind::text},         {5, 5, ValueKind::handle},      {6, 9, ValueKind::text},
    {10, 59, ValueKind::real},       {60, 79, ValueKind::int16},     {90, 99, ValueKind::int32},
    {100, 102, ValueKind::text},     {105, 105, ValueKind::handle},  {110, 149, ValueKind::real},
    {160, 169, ValueKind::int64},    {170, 179, ValueKind::int16},   {210, 239, ValueKind::real},
    {270, 289, ValueKind::int16},    {290, 299, ValueKind::boolean}, {300, 309, ValueKind::text},
    {310, 319, ValueKind::bytes},    {320, 369, ValueKind::handle},  {370, 389, ValueKind::int16},
    {390, 399, ValueKind::handle},   {400, 409, ValueKind::int16},   {410, 419, ValueKind::text},
    {420, 429, ValueKind::int32},    {430, 439, ValueKind::text},    {440, 459, ValueKind::int32},
    {460, 469, ValueKind::real},     {470, 479, ValueKind::text},    {480, 481, ValueKind::handle},
    {999, 999, ValueKind::comment},  {1000, 1003, ValueKind::text},  {1004, 1004, ValueKind::bytes},
    {1005, 1005, ValueKind::handle}, {1010, 1059, ValueKind::real},  {1060, 1070, ValueKind::int16},
    {1071, 1071, ValueKind::int32},
};

constexpr std::size_t kCodes = 1072;

struct CodeTable {
  std::array<ValueKind, kCodes> kind{};
  std::array<bool, kCodes> isKnown{};
};

constexpr CodeTable kTable = [] {
  CodeTable table;
  table.kind.fill(ValueKind::text);
  for (const CodeRange& range : kRanges) {
    for (int code = range.first; code <= range.last; ++code) {
      table.kind[static_cast<std::size_t>(code)] = range.kind;
      table.isKnown[static_cast<std::size_t>(code)] = true;
    }
  }
  return table;
}();

bool isInTable(int code) {
  return code >= 0 && code < static_cast<int>(kCodes);
}

template <class T>
T littleEndian(std::string_view value) {
  static_assert(std::endian::native == std::endian::little);
  T number{};
  std::memcpy(&number, value.data(), std::min(sizeof number, value.size()));
  return number;
}

// Nearly all code lines are three characters, blanks in front of digits, and LF.
constexpr std::size_t kUsualCodeSize = 3;

bool startsWithUsualCode(std::string_view line) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (line.size() <= kUsualCodeSize || line[kUsualCodeSize] != '\n' || !isDigit(line[2])) return false;
  return isDigit(line[1]) ? line[0] == ' ' || isDigit(line[0]) : line[0] == ' ' && line[1] == ' ';
}

int usualCode(std::string_view line) {
  return (line[0] & 15) * 100 + (line[1] & 15) * 10 + (line[2] & 15);  // a blank counts 0
}

}  // namespace

ValueKind valueKind(int code) {
  return isInTable(code) ? kTable.kind[static_cast<std::size_t>(code)] : ValueKind::text;
}

bool isKnownCode(int code) {
  return isInTable(code) && kTable.isKnown[static_cast<std::size_t>(code)];
}

int parseGroupCode(std::string_view line) {
  constexpr std::size_t kMostDigits = 6;
  line = withoutBlanks(withoutCarriageReturn(line));
  if (line.empty() || line.size() > kMostDigits) return kUnreadableCode;
  const bool isNegative = line.front() == '-';
  if (isNegative) line.remove_prefix(1);
  int code = 0;
  for (const char c : line) {
    if (c < '0' || c > '9') return kUnreadableCode;
    code = code * 10 + (c - '0');
  }
  if (line.empty()) return kUnreadableCode;
  return isNegative ? -code : code;
}

std::optional<double> Group::real() const {
  if (form == Form::text) return parseReal(value);
  switch (valueKind(code)) {
    case ValueKind::real: {
      const auto number = littleEndian<double>(value);
      return std::isfinite(number) ? std::optional(number) : std::nullopt;
    }
    case ValueKind::int16:
    case ValueKind::int32:
    case ValueKind::int64:
    case ValueKind::boolean:
      return static_cast<double>(*integer());
    default:
      return parseReal(value);
  }
}

std::optional<std::int64_t> Group::integer() const {
  if (form == Form::text) return parseInteger(value);
  switch (valueKind(code)) {
    case ValueKind::int16:
      return littleEndian<std::int16_t>(value);
    case ValueKind::int32:
      return littleEndian<std::int32_t>(value);
    case ValueKind::int64:
      return littleEndian<std::int64_t>(value);
    case ValueKind::boolean:
      return littleEndian<std::uint8_t>(value);
    case ValueKind::real: {
      const auto number = littleEndian<double>(value);
      const bool isWhole = std::fabs(number) < 9e18 && number == std::trunc(number);
      return isWhole ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
    }
    default:
      return parseInteger(value);
  }
}

std::optional<Handle> Group::handle() const {
  return parseHandle(value);
}

void Groups::Iterator::advance() {
  if (m_rest.empty()) {
    m_isDone = true;
  } else if (m_group.form == Form::text) {
    advanceText();
  } else {
    advanceBinary();
  }
}

bool Groups::Iterator::advanceUsual() {
  constexpr std::size_t kBlock = 16;
  if (m_ends != LineEnds::lf || m_rest.size() <= kUsualCodeSize + kBlock || !startsWithUsualCode(m_rest)) return false;
  const char* const value = m_rest.data() + kUsualCodeSize + 1;
  const std::uint32_t ends = equalMask16(value, '\n');
  if (ends == 0) return false;
  const auto size = static_cast<std::size_t>(std::countr_zero(ends));
  m_group.code = usualCode(m_rest);
  m_group.value = withoutCarriageReturn({value, size});
  take(kUsualCodeSize + 1 + size + 1);
  return true;
}

void Groups::Iterator::advanceText() {
  if (advanceUsual()) return;
  const bool hasUsualCode = startsWithUsualCode(m_rest);
  const std::size_t codeEnd = hasUsualCode ? kUsualCodeSize : findNearLineEnd(m_rest, 0, m_ends);
  if (codeEnd + 1 >= m_rest.size()) {
    m_isDone = true;
    return;
  }
  m_group.code = hasUsualCode ? usualCode(m_rest) : parseGroupCode(m_rest.substr(0, codeEnd));
  if (m_group.code == kUnreadableCode) return takeUnreadable();
  const std::size_t valueEnd = findNearLineEnd(m_rest, codeEnd + 1, m_ends);
  m_group.value = withoutCarriageReturn(m_rest.substr(codeEnd + 1, valueEnd - codeEnd - 1));
  take(std::min(valueEnd + 1, m_rest.size()));
}

void Groups::Iterator::advanceBinary() {
  const BinaryGroup group = readBinaryGroup(m_rest, m_codes);
  if (group.status == BinaryGroup::Status::unknownCode) return takeUnreadable();
  if (group.status == BinaryGroup::Status::truncated) {
    m_isDone = true;
    return;
  }
  m_group.code = group.code;
  m_group.value = m_rest.substr(group.valueBegin, group.valueSize);
  take(group.size);
}

void Groups::Iterator::take(std::size_t size) {
  m_group.source = {m_rest.data(), size};
  m_rest.remove_prefix(size);
}

void Groups::Iterator::takeUnreadable() {
  m_group.code = kUnreadableCode;
  m_group.value = {};
  take(m_rest.size());
}

}  // namespace torva::dxf

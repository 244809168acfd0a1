#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

#include "base/numbers.h"
#include "dxf/drawing_file.h"

namespace torva::dxf {
namespace {

constexpr int kWideCodeFollows = 255;  // in the binary form with codes of one byte

template <class T>
void appendLittleEndian(std::string& out, T value) {
  static_assert(std::endian::native == std::endian::little);
  char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  out.append(bytes, sizeof value);
}

void appendRightAligned(std::string& out, std::int64_t value, std::size_t width) {
  std::array<char, 24> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  const auto count = static_cast<std::size_t>(end - digits.data());
  out.append(width - std::min(width, count), ' ').append(digits.data(), count);
}

std::size_t integerWidth(ValueKind kind) {
  switch (kind) {
    case ValueKind::int16:
    case ValueKind::boolean:
      return 6;
    case ValueKind::int32:
      return 9;
    default:
      return 0;
  }
}

}  // namespace

RecordBuilder::RecordBuilder(const DrawingFile& file) : m_file(file), m_lineEnd(file.lineEnd()) {}

void RecordBuilder::copy(const Group& group) {
  endLine();
  m_bytes.append(group.source);
}

void RecordBuilder::real(int code, double value) {
  this->code(code);
  if (m_file.form() == Form::text) {
    appendReal(m_bytes, value);
    m_bytes.append(m_lineEnd);
    return;
  }
  if (valueKind(code) == ValueKind::real) return appendLittleEndian(m_bytes, value);
  appendReal(m_bytes, value);
  m_bytes.push_back('\0');
}

void RecordBuilder::integer(int code, std::int64_t value) {
  const ValueKind kind = valueKind(code);
  this->code(code);
  if (m_file.form() == Form::text) {
    appendRightAligned(m_bytes, value, integerWidth(kind));
    m_bytes.append(m_lineEnd);
    return;
  }
  switch (kind) {
    case ValueKind::int16:
      return appendLittleEndian(m_bytes, static_cast<std::int16_t>(value));
    case ValueKind::int32:
      return appendLittleEndian(m_bytes, static_cast<std::int32_t>(value));
    case ValueKind::int64:
      return appendLittleEndian(m_bytes, value);
    case ValueKind::boolean:
      return appendLittleEndian(m_bytes, static_cast<std::uint8_t>(value));
    case ValueKind::real:
      return appendLittleEndian(m_bytes, static_cast<double>(value));
    default:
      m_bytes.append(std::to_string(value)).push_back('\0');
  }
}

void RecordBuilder::handle(int code, Handle value) {
  name(code, formatHandle(value));
}

void RecordBuilder::text(int code, std::wstring_view value) {
  name(code, m_file.encode(value));
}

void RecordBuilder::name(int code, std::string_view value) {
  if (m_file.form() == Form::text) return line(code, value);
  this->code(code);
  m_bytes.append(value).push_back('\0');
}

void RecordBuilder::endLine() {
  const bool isOpen = !m_bytes.empty() && m_bytes.back() != '\n' && m_bytes.back() != '\r';
  if (isOpen && m_file.form() == Form::text) m_bytes.append(m_lineEnd);
}

void RecordBuilder::code(int code) {
  endLine();
  if (m_file.form() == Form::text) {
    appendRightAligned(m_bytes, code, 3);
    m_bytes.append(m_lineEnd);
  } else if (m_file.binaryCodes() == BinaryCodes::twoBytes) {
    appendLittleEndian(m_bytes, static_cast<std::uint16_t>(code));
  } else if (code < kWideCodeFollows) {
    appendLittleEndian(m_bytes, static_cast<std::uint8_t>(code));
  } else {
    appendLittleEndian(m_bytes, static_cast<std::uint8_t>(kWideCodeFollows));
    appendLittleEndian(m_bytes, static_cast<std::uint16_t>(code));
  }
}

void RecordBuilder::line(int code, std::string_view value) {
  this->code(code);
  m_bytes.append(value).append(m_lineEnd);
}

}  // namespace torva::dxf

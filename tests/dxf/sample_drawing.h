#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dxf/drawing_file.h"

namespace torva::dxf::test {

/// Code and value; numbers as text too.
using SampleGroups = std::vector<std::pair<int, std::string>>;

/// A small drawing with what opening looks at: header, tables, a block, entities, objects.
inline SampleGroups sampleGroups(const std::string& version = "AC1015") {
  return {
      {0, "SECTION"},   {2, "HEADER"},     {9, "$ACADVER"}, {1, version},        {9, "$DWGCODEPAGE"},
      {3, "ANSI_1252"}, {9, "$HANDSEED"},  {5, "40"},       {9, "$EXTMIN"},      {10, "1.5"},
      {20, "-2.0"},     {30, "0.0"},       {0, "ENDSEC"},   {0, "SECTION"},      {2, "TABLES"},
      {0, "TABLE"},     {2, "DIMSTYLE"},   {5, "8"},        {0, "DIMSTYLE"},     {105, "17"},
      {5, "ARROW"},     {2, "Standard"},   {0, "ENDTAB"},   {0, "ENDSEC"},       {0, "SECTION"},
      {2, "BLOCKS"},    {0, "BLOCK"},      {5, "20"},       {2, "*Model_Space"}, {0, "ENDBLK"},
      {5, "21"},        {0, "ENDSEC"},     {0, "SECTION"},  {2, "ENTITIES"},     {0, "MLINE"},
      {5, "2F"},        {330, "1F"},       {8, "Walls"},    {10, "0.1"},         {20, "1.0E+20"},
      {72, "-2"},       {90, "-100000"},   {1001, "ROOMS"}, {1040, "2.5"},       {1071, "7"},
      {0, "UNHEARD"},   {5, "30"},         {310, "0A1B2C"}, {290, "1"},          {160, "-5000000000"},
      {0, "LINE"},      {5, "31"},         {1, "last"},     {0, "ENDSEC"},       {0, "SECTION"},
      {2, "OBJECTS"},   {0, "DICTIONARY"}, {5, "C"},        {3, "ACAD_GROUP"},   {350, "D"},
      {0, "ENDSEC"},    {0, "EOF"},
  };
}

enum class Codes { padded, bare };

inline std::string textForm(const SampleGroups& groups, std::string_view lineEnd = "\n", Codes codes = Codes::padded) {
  std::string text;
  for (const auto& [code, value] : groups) {
    const std::string number = std::to_string(code);
    if (codes == Codes::padded && number.size() < 3) text.append(3 - number.size(), ' ');
    text.append(number).append(lineEnd).append(value).append(lineEnd);
  }
  return text;
}

inline std::string binaryForm(const SampleGroups& groups, BinaryCodes codes) {
  std::string bytes("\x41\x75\x74\x6F\x43\x41\x44\x20\x42\x69\x6E\x61\x72\x79\x20\x44\x58\x46\r\n\x1A\0", 22);
  const auto put = [&](auto number) {
    char raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);
    bytes.append(raw, sizeof number);
  };
  for (const auto& [code, value] : groups) {
    if (codes == BinaryCodes::twoBytes) {
      put(static_cast<std::uint16_t>(code));
    } else if (code < 255) {
      put(static_cast<std::uint8_t>(code));
    } else {
      bytes += '\xFF';
      put(static_cast<std::uint16_t>(code));
    }
    const auto integer = [&value = value] { return std::atoll(value.c_str()); };
    const ValueKind kind = valueKind(code);
    if (kind == ValueKind::real) {
      put(std::strtod(value.c_str(), nullptr));
    } else if (kind == ValueKind::int16) {
      put(static_cast<std::int16_t>(integer()));
    } else if (kind == ValueKind::int32) {
      put(static_cast<std::int32_t>(integer()));
    } else if (kind == ValueKind::int64) {
      put(static_cast<std::int64_t>(integer()));
    } else if (kind == ValueKind::boolean) {
      put(static_cast<std::uint8_t>(integer()));
    } else if (kind == ValueKind::bytes) {
      put(static_cast<std::uint8_t>(value.size() / 2));
      for (std::size_t i = 0; i < value.size(); i += 2)
        bytes += static_cast<char>(std::stoi(value.substr(i, 2), nullptr, 16));
    } else {
      bytes.append(value).push_back('\0');
    }
  }
  return bytes;
}

struct Opened {
  std::optional<DrawingFile> file;
  std::optional<Error> error;
  std::vector<Finding> findings;
};

inline Opened openBytes(std::string bytes, DamagePolicy policy = DamagePolicy::refuse) {
  Opened opened;
  auto result = DrawingFile::fromBytes(std::move(bytes), "plan.dxf", policy, opened.findings);
  if (result) {
    opened.file.emplace(std::move(*result));
  } else {
    opened.error = result.error();
  }
  return opened;
}

}  // namespace torva::dxf::test

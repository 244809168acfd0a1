#include "db/header_values.h"

#include "base/numbers.h"
#include "base/text.h"
#include "db/database.h"

namespace torva::db {

namespace {

constexpr int kByBlockIndex = 0, kByLayerIndex = 256;
constexpr int kColorCode = 62;

std::wstring colorText(std::int64_t index) {
  if (index == kByLayerIndex) return L"BYLAYER";
  return index == kByBlockIndex ? L"BYBLOCK" : std::to_wstring(index);
}

std::optional<VariableValue> readPoint(const std::vector<dxf::Group>& groups, int code) {
  KdGePoint3d point;
  bool isFound = false;
  for (const dxf::Group& group : groups) {
    const auto value = group.real();
    if (!value) continue;
    if (group.code == code) {
      point.x = *value;
      isFound = true;
    } else if (group.code == code + 10) {
      point.y = *value;
    } else if (group.code == code + 20) {
      point.z = *value;
    }
  }
  return isFound ? std::optional<VariableValue>(point) : std::nullopt;
}

}  // namespace

std::optional<VariableValue> readHeaderValue(const dxf::DrawingFile& file, const VariableInfo& variable) {
  const std::vector<dxf::Group> groups = file.headerVariable(variable.header);
  if (std::holds_alternative<KdGePoint3d>(variable.first)) return readPoint(groups, variable.code);
  for (const dxf::Group& group : groups) {
    if (group.code == 999) continue;
    if (variable.code == kColorCode) {
      const auto index = group.integer();
      return index ? std::optional<VariableValue>(colorText(*index)) : std::nullopt;
    }
    if (std::holds_alternative<std::wstring>(variable.first)) return file.text(group);
    if (std::holds_alternative<double>(variable.first)) {
      const auto value = group.real();
      return value ? std::optional<VariableValue>(*value) : std::nullopt;
    }
    const auto value = group.integer();
    return value ? std::optional<VariableValue>(static_cast<int>(*value)) : std::nullopt;
  }
  return std::nullopt;
}

Result<void> writeHeaderValue(Database& drawing, const VariableInfo& variable, const VariableValue& value) {
  dxf::RecordBuilder groups(drawing.file());
  if (const auto* text = std::get_if<std::wstring>(&value)) {
    if (variable.code == kColorCode) {
      groups.integer(kColorCode, colorIndexOf(*text).value_or(kByLayerIndex));
    } else {
      groups.text(variable.code, *text);
    }
  } else if (const auto* number = std::get_if<int>(&value)) {
    groups.integer(variable.code, *number);
  } else if (const auto* real = std::get_if<double>(&value)) {
    groups.real(variable.code, *real);
  } else {
    const KdGePoint3d& point = std::get<KdGePoint3d>(value);
    groups.real(variable.code, point.x);
    groups.real(variable.code + 10, point.y);
    groups.real(variable.code + 20, point.z);
  }
  if (drawing.setHeaderVariable(variable.header, groups.take())) return {};
  return fail(ErrorCode::notApplicable, "the drawing has no header to keep " + utf8FromWide(variable.name) + " in");
}

std::optional<int> colorIndexOf(std::wstring_view text) {
  const std::wstring name = trimmed(text);
  if (equalsIgnoringCase(name, L"BYLAYER")) return kByLayerIndex;
  if (equalsIgnoringCase(name, L"BYBLOCK")) return kByBlockIndex;
  const auto index = parseInteger(utf8FromWide(name));
  if (!index || *index < kByBlockIndex || *index > kByLayerIndex) return std::nullopt;
  return static_cast<int>(*index);
}

}  // namespace torva::db

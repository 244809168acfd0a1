#include "command/point_text.h"

#include <cmath>
#include <numbers>
#include <string>

#include "base/numbers.h"
#include "base/text.h"

namespace torva::command {

namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180;

std::optional<KdGeVector3d> parsePolar(std::wstring_view text, std::size_t angleMark) {
  const auto distance = parseNumber(text.substr(0, angleMark));
  const auto degrees = parseNumber(text.substr(angleMark + 1));
  if (!distance || !degrees) return std::nullopt;
  const double angleRad = std::remainder(*degrees, 360.0) * kRadiansPerDegree;
  return KdGeVector3d{*distance * std::cos(angleRad), *distance * std::sin(angleRad), 0};
}

std::optional<KdGeVector3d> parseCartesian(std::wstring_view text, double z) {
  const std::size_t firstComma = text.find(L',');
  if (firstComma == std::wstring_view::npos) return std::nullopt;
  const std::size_t secondComma = text.find(L',', firstComma + 1);
  const auto x = parseNumber(text.substr(0, firstComma));
  const auto y = parseNumber(text.substr(firstComma + 1, secondComma - firstComma - 1));
  if (!x || !y) return std::nullopt;
  if (secondComma == std::wstring_view::npos) return KdGeVector3d{*x, *y, z};
  const std::wstring_view zText = text.substr(secondComma + 1);
  if (zText.find(L',') != std::wstring_view::npos) return std::nullopt;
  const auto givenZ = parseNumber(zText);
  if (!givenZ) return std::nullopt;
  return KdGeVector3d{*x, *y, *givenZ};
}

}  // namespace

std::optional<double> parseNumber(std::wstring_view text) {
  // Drawing files may have decimal commas; where a person types, a comma separates coordinates.
  if (text.find(L',') != std::wstring_view::npos) return std::nullopt;
  return parseReal(utf8FromWide(text));
}

std::optional<KdGePoint3d> parsePoint(std::wstring_view text, const PointContext& context) {
  const bool isRelative = !text.empty() && text.front() == L'@';
  if (isRelative) text.remove_prefix(1);
  if (isRelative && text.empty()) return context.last;

  const std::size_t angleMark = text.find(L'<');
  const double z = isRelative ? 0 : context.elevation;
  auto offset = angleMark == std::wstring_view::npos ? parseCartesian(text, z) : parsePolar(text, angleMark);
  if (!offset) return std::nullopt;
  if (!isRelative && angleMark != std::wstring_view::npos) offset->z = context.elevation;

  const KdGePoint3d point = (isRelative ? context.last : KdGePoint3d{}) + *offset;
  if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return std::nullopt;
  return point;
}

std::optional<HandlePick> parseHandlePick(std::wstring_view text, const PointContext& context) {
  if (text.empty() || text.front() != L'#') return std::nullopt;
  text.remove_prefix(1);
  const std::size_t colon = text.find(L':');
  if (colon == std::wstring_view::npos) return std::nullopt;
  const auto handle = parseHandle(utf8FromWide(text.substr(0, colon)));
  const auto point = parsePoint(text.substr(colon + 1), context);
  if (!handle || !point) return std::nullopt;
  return HandlePick{*handle, *point};
}

}  // namespace torva::command

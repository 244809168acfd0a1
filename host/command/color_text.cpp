#include "command/color_text.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/numbers.h"
#include "base/text.h"
#include "command/session.h"

namespace torva::command {

namespace {

constexpr int kByBlockIndex = 0, kByLayerIndex = 256;
constexpr std::array<std::wstring_view, 7> kColorNames = {L"red",  L"yellow",  L"green", L"cyan",
                                                          L"blue", L"magenta", L"white"};

std::optional<int> numberUpTo255(std::wstring_view text) {
  const auto number = parseInteger(utf8FromWide(trimmed(text)));
  return number && *number >= 0 && *number <= 255 ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

std::optional<int> indexOf(std::wstring_view text) {
  if (equalsIgnoringCase(text, L"BYLAYER")) return kByLayerIndex;
  if (equalsIgnoringCase(text, L"BYBLOCK")) return kByBlockIndex;
  const auto* name = std::ranges::find_if(kColorNames, [&](std::wstring_view n) { return equalsIgnoringCase(n, text); });
  if (name != kColorNames.end()) return static_cast<int>(name - kColorNames.begin()) + 1;
  const auto index = numberUpTo255(text);
  return index == 0 ? std::nullopt : index;
}

std::optional<KdCmColor> trueColorOf(std::wstring_view text) {
  std::uint32_t rgb = 0;
  for (int channel = 0; channel < 3; ++channel) {
    const std::size_t end = channel < 2 ? text.find(L',') : text.size();
    if (end == std::wstring_view::npos) return std::nullopt;
    const auto value = numberUpTo255(text.substr(0, end));
    if (!value) return std::nullopt;
    rgb = rgb << 8 | static_cast<std::uint32_t>(*value);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return KdCmColor::trueColor(rgb);
}

}  // namespace

std::optional<KdCmColor> colorOf(std::wstring_view text) {
  const auto index = indexOf(text);
  return index ? KdCmColor::byIndex(*index) : trueColorOf(text);
}

Result<KdCmColor> colorFor(const db::Database& drawing, std::wstring_view text) {
  const auto color = colorOf(text);
  if (!color) {
    return fail(ErrorCode::invalidValue,
                utf8FromWide(inQuotes(text)) + " is no color: a name, a number from 1 to 255, or r,g,b");
  }
  if (color->isTrueColor() && drawing.file().version() < dxf::Version::r2004) {
    return fail(ErrorCode::notApplicable, "drawings before R2004 hold no colors by r,g,b");
  }
  return *color;
}

std::wstring shown(const KdCmColor& color) {
  if (color.isByLayer()) return L"BYLAYER";
  if (color.isByBlock()) return L"BYBLOCK";
  if (color.isTrueColor()) {
    const std::uint32_t rgb = color.rgb();
    return std::to_wstring(rgb >> 16) + L',' + std::to_wstring(rgb >> 8 & 0xFF) + L',' + std::to_wstring(rgb & 0xFF);
  }
  const auto index = static_cast<std::size_t>(color.colorIndex());
  const bool hasName = index >= 1 && index <= kColorNames.size();
  return std::to_wstring(index) + (hasName ? L" (" + std::wstring(kColorNames[index - 1]) + L")" : L"");
}

}  // namespace torva::command

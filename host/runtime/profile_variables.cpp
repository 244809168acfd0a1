#include "runtime/profile_variables.h"

#include <limits>

#include "base/numbers.h"
#include "base/text.h"

namespace torva::runtime {
namespace {

constexpr const char* kSection = "Variables";

std::wstring toText(int value) {
  return std::to_wstring(value);
}
std::wstring toText(double value) {
  return wideFromUtf8(formatReal(value));
}
std::wstring toText(const std::wstring& value) {
  return value;
}
std::wstring toText(const KdGePoint3d& p) {
  return toText(p.x) + L' ' + toText(p.y) + L' ' + toText(p.z);
}

std::optional<db::VariableValue> fromText(const std::wstring& text, int) {
  const auto value = parseInteger(utf8FromWide(text));
  if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(*value);
}

std::optional<db::VariableValue> fromText(const std::wstring& text, double) {
  return parseReal(utf8FromWide(text));
}

std::optional<db::VariableValue> fromText(const std::wstring& text, const std::wstring&) {
  return text;
}

std::optional<db::VariableValue> fromText(const std::wstring& text, const KdGePoint3d&) {
  const std::string bytes = utf8FromWide(text);
  const std::size_t first = bytes.find(' '), second = bytes.rfind(' ');
  if (first == std::string::npos || first == second) return std::nullopt;
  const auto x = parseReal(bytes.substr(0, first)), y = parseReal(bytes.substr(first, second - first)),
             z = parseReal(bytes.substr(second));
  if (!x || !y || !z) return std::nullopt;
  return KdGePoint3d{*x, *y, *z};
}

bool isSame(const db::VariableValue& a, const db::VariableValue& b) {
  return std::visit([](const auto& value) { return toText(value); }, a) ==
         std::visit([](const auto& value) { return toText(value); }, b);
}

}  // namespace

void restoreVariables(const Profile& profile, db::SystemVariables& variables) {
  for (const auto& [name, current] : variables.profileValues()) {
    const auto text = profile.text(kSection, utf8FromWide(name));
    if (!text) continue;
    const auto value = std::visit([&](const auto& sample) { return fromText(*text, sample); }, current);
    // A value out of its range, of a profile edited by hand, leaves the variable at its first value.
    if (value) static_cast<void>(variables.set(name, *value));
  }
}

void keepVariables(const db::SystemVariables& variables, const std::map<std::wstring, db::VariableValue>& before,
                   Profile& profile) {
  for (const auto& [name, value] : variables.profileValues()) {
    const auto former = before.find(name);
    if (former != before.end() && isSame(former->second, value)) continue;
    const std::wstring text = std::visit([](const auto& held) { return toText(held); }, value);
    // Names of variables are letters and digits, which the profile always takes.
    static_cast<void>(profile.setText(kSection, utf8FromWide(name), text));
  }
}

}  // namespace torva::runtime

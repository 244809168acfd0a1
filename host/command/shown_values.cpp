#include "command/shown_values.h"

#include "base/numbers.h"
#include "base/text.h"

namespace torva::command {

namespace {

std::wstring shownTriple(double x, double y, double z) {
  return shown(x) + L"," + shown(y) + L"," + shown(z);
}

struct ShowValue {
  std::wstring operator()(int value) const { return std::to_wstring(value); }
  std::wstring operator()(double value) const { return shown(value); }
  std::wstring operator()(const std::wstring& value) const { return L'"' + value + L'"'; }
  std::wstring operator()(const KdGePoint3d& value) const { return shown(value); }
};

}  // namespace

std::wstring shown(double value) {
  std::string text = formatReal(value == 0 ? 0.0 : value);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return wideFromUtf8(text);
}

std::wstring shown(const KdGePoint3d& point) {
  return shownTriple(point.x, point.y, point.z);
}

std::wstring shown(const KdGeVector3d& vector) {
  return shownTriple(vector.x, vector.y, vector.z);
}

std::wstring shown(const db::VariableValue& value) {
  return std::visit(ShowValue(), value);
}

}  // namespace torva::command

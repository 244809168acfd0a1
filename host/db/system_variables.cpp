#include "db/system_variables.h"

#include <array>
#include <cmath>
#include <limits>

#include "base/numbers.h"
#include "base/text.h"
#include "db/database.h"
#include "db/header_values.h"

namespace torva::db {

namespace {

tl::unexpected<Error> unknown(std::wstring_view name) {
  return fail(ErrorCode::unknownName, "unknown variable name " + utf8FromWide(name));
}

tl::unexpected<Error> invalid(const VariableInfo& variable, const std::string& wanted) {
  return fail(ErrorCode::invalidValue, utf8FromWide(variable.name) + " requires " + wanted);
}

std::string textOf(const VariableInfo& variable, double limit) {
  return std::holds_alternative<int>(variable.first) ? std::to_string(static_cast<int>(limit)) : formatReal(limit);
}

std::string rangeOf(const VariableInfo& variable) {
  if (variable.most == std::numeric_limits<double>::max()) return "a number greater than 0";
  return std::string(std::holds_alternative<int>(variable.first) ? "an integer" : "a number") + " from " +
         textOf(variable, variable.least) + " to " + textOf(variable, variable.most);
}

Result<void> checkNumber(const VariableInfo& variable, double value) {
  if (!std::isfinite(value)) return invalid(variable, "a number");
  const bool hasRange = variable.least < variable.most;
  if (hasRange && (value < variable.least || value > variable.most)) return invalid(variable, rangeOf(variable));
  return {};
}

bool hasName(const Database& drawing, VariableNames names, const std::wstring& name) {
  switch (names) {
    case VariableNames::mlineStyle: {
      const std::array<std::wstring_view, 2> path = {L"ACAD_MLINESTYLE", name};
      return drawing.findInDictionary(path) != dxf::kNoRecord;
    }
    case VariableNames::layer:
      return drawing.findSymbol(dxf::RecordType::layer, name) != dxf::kNoRecord;
    case VariableNames::linetype:
      return equalsIgnoringCase(name, L"BYLAYER") || equalsIgnoringCase(name, L"BYBLOCK") ||
             drawing.findSymbol(dxf::RecordType::ltype, name) != dxf::kNoRecord;
    default:
      return true;
  }
}

std::string kindOf(VariableNames names) {
  switch (names) {
    case VariableNames::mlineStyle:
      return "a multiline style of the drawing";
    case VariableNames::layer:
      return "a layer of the drawing";
    default:
      return "a linetype of the drawing";
  }
}

/// The value in the variable's own type; an integer will do for a real number.
Result<VariableValue> converted(const VariableInfo& variable, const VariableValue& value) {
  if (value.index() == variable.first.index()) return value;
  if (std::holds_alternative<double>(variable.first) && std::holds_alternative<int>(value)) {
    return Result<VariableValue>(tl::in_place, static_cast<double>(std::get<int>(value)));
  }
  if (std::holds_alternative<int>(variable.first)) return invalid(variable, "an integer");
  if (std::holds_alternative<double>(variable.first)) return invalid(variable, "a number");
  return invalid(variable, std::holds_alternative<std::wstring>(variable.first) ? "a text" : "a point");
}

Result<void> check(const VariableInfo& variable, const VariableValue& value, const Database* drawing) {
  if (const auto* number = std::get_if<int>(&value)) return checkNumber(variable, *number);
  if (const auto* real = std::get_if<double>(&value)) return checkNumber(variable, *real);
  if (const auto* point = std::get_if<KdGePoint3d>(&value)) {
    const bool isFinite = std::isfinite(point->x) && std::isfinite(point->y) && std::isfinite(point->z);
    if (!isFinite) return invalid(variable, "a point");
    return {};
  }
  const std::wstring& text = std::get<std::wstring>(value);
  if (variable.name == L"CECOLOR" && !colorIndexOf(text))
    return invalid(variable, "BYLAYER, BYBLOCK or a color from 1 to 255");
  if (drawing && !hasName(*drawing, variable.names, text)) return invalid(variable, kindOf(variable.names));
  return {};
}

bool isSame(const VariableValue& a, const VariableValue& b) {
  const auto* p = std::get_if<KdGePoint3d>(&a);
  const auto* q = std::get_if<KdGePoint3d>(&b);
  if (p && q) return p->x == q->x && p->y == q->y && p->z == q->z;
  if (p || q || a.index() != b.index()) return false;
  if (const auto* text = std::get_if<std::wstring>(&a)) return *text == std::get<std::wstring>(b);
  if (const auto* real = std::get_if<double>(&a)) return *real == std::get<double>(b);
  return std::get<int>(a) == std::get<int>(b);
}

std::size_t placeOf(const VariableInfo& variable) {
  return static_cast<std::size_t>(&variable - systemVariables().data());
}

std::wstring fileName(const std::string& path) {
  return wideFromUtf8(path.substr(path.rfind('/') + 1));
}

std::wstring folderName(const std::string& path) {
  return wideFromUtf8(path.substr(0, path.rfind('/') + 1));
}

/// The variables that follow from others.
std::optional<VariableValue> derived(const VariableInfo& variable, const SystemVariables& variables,
                                     const Database* drawing) {
  if (variable.name == L"WORLDUCS") {
    const auto isStandard = [&](std::wstring_view name) {
      return isSame(variables.get(name).value(), findVariable(name)->first);
    };
    return std::make_optional<VariableValue>(isStandard(L"UCSORG") && isStandard(L"UCSXDIR") && isStandard(L"UCSYDIR") ? 1
                                                                                                                       : 0);
  }
  if (!drawing) return std::nullopt;
  if (variable.name == L"DWGNAME") return std::make_optional<VariableValue>(fileName(drawing->file().path()));
  if (variable.name == L"DWGPREFIX") return std::make_optional<VariableValue>(folderName(drawing->file().path()));
  return std::nullopt;
}

}  // namespace

SystemVariables::SystemVariables(Database* drawing) : m_drawing(drawing) {
  for (const VariableInfo& variable : systemVariables()) m_values.push_back(variable.first);
}

void SystemVariables::setDrawing(Database* drawing) {
  m_drawing = drawing;
  m_added.clear();
}

Result<VariableValue> SystemVariables::get(std::wstring_view name) const {
  const VariableInfo* variable = findVariable(name);
  if (!variable) return unknown(name);
  if (auto value = derived(*variable, *this, m_drawing)) return *value;
  if (variable->home == VariableHome::drawing) {
    if (!m_drawing) return variable->first;
    return readHeaderValue(m_drawing->file(), *variable).value_or(variable->first);
  }
  return m_values[placeOf(*variable)];
}

Result<void> SystemVariables::set(std::wstring_view name, const VariableValue& value) {
  const VariableInfo* variable = findVariable(name);
  if (!variable) return unknown(name);
  if (variable->access == VariableAccess::readOnly) {
    return fail(ErrorCode::readOnly, utf8FromWide(variable->name) + " is read only");
  }
  const Result<VariableValue> own = converted(*variable, value);
  if (!own) return tl::unexpected(own.error());
  if (auto checked = check(*variable, *own, m_drawing); !checked) return checked;
  if (variable->home != VariableHome::drawing) {
    m_values[placeOf(*variable)] = *own;
    return {};
  }
  if (!m_drawing)
    return fail(ErrorCode::notApplicable, "there is no drawing to keep " + utf8FromWide(variable->name) + " in");
  return keepInDrawing(*variable, *own);
}

Result<void> SystemVariables::keepInDrawing(const VariableInfo& variable, const VariableValue& value) {
  const auto present = readHeaderValue(m_drawing->file(), variable);
  if (present && isSame(*present, value)) return {};
  const bool isFirst = isSame(value, variable.first);
  if (m_drawing->file().headerVariable(variable.header).empty()) {
    if (isFirst) return {};
    m_added.insert(variable.name);
  } else if (isFirst && m_added.contains(variable.name)) {
    m_drawing->setHeaderVariable(variable.header, {});
    return {};
  }
  return writeHeaderValue(*m_drawing, variable, value);
}

void SystemVariables::setInternally(std::wstring_view name, const VariableValue& value) {
  const VariableInfo& variable = *findVariable(name);
  if (variable.home != VariableHome::drawing) {
    m_values[placeOf(variable)] = value;
  } else if (m_drawing && !isSame(get(name).value(), value)) {
    // Without a header there is nothing to keep it in, and the first value holds on.
    (void)writeHeaderValue(*m_drawing, variable, value);
  }
}

bool SystemVariables::has(std::wstring_view name) const {
  return findVariable(name) != nullptr;
}

bool SystemVariables::isReadOnly(std::wstring_view name) const {
  const VariableInfo* variable = findVariable(name);
  return variable && variable->access == VariableAccess::readOnly;
}

std::vector<std::wstring> SystemVariables::names() const {
  std::vector<std::wstring> names;
  for (const VariableInfo& variable : systemVariables()) names.emplace_back(variable.name);
  return names;
}

std::map<std::wstring, VariableValue> SystemVariables::profileValues() const {
  std::map<std::wstring, VariableValue> values;
  for (const VariableInfo& variable : systemVariables()) {
    if (variable.home == VariableHome::profile) values.emplace(variable.name, get(variable.name).value());
  }
  return values;
}

}  // namespace torva::db

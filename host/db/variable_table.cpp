#include "db/variable_table.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "base/text.h"

namespace torva::db {

namespace {

constexpr auto kOpen = VariableAccess::open;
constexpr auto kReadOnly = VariableAccess::readOnly;
constexpr auto kDrawing = VariableHome::drawing;
constexpr auto kProfile = VariableHome::profile;
constexpr auto kSession = VariableHome::session;
constexpr double kLeastPositive = std::numeric_limits<double>::min();
constexpr double kLargest = std::numeric_limits<double>::max();
const KdGePoint3d kOrigin;

using Text = std::wstring;

const std::vector<VariableInfo>& table() {
  static const std::vector<VariableInfo> variables = {
      {L"APERTURE", kProfile, kOpen, 10, "", 0, 1, 50},
      {L"AUNITS", kDrawing, kOpen, 0, "$AUNITS", 70, 0, 4},
      {L"AUPREC", kDrawing, kOpen, 0, "$AUPREC", 70, 0, 8},
      {L"CECOLOR", kDrawing, kOpen, Text(L"BYLAYER"), "$CECOLOR", 62},
      {L"CELTSCALE", kDrawing, kOpen, 1.0, "$CELTSCALE", 40, kLeastPositive, kLargest},
      {L"CELTYPE", kDrawing, kOpen, Text(L"BYLAYER"), "$CELTYPE", 6, 0, 0, VariableNames::linetype},
      {L"CELWEIGHT", kDrawing, kOpen, -1, "$CELWEIGHT", 370, -3, 211},
      {L"CLAYER", kDrawing, kOpen, Text(L"0"), "$CLAYER", 8, 0, 0, VariableNames::layer},
      {L"CMDECHO", kSession, kOpen, 1, "", 0, 0, 1},
      {L"CMLJUST", kDrawing, kOpen, 0, "$CMLJUST", 70, 0, 2},
      {L"CMLSCALE", kDrawing, kOpen, 1.0, "$CMLSCALE", 40},
      {L"CMLSTYLE", kDrawing, kOpen, Text(L"STANDARD"), "$CMLSTYLE", 2, 0, 0, VariableNames::mlineStyle},
      {L"DIMZIN", kDrawing, kOpen, 0, "$DIMZIN", 70, 0, 15},
      {L"DWGNAME", kSession, kReadOnly, Text()},
      {L"DWGPREFIX", kSession, kReadOnly, Text()},
      {L"ELEVATION", kDrawing, kOpen, 0.0, "$ELEVATION", 40},
      {L"ERRNO", kSession, kReadOnly, 0},
      {L"FILEDIA", kProfile, kOpen, 1, "", 0, 0, 1},
      {L"FILLMODE", kDrawing, kOpen, 1, "$FILLMODE", 70, 0, 1},
      {L"INSUNITS", kDrawing, kOpen, 0, "$INSUNITS", 70, 0, 24},
      {L"LASTPOINT", kSession, kOpen, kOrigin},
      {L"LTSCALE", kDrawing, kOpen, 1.0, "$LTSCALE", 40, kLeastPositive, kLargest},
      {L"LUNITS", kDrawing, kOpen, 2, "$LUNITS", 70, 1, 5},
      {L"LUPREC", kDrawing, kOpen, 4, "$LUPREC", 70, 0, 8},
      {L"MEASUREMENT", kDrawing, kOpen, 0, "$MEASUREMENT", 70, 0, 1},
      {L"ORTHOMODE", kDrawing, kOpen, 0, "$ORTHOMODE", 70, 0, 1},
      {L"OSMODE", kProfile, kOpen, 39, "", 0, 0, 32767},
      {L"PICKBOX", kProfile, kOpen, 3, "", 0, 0, 50},
      {L"UCSORG", kDrawing, kReadOnly, kOrigin, "$UCSORG", 10},
      {L"UCSXDIR", kDrawing, kReadOnly, KdGePoint3d{1, 0, 0}, "$UCSXDIR", 10},
      {L"UCSYDIR", kDrawing, kReadOnly, KdGePoint3d{0, 1, 0}, "$UCSYDIR", 10},
      {L"VIEWCTR", kSession, kReadOnly, kOrigin},
      {L"VIEWSIZE", kSession, kReadOnly, 1.0},
      {L"WORLDUCS", kDrawing, kReadOnly, 1},
  };
  return variables;
}

const VariableInfo* findCapitals(std::wstring_view name) {
  static const auto byName = [] {
    std::unordered_map<std::wstring_view, const VariableInfo*> all;
    for (const VariableInfo& variable : table()) all.emplace(variable.name, &variable);
    return all;
  }();
  const auto found = byName.find(name);
  return found == byName.end() ? nullptr : found->second;
}

}  // namespace

std::span<const VariableInfo> systemVariables() {
  return table();
}

const VariableInfo* findVariable(std::wstring_view name) {
  // Programs write the names as they are, people as they like.
  const VariableInfo* const found = findCapitals(name);
  return found ? found : findCapitals(upperCase(name));
}

}  // namespace torva::db

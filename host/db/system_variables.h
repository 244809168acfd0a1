#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/export.h"
#include "base/result.h"

#include <kdrx/ge.h>

namespace torva::db {

class Database;
struct VariableInfo;

using VariableValue = std::variant<int, double, std::wstring, KdGePoint3d>;

/// Where a system variable is kept.
enum class VariableHome { drawing, profile, session };

/// The system variables: one table says name, type, home, range and first value.
class TORVA_API SystemVariables {
 public:
  /// `drawing` may be null; variables of the drawing then have their first values and cannot be set.
  explicit SystemVariables(Database* drawing);
  /// The drawing whose header is read and written from now on.
  void setDrawing(Database* drawing);

  /// Name in any case. @return unknownName
  Result<VariableValue> get(std::wstring_view name) const;
  /// @return unknownName, readOnly, invalidValue (type or range; the text says the range)
  Result<void> set(std::wstring_view name, const VariableValue& value);
  /// Sets a variable that users may only read (ERRNO, UCSXDIR...). Requires: the name exists and the type fits.
  void setInternally(std::wstring_view name, const VariableValue& value);
  bool has(std::wstring_view name) const;
  /// Whether users may only read it. False for an unknown name.
  bool isReadOnly(std::wstring_view name) const;
  std::vector<std::wstring> names() const;

  /// Values of all profile variables, for keeping and restoring.
  std::map<std::wstring, VariableValue> profileValues() const;

 private:
  /// Writes what the drawing's header does not say, be it by saying nothing: a variable that was set for a while leaves no
  /// trace.
  Result<void> keepInDrawing(const VariableInfo& variable, const VariableValue& value);

  Database* m_drawing;
  std::set<std::wstring_view> m_added;  // to the drawing's header, which did not have them
  std::vector<VariableValue> m_values;  // in the order of all variables; of profile and session it is the value
};

}  // namespace torva::db

#include "command/commands/setvar_command.h"

#include "base/numbers.h"
#include "base/text.h"
#include "command/editor.h"
#include "command/point_text.h"
#include "command/session.h"
#include "command/shown_values.h"
#include "command/variable_access.h"

namespace torva::command {

namespace {

/// Reads a text as a value of the type that `present` has.
struct ReadAs {
  const std::wstring& text;
  Editor& editor;

  std::optional<db::VariableValue> operator()(int) const {
    const auto value = parseInteger(utf8FromWide(text));
    if (!value || *value != static_cast<int>(*value)) return std::nullopt;
    return static_cast<int>(*value);
  }
  std::optional<db::VariableValue> operator()(double) const { return parseNumber(text); }
  std::optional<db::VariableValue> operator()(const std::wstring&) const { return text; }
  std::optional<db::VariableValue> operator()(const KdGePoint3d&) const {
    return parsePoint(text, {variableOr(editor.variables(), L"LASTPOINT", KdGePoint3d{})});
  }
};

void listVariables(Editor& editor) {
  for (const std::wstring& name : editor.variables().names()) {
    if (const auto value = editor.variable(name)) editor.print(name + L" = " + shown(*value));
  }
}

}  // namespace

void setvarCommand(Editor& editor) {
  std::wstring name;
  if (editor.getString(L"Variable name or [?]: ", Blanks::endAnswer, name) != kKdInputNormal) return;
  if (name == L"?") return listVariables(editor);
  if (editor.variables().has(name)) return setVariable(editor, name);
  editor.report({ErrorCode::unknownName, "unknown variable " + utf8FromWide(inQuotes(name))}, Fault::script);
}

void setVariable(Editor& editor, const std::wstring& name) {
  const std::wstring shownName = upperCase(name);
  const auto present = editor.variable(name);
  if (!present) return editor.report(present.error(), Fault::script);
  if (editor.variables().isReadOnly(name)) return editor.print(shownName + L" = " + shown(*present) + L" (read only)");

  std::wstring text;
  const std::wstring prompt = L"New value for " + shownName + L" <" + shown(*present) + L">: ";
  if (editor.getString(prompt, Blanks::endAnswer, text) != kKdInputNormal) return;
  const auto value = std::visit(ReadAs{text, editor}, *present);
  if (!value) {
    return editor.report({ErrorCode::invalidValue, utf8FromWide(inQuotes(text) + L" is no value for " + shownName)},
                         Fault::script);
  }
  storeVariable(editor, name, *value);
}

}  // namespace torva::command

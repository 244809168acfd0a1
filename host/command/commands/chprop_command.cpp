#include "command/commands/chprop_command.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/text.h"
#include "command/color_text.h"
#include "command/editor.h"
#include "command/point_text.h"
#include "command/selection.h"
#include "command/selection_summary.h"
#include "command/session.h"
#include "command/shown_values.h"
#include "db/entity_properties.h"
#include "db/record_groups.h"

namespace torva::command {

namespace {

using Change = db::EntityPropertyChange;

constexpr int kNameCode = 2;
constexpr double kWeightTolerance = 1e-6;  // hundredths of a millimetre
constexpr std::array kWeights = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

struct NamedWeight {
  std::wstring_view name;
  int value;
};
constexpr NamedWeight kNamedWeights[] = {{L"BYLAYER", -1}, {L"BYBLOCK", -2}, {L"DEFAULT", -3}};

std::wstring shownWeight(int weight) {
  const auto* named = std::ranges::find(kNamedWeights, weight, &NamedWeight::value);
  return named != std::end(kNamedWeights) ? std::wstring(named->name) : shown(weight / 100.0);
}

std::optional<int> weightOf(const std::wstring& text) {
  for (const NamedWeight& named : kNamedWeights) {
    if (equalsIgnoringCase(named.name, text)) return named.value;
  }
  const auto millimetres = parseNumber(text);
  const auto isMeant = [&](int weight) { return std::abs(*millimetres * 100 - weight) <= kWeightTolerance; };
  const auto* weight = millimetres ? std::ranges::find_if(kWeights, isMeant) : kWeights.end();
  return weight == kWeights.end() ? std::nullopt : std::optional(*weight);
}

/// The name of a symbol as its table spells it.
std::optional<std::wstring> symbolName(Editor& editor, dxf::RecordType table, const std::wstring& name) {
  const dxf::RecordId record = editor.database().findSymbol(table, name);
  if (record == dxf::kNoRecord) return std::nullopt;
  return db::firstText(editor.database().file(), record, kNameCode);
}

Result<void> takeColor(Editor& editor, const std::wstring& text, Change& change) {
  const auto color = colorFor(editor.database(), text);
  if (!color) return tl::unexpected(color.error());
  change.color = *color;
  return {};
}

Result<void> takeLayer(Editor& editor, const std::wstring& text, Change& change) {
  auto name = symbolName(editor, dxf::RecordType::layer, text);
  if (!name) return fail(ErrorCode::unknownName, "there is no layer " + utf8FromWide(inQuotes(text)));
  change.layer = std::move(name);
  return {};
}

Result<void> takeLinetype(Editor& editor, const std::wstring& text, Change& change) {
  const bool isLogical = equalsIgnoringCase(text, L"BYLAYER") || equalsIgnoringCase(text, L"BYBLOCK");
  auto name = isLogical ? std::optional(upperCase(text)) : symbolName(editor, dxf::RecordType::ltype, text);
  if (!name) {
    return fail(ErrorCode::unknownName, "the linetype " + utf8FromWide(inQuotes(text)) + " is not in the drawing");
  }
  change.linetype = std::move(name);
  return {};
}

Result<void> takeLineWeight(Editor& editor, const std::wstring& text, Change& change) {
  const auto weight = weightOf(text);
  if (!weight) {
    return fail(ErrorCode::invalidValue, utf8FromWide(inQuotes(text)) +
                                             " is no line weight: BYLAYER, BYBLOCK, DEFAULT, or one of 0, 0.05, 0.09, 0.13, "
                                             "0.15, 0.18, 0.2, 0.25, 0.3, 0.35, 0.4, 0.5, 0.53, 0.6, 0.7, 0.8, 0.9, 1, "
                                             "1.06, 1.2, 1.4, 1.58, 2 and 2.11 mm");
  }
  if (editor.database().file().version() < dxf::Version::r2000) {
    return fail(ErrorCode::notApplicable, "drawings before R2000 hold no line weights");
  }
  change.lineWeight = weight;
  return {};
}

/// What Enter leaves: the answer before, or else what the entities have.
template <class T, class Show>
std::wstring present(const std::optional<T>& answered, const std::optional<T>& common, const Show& show) {
  if (answered) return show(*answered);
  return common ? show(*common) : L"varies";
}

std::wstring itself(const std::wstring& name) {
  return name;
}

struct Property {
  std::wstring_view keyword;
  const wchar_t* prompt;
  std::wstring (*present)(const SelectionSummary&, const Change&);
  Result<void> (*take)(Editor&, const std::wstring&, Change&);
};

constexpr Property kProperties[] = {
    {L"Color", L"New color (name, 1-255, r,g,b, BYLAYER, BYBLOCK)",
     [](const SelectionSummary& summary, const Change& change) {
       return present(change.color, summary.color, [](const KdCmColor& color) { return shown(color); });
     },
     takeColor},
    {L"LAyer", L"New layer",
     [](const SelectionSummary& summary, const Change& change) { return present(change.layer, summary.layer, itself); },
     takeLayer},
    {L"LType", L"New linetype",
     [](const SelectionSummary& summary, const Change& change) {
       return present(change.linetype, summary.linetype, itself);
     },
     takeLinetype},
    {L"LWeight", L"New line weight (mm, BYLAYER, BYBLOCK, DEFAULT)",
     [](const SelectionSummary& summary, const Change& change) {
       return present(change.lineWeight, summary.lineWeight, shownWeight);
     },
     takeLineWeight},
};

/// The status of the question. An answer that cannot be is a fault and changes nothing.
int ask(Editor& editor, const Property& property, const SelectionSummary& summary, Change& change) {
  if (editor.initGet(kKdInitGetNone, nullptr) != kKdInputNormal) return kKdInputError;
  std::wstring text;
  const std::wstring prompt = std::wstring(property.prompt) + L" <" + property.present(summary, change) + L">: ";
  const int status = editor.getString(prompt, Blanks::endAnswer, text);
  if (status != kKdInputNormal) return status;
  if (const auto taken = property.take(editor, text, change); !taken) editor.report(taken.error(), Fault::script);
  return status;
}

/// Nothing when the user cancels.
std::optional<Change> askChange(Editor& editor, const SelectionSummary& summary) {
  Change change;
  for (;;) {
    std::wstring keyword;
    if (editor.initGet(kKdInitGetNone, L"Color LAyer LType LWeight") != kKdInputNormal) return std::nullopt;
    const int status = editor.getKeyword(L"Enter property to change [Color/LAyer/LType/LWeight]: ", keyword);
    if (status == kKdInputNone) return change;
    if (status != kKdInputNormal) return std::nullopt;
    const auto* property = std::ranges::find(kProperties, keyword, &Property::keyword);
    if (ask(editor, *property, summary, change) == kKdInputCancel) return std::nullopt;
  }
}

}  // namespace

void chpropCommand(Editor& editor) {
  const std::vector<dxf::RecordId> entities = selectObjects(editor, SelectionUse::change);
  if (entities.empty()) return;
  const auto change = askChange(editor, summaryOf(editor.database(), entities));
  if (!change) return;
  for (const dxf::RecordId entity : entities) db::changeEntityProperties(editor.database(), entity, *change);
}

}  // namespace torva::command

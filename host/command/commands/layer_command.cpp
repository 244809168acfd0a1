#include "command/commands/layer_command.h"

#include <algorithm>
#include <functional>

#include "base/text.h"
#include "command/color_text.h"
#include "command/commands/layer_names.h"
#include "command/confirmation.h"
#include "command/editor.h"
#include "command/session.h"
#include "command/variable_access.h"
#include "db/layers.h"
#include "db/record_groups.h"

namespace torva::command {

namespace {

using Change = std::function<void(db::LayerData&)>;

std::wstring currentLayer(Editor& editor) {
  return variableOr(editor.variables(), L"CLAYER", std::wstring(L"0"));
}

bool isCurrent(Editor& editor, const db::LayerData& layer) {
  return equalsIgnoringCase(layer.name, currentLayer(editor));
}

db::LayerData layerAt(Editor& editor, dxf::RecordId record) {
  return db::readLayer(editor.database().file(), record);
}

void refuse(Editor& editor, ErrorCode code, const std::wstring& text) {
  editor.report({code, utf8FromWide(text)}, Fault::script);
}

// Every option gives the status of its last question.

int askNames(Editor& editor, const std::wstring& prompt, std::wstring& names) {
  if (editor.initGet(kKdInitGetNone, nullptr) != kKdInputNormal) return kKdInputError;
  return editor.getString(prompt, Blanks::endAnswer, names);
}

int list(Editor& editor) {
  std::wstring names = L"*";
  const int status = askNames(editor, L"Enter layer name(s) to list <*>: ", names);
  if (status == kKdInputCancel) return status;
  for (const dxf::RecordId record : layersInList(editor, names)) {
    const db::LayerData layer = layerAt(editor, record);
    editor.print(L"  " + layer.name + (layer.isOff ? L"  off" : L"  on") + (layer.isFrozen ? L", frozen" : L"") +
                 (layer.isLocked ? L", locked" : L"") + L", color " + shown(layer.color) + L", linetype " + layer.linetype +
                 (isCurrent(editor, layer) ? L", current" : L""));
  }
  return status;
}

void makeCurrent(Editor& editor, const std::wstring& name) {
  const dxf::RecordId record = editor.database().findSymbol(dxf::RecordType::layer, name);
  if (record == dxf::kNoRecord) return refuse(editor, ErrorCode::unknownName, L"there is no layer " + inQuotes(name));
  const db::LayerData layer = layerAt(editor, record);
  if (layer.isFrozen) {
    return refuse(editor, ErrorCode::notApplicable,
                  L"the layer " + inQuotes(layer.name) + L" is frozen and cannot be current");
  }
  storeVariable(editor, L"CLAYER", layer.name);
}

/// False when there was none and none could be made.
bool add(Editor& editor, const std::wstring& name) {
  const auto added = db::addLayer(editor.database(), name);
  if (!added) editor.report(added.error(), Fault::script);
  return added.has_value();
}

int make(Editor& editor) {
  std::wstring name;
  const std::wstring prompt = L"Enter name for new layer (becomes the current layer) <" + currentLayer(editor) + L">: ";
  const int status = askNames(editor, prompt, name);
  if (status != kKdInputNormal) return status;
  const bool exists = editor.database().findSymbol(dxf::RecordType::layer, name) != dxf::kNoRecord;
  if (exists || add(editor, name)) makeCurrent(editor, name);
  return status;
}

int setCurrent(Editor& editor) {
  std::wstring name;
  const int status = askNames(editor, L"Enter layer name to make current <" + currentLayer(editor) + L">: ", name);
  if (status == kKdInputNormal) makeCurrent(editor, name);
  return status;
}

int addAll(Editor& editor) {
  std::wstring names;
  const int status = askNames(editor, L"Enter name list for new layer(s): ", names);
  if (status != kKdInputNormal) return status;
  for (const std::wstring& name : namesInList(names)) {
    if (editor.database().findSymbol(dxf::RecordType::layer, name) == dxf::kNoRecord) {
      add(editor, name);
    } else {
      editor.print(L"The layer " + inQuotes(name) + L" exists already.");
    }
  }
  return status;
}

/// Whether a change of the current layer is to be made. Frozen it could not stay current; turned off it hides what is drawn.
Confirmation confirmChangeOfCurrent(Editor& editor, const db::LayerData& before, const db::LayerData& after) {
  if (after.isFrozen && !before.isFrozen) {
    refuse(editor, ErrorCode::notApplicable, L"the layer " + inQuotes(before.name) + L" is current and cannot be frozen");
    return Confirmation::no;
  }
  if (!after.isOff || before.isOff) return Confirmation::yes;
  return askConfirmation(editor, L"Really want layer " + inQuotes(before.name) + L" (the current layer) off?");
}

int changeAll(Editor& editor, const std::wstring& names, const Change& change) {
  for (const dxf::RecordId record : layersInList(editor, names)) {
    const db::LayerData before = layerAt(editor, record);
    db::LayerData after = before;
    change(after);
    const Confirmation confirmation =
        isCurrent(editor, before) ? confirmChangeOfCurrent(editor, before, after) : Confirmation::yes;
    if (confirmation == Confirmation::cancelled) return kKdInputCancel;
    if (confirmation == Confirmation::yes) db::changeLayer(editor.database(), record, after);
  }
  return kKdInputNormal;
}

/// Asks for the layers of a change and makes it.
int askAndChange(Editor& editor, const std::wstring& what, const Change& change) {
  std::wstring names;
  const int status = askNames(editor, L"Enter name list of layer(s) " + what + L": ", names);
  return status == kKdInputNormal ? changeAll(editor, names, change) : status;
}

/// The same, Enter meaning the current layer.
int askAndChangeOrCurrent(Editor& editor, const std::wstring& what, const Change& change) {
  std::wstring names = currentLayer(editor);
  const int status = askNames(editor, L"Enter name list of layer(s) for " + what + L" <" + names + L">: ", names);
  return status == kKdInputCancel ? status : changeAll(editor, names, change);
}

int askColor(Editor& editor) {
  std::wstring text;
  const int status = askNames(editor, L"Enter color name, number (1-255) or r,g,b: ", text);
  if (status != kKdInputNormal) return status;
  const auto color = colorFor(editor.database(), text);
  if (!color) {
    editor.report(color.error(), Fault::script);
    return status;
  }
  if (color->isByLayer() || color->isByBlock()) {
    refuse(editor, ErrorCode::invalidValue, inQuotes(text) + L" is no color of a layer");
    return status;
  }
  return askAndChangeOrCurrent(editor, L"color " + shown(*color), [&](db::LayerData& layer) { layer.color = *color; });
}

void listLinetypes(Editor& editor) {
  const db::Database& drawing = editor.database();
  for (const dxf::RecordId record : drawing.symbols(dxf::RecordType::ltype)) {
    editor.print(L"  " + db::firstText(drawing.file(), record, 2));
  }
}

int askLinetype(Editor& editor) {
  for (;;) {
    std::wstring text = db::LayerData().linetype;
    if (editor.initGet(kKdInitGetNone, L"?") != kKdInputNormal) return kKdInputError;
    const int status = editor.getString(L"Enter loaded linetype name or [?] <" + text + L">: ", Blanks::endAnswer, text);
    if (status == kKdInputCancel) return status;
    if (status == kKdInputKeyword) {
      listLinetypes(editor);
      continue;
    }
    const db::Database& drawing = editor.database();
    const dxf::RecordId record = drawing.findSymbol(dxf::RecordType::ltype, text);
    if (record == dxf::kNoRecord) {
      refuse(editor, ErrorCode::unknownName, L"the linetype " + inQuotes(text) + L" is not in the drawing");
      return status;
    }
    const std::wstring name = db::firstText(drawing.file(), record, 2);
    return askAndChangeOrCurrent(editor, L"linetype " + name, [&](db::LayerData& layer) { layer.linetype = name; });
  }
}

struct Option {
  const wchar_t* keyword;
  int (*run)(Editor&);
};

constexpr Option kOptions[] = {
    {L"?", list},
    {L"Make", make},
    {L"Set", setCurrent},
    {L"New", addAll},
    {L"ON", [](Editor& e) { return askAndChange(e, L"to turn on", [](db::LayerData& layer) { layer.isOff = false; }); }},
    {L"OFF", [](Editor& e) { return askAndChange(e, L"to turn off", [](db::LayerData& layer) { layer.isOff = true; }); }},
    {L"Color", askColor},
    {L"Ltype", askLinetype},
    {L"Freeze",
     [](Editor& e) { return askAndChange(e, L"to freeze", [](db::LayerData& layer) { layer.isFrozen = true; }); }},
    {L"Thaw", [](Editor& e) { return askAndChange(e, L"to thaw", [](db::LayerData& layer) { layer.isFrozen = false; }); }},
    {L"LOck", [](Editor& e) { return askAndChange(e, L"to lock", [](db::LayerData& layer) { layer.isLocked = true; }); }},
    {L"Unlock",
     [](Editor& e) { return askAndChange(e, L"to unlock", [](db::LayerData& layer) { layer.isLocked = false; }); }},
};

std::wstring keywords(wchar_t separator) {
  std::wstring text;
  for (const Option& option : kOptions) text += (text.empty() ? L"" : std::wstring(1, separator)) + option.keyword;
  return text;
}

}  // namespace

void layerCommand(Editor& editor) {
  editor.print(L"Current layer: " + inQuotes(currentLayer(editor)));
  for (;;) {
    if (editor.initGet(kKdInitGetNone, keywords(L' ').c_str()) != kKdInputNormal) return;
    std::wstring keyword;
    if (editor.getKeyword(L"Enter an option [" + keywords(L'/') + L"]: ", keyword) != kKdInputNormal) return;
    const auto* option = std::ranges::find_if(kOptions, [&](const Option& o) { return keyword == o.keyword; });
    if (option->run(editor) == kKdInputCancel) return;
  }
}

}  // namespace torva::command

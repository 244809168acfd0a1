#include <algorithm>
#include <cstring>

#include "base/current.h"
#include "command/command_preview.h"
#include "command/editor.h"

#include <kdrx/db_database.h>
#include <kdrx/ed.h>
#include <kdrx/gs.h>

// The free functions of <kdrx/ed.h>, <kdrx/gs.h> and kdutPrint(): each passes on to the current editor. What the host throws
// ends here, as no exception may cross into a module.

namespace {

using torva::command::Blanks;
using torva::command::Editor;
using torva::command::FileUse;
using torva::db::VariableValue;

/// Calls `ask` with the current editor; kKdInputError when there is none or it fails.
template <class Ask>
int withEditor(Ask ask) noexcept {
  Editor* editor = torva::Current<Editor>::get();
  if (!editor) return kKdInputError;
  try {
    return ask(*editor);
  } catch (...) {
    return kKdInputError;
  }
}

std::wstring textOf(const wchar_t* text) {
  return text ? text : L"";
}

KdGePoint3d pointOf(const double p[3]) {
  return {p[0], p[1], p[2]};
}

void store(const KdGePoint3d& from, double to[3]) {
  to[0] = from.x;
  to[1] = from.y;
  to[2] = from.z;
}

void store(const std::wstring& from, wchar_t* to, int capacity) {
  if (!to || capacity <= 0) return;
  const std::size_t length = std::min(from.size(), static_cast<std::size_t>(capacity) - 1);
  std::copy_n(from.data(), length, to);
  to[length] = 0;
}

int storeValue(const VariableValue& value, KdResbuf& out) {
  if (const int* integer = std::get_if<int>(&value)) {
    const bool isShort = *integer == static_cast<std::int16_t>(*integer);
    out.restype = isShort ? kKdResultShort : kKdResultLong;
    if (isShort) {
      out.value.shortInteger = static_cast<std::int16_t>(*integer);
    } else {
      out.value.longInteger = *integer;
    }
  } else if (const double* real = std::get_if<double>(&value)) {
    out.restype = kKdResultReal;
    out.value.real = *real;
  } else if (const KdGePoint3d* point = std::get_if<KdGePoint3d>(&value)) {
    out.restype = kKdResultPoint;
    store(*point, out.value.point);
  } else {
    wchar_t* copy = nullptr;
    if (const int status = kdutNewString(std::get<std::wstring>(value).c_str(), &copy); status != kKdInputNormal)
      return status;
    out.restype = kKdResultString;
    out.value.string = copy;
  }
  return kKdInputNormal;
}

std::optional<VariableValue> valueOf(const KdResbuf& buffer) {
  switch (buffer.restype) {
    case kKdResultShort:
      return int{buffer.value.shortInteger};
    case kKdResultLong:
      return int{buffer.value.longInteger};
    case kKdResultReal:
      return buffer.value.real;
    case kKdResultPoint:
      return pointOf(buffer.value.point);
    case kKdResultString:
      return textOf(buffer.value.string);
    default:
      return std::nullopt;
  }
}

bool isCoordinateSystem(const KdResbuf* buffer) {
  return buffer && buffer->restype == kKdResultShort && buffer->value.shortInteger >= kKdWorld &&
         buffer->value.shortInteger <= kKdDisplay;
}

KdGePoint3d worldFrom(Editor& editor, const KdGePoint3d& point, int system) {
  if (system == kKdUser) return editor.toWorld(point);
  return system == kKdDisplay ? editor.view().toWorld(point) : point;
}

KdGePoint3d worldTo(Editor& editor, const KdGePoint3d& point, int system) {
  if (system == kKdUser) return editor.toUser(point);
  return system == kKdDisplay ? editor.view().toDisplay(point) : point;
}

}  // namespace

int kdedInitGet(int flags, const wchar_t* keywords) noexcept {
  return withEditor([&](Editor& editor) { return editor.initGet(flags, keywords); });
}

int kdedGetKword(const wchar_t* prompt, wchar_t* keyword, int capacity) noexcept {
  return withEditor([&](Editor& editor) {
    std::wstring answer;
    const int status = editor.getKeyword(textOf(prompt), answer);
    if (status == kKdInputNormal) store(answer, keyword, capacity);
    return status;
  });
}

int kdedEntSel(const wchar_t* prompt, KdName name, double point[3]) noexcept {
  if (!name || !point) return kKdInputError;
  name[0] = name[1] = 0;
  return withEditor([&](Editor& editor) {
    KdDbObjectId id;
    KdGePoint3d pick = pointOf(point);
    const int status = editor.selectEntity(textOf(prompt), id, pick);
    store(pick, point);
    if (status == kKdInputNormal && kddbGetName(name, id) != KdStatus::ok) return static_cast<int>(kKdInputError);
    return status;
  });
}

int kdedSetTool(const wchar_t* command) noexcept {
  if (!command) return kKdInputError;
  return withEditor([&](Editor& editor) {
    editor.setRunningTool(command);
    return kKdInputNormal;
  });
}

int kdedOfferPreview(const long* first, const double firstPoint[3]) noexcept {
  if (!first != !firstPoint) return kKdInputError;
  return withEditor([&](Editor& editor) {
    if (editor.runningTool().empty()) return kKdInputError;
    std::vector<torva::command::EntityPick> picks;
    if (first) {
      KdDbObjectId id;
      if (kddbGetObjectId(id, first) != KdStatus::ok) return kKdInputError;
      picks.push_back({editor.database().recordOf(id), pointOf(firstPoint)});
      if (picks.front().entity == torva::dxf::kNoRecord) return kKdInputError;
    }
    editor.offerPreview(torva::command::commandPreview(editor, editor.runningTool(), std::move(picks)));
    return kKdInputNormal;
  });
}

int kdedGetPoint(const double* base, const wchar_t* prompt, double point[3]) noexcept {
  if (!point) return kKdInputError;
  return withEditor([&](Editor& editor) {
    const KdGePoint3d from = base ? pointOf(base) : KdGePoint3d{};
    KdGePoint3d answer = pointOf(point);
    const int status = editor.getPoint(base ? &from : nullptr, textOf(prompt), answer);
    store(answer, point);
    return status;
  });
}

int kdedGetReal(const wchar_t* prompt, double* value) noexcept {
  if (!value) return kKdInputError;
  return withEditor([&](Editor& editor) { return editor.getReal(textOf(prompt), *value); });
}

int kdedGetInt(const wchar_t* prompt, int* value) noexcept {
  if (!value) return kKdInputError;
  return withEditor([&](Editor& editor) { return editor.getInteger(textOf(prompt), *value); });
}

int kdedGetString(int blanksAllowed, const wchar_t* prompt, wchar_t* text, int capacity) noexcept {
  return withEditor([&](Editor& editor) {
    std::wstring answer;
    const Blanks blanks = blanksAllowed ? Blanks::belongToAnswer : Blanks::endAnswer;
    const int status = editor.getString(textOf(prompt), blanks, answer);
    if (status == kKdInputNormal) store(answer, text, capacity);
    return status;
  });
}

int kdedGetInput(wchar_t* keyword) noexcept {
  if (keyword) keyword[0] = 0;
  return withEditor([&](Editor& editor) {
    if (editor.lastKeyword().empty()) return kKdInputError;
    store(editor.lastKeyword(), keyword, kKdInputCapacity);
    return kKdInputNormal;
  });
}

int kdedGetVar(const wchar_t* name, KdResbuf* value) noexcept {
  return withEditor([&](Editor& editor) {
    const auto found = editor.variable(name ? name : L"");
    return found && value ? storeValue(*found, *value) : kKdInputError;
  });
}

int kdedSetVar(const wchar_t* name, const KdResbuf* value) noexcept {
  return withEditor([&](Editor& editor) {
    auto given = value ? valueOf(*value) : std::nullopt;
    const auto present = editor.variables().get(textOf(name));
    if (!given || !present) return kKdInputError;
    // Whole numbers may be given for real variables.
    if (std::holds_alternative<double>(*present) && std::holds_alternative<int>(*given))
      given = double(std::get<int>(*given));
    return editor.variables().set(textOf(name), *given) ? kKdInputNormal : kKdInputError;
  });
}

int kdedGetFileD(const wchar_t* title, const wchar_t* start, const wchar_t* extension, int flags,
                 KdResbuf* result) noexcept {
  if (!result) return kKdInputError;
  return withEditor([&](Editor& editor) {
    std::wstring path;
    const auto use = flags & kKdFileToWrite ? FileUse::write : FileUse::read;
    const int status = editor.getFile({textOf(title), textOf(start), textOf(extension), use}, path);
    return status == kKdInputNormal ? storeValue(path, *result) : status;
  });
}

int kdedTrans(const double in[3], const KdResbuf* from, const KdResbuf* to, int isDisplacement, double out[3]) noexcept {
  if (!in || !out || !isCoordinateSystem(from) || !isCoordinateSystem(to)) return kKdInputError;
  return withEditor([&](Editor& editor) {
    const auto convert = [&](const KdGePoint3d& point) {
      return worldTo(editor, worldFrom(editor, point, from->value.shortInteger), to->value.shortInteger);
    };
    KdGePoint3d result = convert(pointOf(in));
    if (isDisplacement) result = KdGePoint3d{} + (result - convert({}));
    store(result, out);
    return kKdInputNormal;
  });
}

int kdedRedraw(const long* name, int mode) noexcept {
  if (mode < kKdRedrawShow || mode > kKdRedrawUnhighlight) return kKdInputError;
  return withEditor([&](Editor& editor) {
    if (!name) return kKdInputNormal;
    KdDbObjectId id;
    if (kddbGetObjectId(id, name) != KdStatus::ok) return kKdInputError;
    // The console shows nothing; a window would hide, show or highlight the entity here.
    return editor.database().recordOf(id) == torva::dxf::kNoRecord ? kKdInputError : kKdInputNormal;
  });
}

const KdGsView* kdgsActiveView() noexcept {
  Editor* editor = torva::Current<Editor>::get();
  if (!editor) return nullptr;
  try {
    return &editor->view();
  } catch (...) {
    return nullptr;
  }
}

void kdutPrint(const wchar_t* text) noexcept {
  if (!text) return;
  withEditor([&](Editor& editor) {
    editor.write(text);
    return kKdInputNormal;
  });
}

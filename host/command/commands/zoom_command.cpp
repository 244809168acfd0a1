#include "command/commands/zoom_command.h"

#include <cmath>

#include "command/editor.h"
#include "command/point_text.h"
#include "command/shown_values.h"

namespace torva::command {

namespace {

/// Sets the view unless the height is no usable one (zero, or beyond all numbers).
void show(Editor& editor, const KdGePoint3d& centerDcs, double height) {
  if (!std::isfinite(height) || !std::isnormal(height) || height <= 0) {
    return editor.report({ErrorCode::invalidValue, "the view cannot be that large or small"}, Fault::script);
  }
  editor.view().set(centerDcs, height);
}

void zoomCenter(Editor& editor) {
  KdGePoint3d center;
  if (editor.getPoint(nullptr, L"Center: ", center) != kKdInputNormal) return;
  double height = editor.view().height();
  if (editor.initGet(kKdNoZero | kKdNoNegative, nullptr) != kKdInputNormal) return;
  const int status = editor.getReal(L"Height <" + shown(height) + L">: ", height);
  if (status == kKdInputCancel) return;
  show(editor, editor.view().toDisplay(editor.toWorld(center)), height);
}

void zoomExtents(Editor& editor) {
  if (!editor.showExtents()) editor.print(L"Nothing is drawn.");
}

void zoomWindow(Editor& editor, const KdGePoint3d& first) {
  KdGePoint3d second;
  if (editor.getCorner(first, L"Opposite corner: ", second) != kKdInputNormal) return;
  geom::Box3 boxDcs;
  boxDcs.add(editor.view().toDisplay(editor.toWorld(first)));
  boxDcs.add(editor.view().toDisplay(editor.toWorld(second)));
  if (boxDcs.max.x == boxDcs.min.x && boxDcs.max.y == boxDcs.min.y) {
    return editor.report({ErrorCode::invalidValue, "the window has no size"}, Fault::script);
  }
  editor.view().fit(boxDcs);
}

void zoomWindow(Editor& editor) {
  KdGePoint3d first;
  if (editor.getPoint(nullptr, L"First corner: ", first) == kKdInputNormal) zoomWindow(editor, first);
}

/// Reads a factor: "2", "0.5", "2X".
std::optional<double> parseFactor(std::wstring text) {
  if (!text.empty() && (text.back() == L'x' || text.back() == L'X')) text.pop_back();
  const auto factor = parseNumber(text);
  return factor && *factor > 0 ? factor : std::nullopt;
}

void zoomBy(Editor& editor, const std::wstring& text) {
  const auto factor = parseFactor(text);
  if (!factor) {
    return editor.report({ErrorCode::invalidValue, "ZOOM takes Center, Extents, Window or a positive factor"},
                         Fault::script);
  }
  show(editor, editor.view().centerDcs(), editor.view().height() / *factor);
}

}  // namespace

void zoomCommand(Editor& editor) {
  if (editor.initGet(kKdInitGetNone, L"Center Extents Window") != kKdInputNormal) return;
  std::wstring answer;
  const int status = editor.getString(L"[Center/Extents/Window] or factor (2, 2X): ", Blanks::endAnswer, answer);
  if (status == kKdInputNormal) return zoomBy(editor, answer);
  if (status != kKdInputKeyword) return;
  if (editor.lastKeyword() == L"Center") return zoomCenter(editor);
  if (editor.lastKeyword() == L"Extents") return zoomExtents(editor);
  zoomWindow(editor);
}

}  // namespace torva::command

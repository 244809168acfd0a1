#include "command/plot_content.h"

#include "command/editor.h"

namespace torva::command {

namespace {

/// The part of the world that a view shows. A view that is not straight from above looks along the drawing, so that all may
/// be in it.
geom::Box3 shownBox(Editor& editor) {
  const view::View& view = editor.view();
  if (!view.isPlan()) return editor.picker().extents();
  const KdGePoint3d center = view.centerDcs();
  geom::Box3 box;
  for (const double x : {-0.5, 0.5}) {
    for (const double y : {-0.5, 0.5}) box.add(view.toWorld(center + KdGeVector3d{x * view.width(), y * view.height(), 0}));
  }
  return box;
}

}  // namespace

draw::DisplayList plotContent(Editor& editor) {
  draw::DisplayList list;
  const view::Picker& picker = editor.picker();
  for (const dxf::RecordId entity : editor.picker().query(shownBox(editor))) {
    if (picker.drawer().isPlotted(entity)) picker.drawer().draw(entity, list);
  }
  return list;
}

}  // namespace torva::command

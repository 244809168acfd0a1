#include "command/commands/plot_command.h"

#include <cmath>
#include <optional>

#include "base/text.h"
#include "command/editor.h"
#include "dxf/file_writer.h"

namespace torva::command {

namespace {

std::optional<PlotFormat> formatOf(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string::npos) return std::nullopt;
  const std::string extension = path.substr(dot + 1);
  if (equalsIgnoringCase(extension, "svg")) return PlotFormat::svg;
  if (equalsIgnoringCase(extension, "png")) return PlotFormat::png;
  if (equalsIgnoringCase(extension, "pdf")) return PlotFormat::pdf;
  return std::nullopt;
}

/// The part of the world that a view shows. A view that is not straight from above looks along the drawing, so that all may
/// be in it.
geom::Box3 shownBox(Editor& editor) {
  const view::View& view = editor.view();
  const KdGeVector3d sight = view.toWorld({0, 0, 1}) - view.toWorld({0, 0, 0});
  if (sight.x != 0 || sight.y != 0) return editor.picker().extents();
  const KdGePoint3d center = view.centerDcs();
  geom::Box3 box;
  for (const double x : {-0.5, 0.5}) {
    for (const double y : {-0.5, 0.5}) box.add(view.toWorld(center + KdGeVector3d{x * view.width(), y * view.height(), 0}));
  }
  return box;
}

}  // namespace

void plotCommand(Editor& editor) {
  std::wstring name;
  if (editor.getString(L"File name (.svg, .png, .pdf): ", Blanks::endAnswer, name) != kKdInputNormal) return;
  const std::string path = utf8FromWide(name);
  const auto format = formatOf(path);
  if (!format) {
    return editor.report({ErrorCode::invalidValue, "the plot's file name must end with .svg, .png or .pdf", path},
                         Fault::script);
  }
  const auto plotter = editor.plotter();
  if (!plotter) return editor.report(plotter.error(), Fault::drawing);

  draw::DisplayList list;
  const view::Picker& picker = editor.picker();
  for (const dxf::RecordId entity : editor.picker().query(shownBox(editor))) {
    if (picker.drawer().isPlotted(entity)) picker.drawer().draw(entity, list);
  }
  const auto plotted = (*plotter)->plot(list, editor.view(), *format);
  if (!plotted) return editor.report(plotted.error(), Fault::drawing);
  const auto written = dxf::replaceFile(path, {*plotted}, dxf::Backup::none);
  if (!written) return editor.report(written.error(), Fault::drawing);
  editor.print(L"Plotted to " + name + L".");
}

}  // namespace torva::command

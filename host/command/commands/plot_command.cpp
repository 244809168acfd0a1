#include "command/commands/plot_command.h"

#include <optional>

#include "base/text.h"
#include "command/editor.h"
#include "command/plot_content.h"
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

  const auto plotted = (*plotter)->plot(plotContent(editor), editor.view(), *format);
  if (!plotted) return editor.report(plotted.error(), Fault::drawing);
  const auto written = dxf::replaceFile(path, {*plotted}, dxf::Backup::none);
  if (!written) return editor.report(written.error(), Fault::drawing);
  editor.print(L"Plotted to " + name + L".");
}

}  // namespace torva::command

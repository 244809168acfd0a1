#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>

#include "command_line.h"
#include "main_window.h"
#include "runtime/host.h"
#include "window_source.h"

#include <QApplication>

using torva::command::OnFault;
using torva::runtime::Host;
using torva::runtime::HostOptions;

namespace {

enum ExitStatus : int { kAllWell = 0, kFault = 1, kWrongUsage = 2 };

struct Arguments {
  std::string drawing;  ///< Empty: a new one.
  std::vector<std::string> modules;
  std::string profileFolder;
};

/// Reads the arguments; with an exit status when there is nothing to do.
std::optional<ExitStatus> parse(int argc, char** argv, Arguments& arguments) {
  CLI::App app("TORVA multilines: draw and edit multilines in DXF drawings", "torva");
  app.set_version_flag("--version", "torva " TORVA_VERSION);
  app.add_option("DRAWING.dxf", arguments.drawing, "The drawing to open")->type_name("");
  app.add_option("--module", arguments.modules, "Load a module at once")->type_name("FILE")->expected(1)->take_all();
  app.add_option("--profile", arguments.profileFolder, "Folder of the user's settings")->type_name("DIR");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& end) {
    return app.exit(end) == 0 ? kAllWell : kWrongUsage;
  }
  return std::nullopt;
}

ExitStatus run(const Arguments& arguments) {
  WindowSource source;
  auto* commandLine = new CommandLine(source);
  HostOptions options;
  options.profileFolder = arguments.profileFolder;
  options.modules = arguments.modules;
  options.dialogUse = torva::runtime::DialogUse::shown;
  options.print = [commandLine](std::wstring_view text) { commandLine->print(text); };
  options.report = [commandLine](const std::string& line) { commandLine->report(line); };
  auto host = Host::create(options);
  if (!host) {
    std::fprintf(stderr, "%s\n", host.error().message().c_str());
    return kFault;
  }
  MainWindow window(**host, source, commandLine);
  window.show();
  if (!arguments.drawing.empty()) window.openFirst(QString::fromStdString(arguments.drawing));
  (*host)->editor().run(source, OnFault::goOn);
  window.keepLook();
  (*host)->stop();
  return kAllWell;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
  QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
  Arguments arguments;
  // Qt takes its own options away first.
  QApplication application(argc, argv);
  application.setApplicationName("torva");
  application.setQuitOnLastWindowClosed(false);
  if (const auto status = parse(argc, argv, arguments)) return *status;
  return run(arguments);
}

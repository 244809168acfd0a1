#include "arguments.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <string_view>

namespace {

constexpr int kLargestViewport = 32767;

bool parseSide(std::string_view text, int& side) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
  return error == std::errc() && end == text.data() + text.size() && side >= 1 && side <= kLargestViewport;
}

bool parseViewport(std::string_view text, Arguments& arguments) {
  const std::size_t cross = text.find_first_of("xX");
  return cross != std::string_view::npos && parseSide(text.substr(0, cross), arguments.widthPx) &&
         parseSide(text.substr(cross + 1), arguments.heightPx);
}

/// Scripts and commands in the order in which they stand among each other.
std::vector<GivenInput> inOrder(const CLI::App& app, const CLI::Option* scripts, const CLI::Option* commands) {
  std::vector<GivenInput> inputs;
  std::size_t script = 0, command = 0;
  for (const CLI::Option* option : app.parse_order()) {
    if (option == scripts) inputs.push_back({GivenInput::Kind::script, scripts->results().at(script++)});
    if (option == commands) inputs.push_back({GivenInput::Kind::command, commands->results().at(command++)});
  }
  return inputs;
}

ExitStatus finish(const CLI::App& app, const CLI::ParseError& end) {
  if (end.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    app.exit(end);
    return kAllWell;
  }
  std::fprintf(stderr, "torvac: %s (torvac --help lists the arguments)\n", end.what());
  return kWrongUsage;
}

}  // namespace

std::variant<Arguments, ExitStatus> parseArguments(int count, char** values) {
  Arguments arguments;
  std::vector<std::string> scripts, commands;
  std::string viewport;

  CLI::App app("Edits DXF drawings by script or at the terminal.", "torvac");
  app.set_version_flag("--version", "torvac " TORVA_VERSION, "Print the version and end");
  const auto* drawingOption =
      app.add_option("DRAWING.dxf", arguments.drawing, "The drawing to open; a new one when it is left out")->type_name("");
  const auto* scriptOption = app.add_option("--script", scripts, "Run a script")
                                 ->type_name("FILE")
                                 ->expected(1)
                                 ->take_all()
                                 ->allow_extra_args(false);
  const auto* commandOption = app.add_option("--command", commands, "Run a command line, or several")
                                  ->type_name("TEXT")
                                  ->expected(1)
                                  ->take_all()
                                  ->allow_extra_args(false);
  const auto* outputOption =
      app.add_option("--output", arguments.output, "Save the drawing there at the end")->type_name("OUT.dxf");
  app.add_option("--viewport", viewport, "Size of the viewport in pixels (1000x1000)")->type_name("WxH");
  app.add_option("--module", arguments.modules, "Load a module at once")
      ->type_name("FILE")
      ->expected(1)
      ->take_all()
      ->allow_extra_args(false);
  app.add_option("--profile", arguments.profileFolder, "Folder of the user's settings")->type_name("DIR");
  app.add_flag("--stop-on-error", arguments.stopsOnError, "End at the first fault, saving nothing to --output");
  app.add_flag("--recover", arguments.recovers, "Open a damaged drawing even if content is lost");
  app.add_flag("--backup", arguments.keepsBackup, "Keep the former file as .bak when saving");
  try {
    app.parse(count, values);
  } catch (const CLI::ParseError& end) {
    return finish(app, end);
  }
  if (!viewport.empty() && !parseViewport(viewport, arguments)) {
    std::fprintf(stderr, "torvac: --viewport takes WxH, both from 1 to %d, as in 1000x800\n", kLargestViewport);
    return kWrongUsage;
  }
  for (const CLI::Option* option : {drawingOption, outputOption}) {
    if (option->count() == 0 || !option->as<std::string>().empty()) continue;
    std::fprintf(stderr, "torvac: the file name given for %s is empty\n", option->get_name().c_str());
    return kWrongUsage;
  }
  arguments.inputs = inOrder(app, scriptOption, commandOption);
  return arguments;
}

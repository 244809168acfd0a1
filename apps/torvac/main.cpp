#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>

#include "arguments.h"
#include "heap.h"
#include "runtime/host.h"
#include "terminal_source.h"

using torva::Error;
using torva::Result;
using torva::command::Editor;
using torva::command::Fault;
using torva::command::InputSource;
using torva::command::OnFault;
using torva::command::ScriptSource;
using torva::runtime::Host;
using torva::runtime::HostOptions;

namespace {

/// Scripts stand alone: what one of them sets must not change what the next one, or another at the same time, picks.
torva::runtime::ProfileUse profileUseOf(const Arguments& arguments) {
  using enum torva::runtime::ProfileUse;
  const bool isDialogue = arguments.inputs.empty() && ::isatty(STDIN_FILENO);
  return isDialogue || !arguments.profileFolder.empty() ? restoreAndKeep : none;
}

HostOptions optionsFrom(const Arguments& arguments) {
  HostOptions options;
  options.profileUse = profileUseOf(arguments);
  options.profileFolder = arguments.profileFolder;
  options.modules = arguments.modules;
  options.viewportWidthPx = arguments.widthPx;
  options.viewportHeightPx = arguments.heightPx;
  return options;
}

/// Standard input: with line editing at a terminal, else as a script.
std::unique_ptr<InputSource> standardInput() {
  if (!::isatty(STDIN_FILENO)) return ScriptSource::standardInput();
  if (void* library = ::dlopen("libtorva-terminal.so", RTLD_NOW | RTLD_LOCAL)) {
    const auto create = reinterpret_cast<CreateTerminalSource>(::dlsym(library, "torvaCreateTerminalSource"));
    if (create) return std::unique_ptr<InputSource>(create());
  }
  std::fprintf(stderr, "warning: no line editing: %s\n", ::dlerror());
  return ScriptSource::standardInput();
}

Result<std::unique_ptr<InputSource>> sourceOf(const GivenInput& input) {
  if (input.kind == GivenInput::Kind::command) return ScriptSource::fromText(input.text, "--command");
  return ScriptSource::open(input.text).map([](auto script) -> std::unique_ptr<InputSource> { return script; });
}

bool runStandardInput(Editor& editor, const Arguments& arguments, OnFault onFault) {
  const auto source = standardInput();
  const Fault fault = editor.run(*source, onFault);
  // At a terminal ^D ends without a question, as no answer can follow it.
  if (!source->echoes() && !editor.isQuitRequested() && arguments.output.empty() && editor.hasUnsavedChanges()) {
    editor.report({torva::ErrorCode::cancelled, "warning: the drawing's changes were not saved"}, Fault::none);
  }
  return fault == Fault::none;
}

/// Runs what the command line asks for, in its order. False after a fault.
bool runInputs(Editor& editor, const Arguments& arguments) {
  const OnFault onFault = arguments.stopsOnError ? OnFault::stop : OnFault::goOn;
  if (arguments.inputs.empty()) return runStandardInput(editor, arguments, onFault);
  bool isWell = true;
  for (const GivenInput& input : arguments.inputs) {
    if (editor.isQuitRequested() || (!isWell && arguments.stopsOnError)) break;
    const auto source = sourceOf(input);
    if (!source) editor.report(source.error(), Fault::script);
    if (!source || editor.run(**source, onFault) != Fault::none) isWell = false;
  }
  return isWell;
}

bool runAll(Editor& editor, const Arguments& arguments) {
  editor.fileHandling().keepsBackup = arguments.keepsBackup;
  if (arguments.recovers) editor.fileHandling().damagePolicy = torva::dxf::DamagePolicy::recover;
  if (!arguments.drawing.empty()) {
    if (const auto opened = editor.openDrawing(arguments.drawing); !opened) {
      editor.report(opened.error(), Fault::drawing);
      return false;
    }
  }
  const bool isWell = runInputs(editor, arguments);
  if (arguments.output.empty() || editor.hasOpeningFailed() || (!isWell && arguments.stopsOnError)) return isWell;
  const auto saved = editor.saveDrawing(arguments.output);
  if (!saved) editor.report(saved.error(), Fault::drawing);
  return saved && isWell;
}

/// Who started us without standard streams, or stops reading ours, must not make a drawing's file take their place or keep
/// the drawing from being saved.
void guardStandardStreams() {
  int descriptor = ::open("/dev/null", O_RDWR);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::dup(descriptor);
  if (descriptor > STDERR_FILENO) ::close(descriptor);
  ::signal(SIGPIPE, SIG_IGN);
}

ExitStatus run(int argc, char** argv) {
  const auto parsed = parseArguments(argc, argv);
  if (const ExitStatus* status = std::get_if<ExitStatus>(&parsed)) return *status;
  const Arguments& arguments = std::get<Arguments>(parsed);

  auto host = Host::create(optionsFrom(arguments));
  if (!host) {
    std::fprintf(stderr, "%s\n", host.error().message().c_str());
    return kFault;
  }
  bool isWell = runAll((*host)->editor(), arguments);
  (*host)->stop();
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    std::fprintf(stderr, "cannot write to standard output\n");
    isWell = false;
  }
  // All is said and saved; the memory goes with the process.
  std::_Exit(isWell ? kAllWell : kFault);
}

}  // namespace

int main(int argc, char** argv) {
  guardStandardStreams();
  useHugePages();
  try {
    return run(argc, argv);
  } catch (const std::exception& thrown) {
    std::fprintf(stderr, "torvac cannot go on: %s\n", thrown.what());
    return kFault;
  }
}

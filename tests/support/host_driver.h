#pragma once

#include <memory>
#include <string>

#include "command/input_source.h"
#include "runtime/host.h"
#include "support/temporary_folder.h"

/// A host with a profile of its own, and what it prints and reports.
class HostDriver {
 protected:
  virtual ~HostDriver() = default;
  void startHost(torva::runtime::DialogUse dialogUse = torva::runtime::DialogUse::none,
                 const std::string& programFolder = TORVA_BINARY_DIR "/bin") {
    torva::runtime::HostOptions options;
    options.profileFolder = folder.path("profile");
    options.programFolder = programFolder;
    options.dialogUse = dialogUse;
    options.print = [this](std::wstring_view text) { print(text); };
    options.report = [this](const std::string& text) { reported += text + "\n"; };
    host.reset();
    host = std::move(*torva::runtime::Host::create(options));
  }
  torva::command::Fault run(const std::string& script) {
    return host->editor().run(*torva::command::ScriptSource::fromText(script, "test"), torva::command::OnFault::goOn);
  }
  virtual void print(std::wstring_view text) { printed += text; }
  torva::db::Database& drawing() { return host->editor().database(); }

  TemporaryFolder folder;
  std::unique_ptr<torva::runtime::Host> host;
  std::wstring printed;
  std::string reported;
};

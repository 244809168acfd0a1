#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "base/text.h"
#include "command/built_in_commands.h"
#include "command/editor.h"

namespace torva::command {

/// A drawing from the short form of test::groupsFrom().
std::unique_ptr<db::Database> drawingFrom(std::string_view shortForm);

/// The entities of model space that are there, in drawing order.
std::vector<dxf::Handle> handlesIn(const db::Database& database);

/// A command line whose output and faults are kept, on a drawing with a multiline (handle 2F, along x from 0,0 to 10,0) and
/// a line (30, from 0,5 to 10,5).
class TestEditor {
 public:
  TestEditor();

  /// Runs a script; the command ASK calls `ask`.
  Fault run(const std::string& script, OnFault onFault = OnFault::goOn);

  std::function<void(Editor&)> ask = [](Editor&) {};
  CommandStack commands;
  std::wstring output;
  std::vector<std::string> faults;
  Editor editor;
};

}  // namespace torva::command

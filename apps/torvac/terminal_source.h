#pragma once

#include <memory>
#include <string>

#include "command/input_source.h"

/// Standard input at a terminal, with line editing and history. ^C cancels the running command, ^D ends. Lives in
/// libtorva-terminal.so, which is loaded when it is needed, so that scripts do not wait for the editing library.
class TerminalSource final : public torva::command::InputSource {
 public:
  TerminalSource();
  ~TerminalSource() override;

  Line next(const torva::command::Question& question) override;
  std::string name() const override { return {}; }
  bool echoes() const override { return false; }

 private:
  class Editing;
  std::unique_ptr<Editing> m_editing;
};

/// The function that libtorva-terminal.so exports under the name "torvaCreateTerminalSource"; the caller owns the result.
using CreateTerminalSource = torva::command::InputSource* (*)();

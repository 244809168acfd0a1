#pragma once

// The module's commands, called by the host's command stack. Each opens the resource library afresh and makes it the current
// one while it runs. Without the library a command does nothing and shows nothing.

/// Shows the multiline style manager.
void cmd_kvmlstyle() noexcept;
/// Shows the picker of editing tools, then runs the chosen tool.
void cmd_kvmledit() noexcept;
/// Asks for an editing tool by keyword, then runs it.
void cmd_kvmleditcli() noexcept;

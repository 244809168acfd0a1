#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/export.h"

#include <kdrx/rx.h>

namespace torva::command {

/// Flag of the host's own: the command works on the undo history or on the drawing as a whole, so it is no undo step itself.
inline constexpr int kIsNoUndoStep = 0x10000;

/// A command as the command line knows it.
struct Command {
  std::wstring group;
  std::wstring globalName;  ///< Capitals.
  std::wstring localName;
  int flags = 0;
  std::function<void()> run;
  const void* code = nullptr;  ///< Address of the module's function; null for the host's own commands.
};

/// All commands by group. Names are found ignoring case, global ones also with a leading underscore.
class TORVA_API CommandStack final : public KdEdCommandStack {
 public:
  KdStatus addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName, int flags,
                      KdCommandFunction function, void* context, int functionCode, KdModuleHandle resources,
                      void** record) override;
  KdStatus removeGroup(const wchar_t* group) override;

  /// Adds a command of the host's own. @return duplicateKey
  KdStatus add(Command command);

  /// Removes the commands for which `isMeant` is true: those of a module that goes.
  void removeIf(const std::function<bool(const Command&)>& isMeant);

  /// Called with a name (capitals) that no command has; true when it brought a command of that name. One loader at a time.
  void setLoader(std::function<bool(const std::wstring&)> loader) { m_loader = std::move(loader); }

  /// The command of a name, asking the loader when there is none; null when there is none after that. Valid until a command
  /// is added or removed.
  const Command* find(std::wstring_view name);
  /// Global names of all commands, sorted; those of modules that are not loaded are not among them.
  std::vector<std::wstring> names() const;

 private:
  const Command* findKnown(std::wstring_view name) const;

  std::vector<std::unique_ptr<Command>> m_commands;
  std::function<bool(const std::wstring&)> m_loader;
};

}  // namespace torva::command

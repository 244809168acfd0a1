#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "command/editor.h"
#include "runtime/profile.h"

namespace torva::runtime {

/// Whether the user's settings are brought back at the start and kept at the end.
enum class ProfileUse { restoreAndKeep, none };

/// Whether commands may show dialogs. With `shown` the program runs a QApplication for as long as the host lives.
enum class DialogUse { none, shown };

struct HostOptions {
  ProfileUse profileUse = ProfileUse::restoreAndKeep;
  std::string profileFolder;         ///< Empty: $XDG_CONFIG_HOME/torva, else ~/.config/torva.
  std::vector<std::string> modules;  ///< Loaded at once, besides those found beside the program and in the root folder.
  DialogUse dialogUse = DialogUse::none;
  int viewportWidthPx = 1000, viewportHeightPx = 1000;
  std::function<void(std::wstring_view)> print;    ///< Shows a piece of output as it stands; empty: on standard output.
  std::function<void(const std::string&)> report;  ///< Shows a fault, a line without its end; empty: on standard error.
  std::string programFolder;  ///< Empty: that of the running program. The folder above is the root folder.
};

/// One running host: registry, commands, modules, resource libraries, profile and the editor. Both programs build one and
/// run it. One host at a time in a process, on one thread.
///
/// Modules whose manifest lies beside the program or in the root folder are loaded when one of their commands is first
/// given. At the end the modules are stopped and the profile keeps what changed; a profile that cannot be written is
/// reported.
class TORVA_API Host {
 public:
  /// @return fileNotFound, libraryNotLoadable or moduleRefused when one of `options.modules` cannot be loaded
  static Result<std::unique_ptr<Host>> create(const HostOptions& options);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Stops the modules and keeps the profile, as the destructor does, but frees nothing: for a process that ends now, where
  /// taking a large drawing apart would only cost time. Nothing else may be asked of the host after that.
  void stop();

  command::Editor& editor();
  /// Names of all commands, sorted: also of those whose module is not loaded yet.
  std::vector<std::wstring> commandNames() const;
  /// Where the pages of the user guide lie.
  std::string guideFolder() const;
  /// The user's settings. Without a profile in use they are empty, and nothing is kept.
  Profile& profile();
  /// Opens a drawing in the editor, which keeps to `policy` from now on; errors as of dxf::DrawingFile::open(), findings are
  /// reported as warnings.
  Result<void> openDrawing(const std::string& path, dxf::DamagePolicy policy);
  /// Saves the editor's drawing, keeping a backup if the editor does; errors as of dxf::DrawingFile::save().
  Result<void> saveDrawing(const std::string& path);

 private:
  Host();
  class Imp;
  std::unique_ptr<Imp> m_imp;
};

}  // namespace torva::runtime

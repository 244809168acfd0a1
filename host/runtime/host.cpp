#include "runtime/host.h"

#include <cstdio>
#include <set>
#include <utility>

#include "base/current.h"
#include "base/text.h"
#include "command/built_in_commands.h"
#include "runtime/folders.h"
#include "runtime/module_manifests.h"
#include "runtime/profile_variables.h"
#include "runtime/runtime.h"

namespace torva::runtime {
namespace {

/// Prints to the standard output.
class Printer {
 public:
  void operator()(std::wstring_view text) {
    m_bytes.clear();
    appendUtf8(m_bytes, text);
    std::fwrite(m_bytes.data(), 1, m_bytes.size(), stdout);
  }

 private:
  std::string m_bytes;  // kept for its memory
};

void reportToStandardError(const std::string& text) {
  // Output first, so that a fault stands behind what led to it where both go to one place.
  std::fflush(stdout);
  std::fprintf(stderr, "%s\n", text.c_str());
}

std::string profileFolderOf(const HostOptions& options) {
  if (options.profileUse == ProfileUse::none) return {};
  return options.profileFolder.empty() ? defaultProfileFolder() : options.profileFolder;
}

}  // namespace

class TORVA_INTERNAL Host::Imp {
 public:
  explicit Imp(const HostOptions& options);
  ~Imp() { stop(); }
  void stop();

  command::Editor& editor() { return m_editor; }
  std::vector<std::wstring> commandNames() const;
  std::string guideFolder() const { return m_folders.root + "/docs/guide"; }
  Profile& profile() { return m_profile; }
  Result<void> load(const std::string& module) { return m_runtime.modules.load(module); }

 private:
  bool loadModuleOf(const std::wstring& command);
  void warn(const Error& error) { m_editor.report(error, command::Fault::none); }

  const Folders m_folders;
  command::CommandStack m_commands;
  command::Editor m_editor;
  Runtime m_runtime;
  Current<Runtime> m_currentRuntime{m_runtime};
  const ProfileUse m_profileUse;
  bool m_isStopped = false;
  Profile m_profile;
  Current<Profile> m_currentProfile{m_profile};
  std::map<std::wstring, db::VariableValue> m_keptVariables;
  std::map<std::wstring, std::string> m_moduleOfCommand;
};

Host::Imp::Imp(const HostOptions& options)
    : m_folders(Folders::of(options.programFolder)),
      m_editor(m_commands, options.print ? options.print : Printer(),
               options.report ? options.report : reportToStandardError),
      m_runtime(m_commands, m_folders, options.dialogUse),
      m_profileUse(options.profileUse),
      m_profile(profileFolderOf(options)) {
  m_editor.setViewport(options.viewportWidthPx, options.viewportHeightPx);
  command::registerBuiltInCommands(m_commands, m_editor);
  m_moduleOfCommand = readModuleManifests({m_folders.program, m_folders.root});
  m_commands.setLoader([this](const std::wstring& command) { return loadModuleOf(command); });
  if (m_profileUse == ProfileUse::restoreAndKeep) restoreVariables(m_profile, m_editor.variables());
  m_keptVariables = m_editor.variables().profileValues();
}

void Host::Imp::stop() {
  if (std::exchange(m_isStopped, true)) return;
  m_commands.setLoader(nullptr);
  m_runtime.modules.unloadAll([this](const Error& error) { warn(error); });
  if (m_profileUse == ProfileUse::none) return;
  keepVariables(m_editor.variables(), m_keptVariables, m_profile);
  if (auto saved = m_profile.save(); !saved) {
    saved.error().text.insert(0, "warning: ");
    warn(saved.error());
  }
}

std::vector<std::wstring> Host::Imp::commandNames() const {
  std::set<std::wstring> names;
  for (const std::wstring& name : m_commands.names()) names.insert(name);
  for (const auto& [name, module] : m_moduleOfCommand) names.insert(name);
  return {names.begin(), names.end()};
}

bool Host::Imp::loadModuleOf(const std::wstring& command) {
  const auto found = m_moduleOfCommand.find(command);
  if (found == m_moduleOfCommand.end()) return false;
  const auto loaded = load(found->second);
  if (!loaded) warn(loaded.error());
  return loaded.has_value();
}

Host::Host() = default;
Host::~Host() = default;

Result<std::unique_ptr<Host>> Host::create(const HostOptions& options) {
  std::unique_ptr<Host> host(new Host);
  host->m_imp = std::make_unique<Imp>(options);
  for (const std::string& module : options.modules) {
    if (auto loaded = host->m_imp->load(module); !loaded) return tl::unexpected(loaded.error());
  }
  return host;
}

void Host::stop() {
  m_imp->stop();
}

command::Editor& Host::editor() {
  return m_imp->editor();
}

std::vector<std::wstring> Host::commandNames() const {
  return m_imp->commandNames();
}

std::string Host::guideFolder() const {
  return m_imp->guideFolder();
}

Profile& Host::profile() {
  return m_imp->profile();
}

Result<void> Host::openDrawing(const std::string& path, dxf::DamagePolicy policy) {
  editor().fileHandling().damagePolicy = policy;
  return editor().openDrawing(path);
}

Result<void> Host::saveDrawing(const std::string& path) {
  dxf::SaveOptions options;
  options.keepsBackup = editor().fileHandling().keepsBackup;
  return editor().database().save(path, options);
}

}  // namespace torva::runtime

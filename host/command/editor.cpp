#include "command/editor.h"

#include <algorithm>
#include <exception>
#include <fmt/format.h>
#include <utility>

#include "base/text.h"
#include "command/commands/setvar_command.h"
#include "command/plotter_library.h"
#include "command/refusals.h"
#include "command/session.h"
#include "command/variable_access.h"

namespace torva::command {

namespace {

constexpr std::size_t kShownFindings = 20;

Error warningOf(const dxf::Finding& finding, const std::string& path, dxf::Form form) {
  if (form == dxf::Form::text || finding.line == 0) {
    return {ErrorCode::damagedDrawing, "warning: " + finding.text, path, finding.line};
  }
  return {ErrorCode::damagedDrawing, fmt::format("warning: {} (at byte {})", finding.text, finding.line), path};
}

}  // namespace

Editor::Editor(CommandStack& commands, std::function<void(std::wstring_view)> print,
               std::function<void(const std::string&)> report)
    : m_commands(commands), m_variables(nullptr), m_session(std::make_unique<Session>(std::move(print), std::move(report))) {
  m_session->currentEditor.emplace(*this);
  setDatabase(db::Database::create());
}

Editor::~Editor() {
  m_variables.setDrawing(nullptr);
}

void Editor::setDatabase(std::unique_ptr<db::Database> database, std::unique_ptr<view::Picker> picker) {
  m_picker.reset();
  m_view.reset();
  m_session->userPlane.reset();
  m_session->formerPlanes.clear();
  m_session->previousSelection.clear();
  m_session->pickedFirst = {};
  m_session->currentDatabase.reset();
  m_session->currentDatabase.emplace(*database);
  m_variables.setDrawing(database.get());
  m_database = std::move(database);
  m_picker = std::move(picker);
}

view::View& Editor::view() {
  if (!m_view) m_view = std::make_unique<view::View>(view::View::ofDrawing(*m_database, m_widthPx, m_heightPx));
  return *m_view;
}

view::Picker& Editor::picker() {
  if (!m_picker) m_picker = std::make_unique<view::Picker>(*m_database);
  return *m_picker;
}

bool Editor::showExtents() {
  constexpr double kMargin = 0.02;  // share of the size that stays free at each side
  const geom::Box3 boxWcs = picker().extents();
  if (boxWcs.isEmpty()) return false;
  geom::Box3 boxDcs;
  for (int corner = 0; corner < 8; ++corner) {
    boxDcs.add(view().toDisplay({corner & 1 ? boxWcs.max.x : boxWcs.min.x, corner & 2 ? boxWcs.max.y : boxWcs.min.y,
                                 corner & 4 ? boxWcs.max.z : boxWcs.min.z}));
  }
  view().fit(boxDcs, kMargin);
  return true;
}

void Editor::setViewport(int widthPx, int heightPx) {
  m_widthPx = widthPx;
  m_heightPx = heightPx;
  if (m_view) m_view->resize(widthPx, heightPx);
}

Result<void> Editor::openDrawing(const std::string& path) {
  return open({path, m_fileHandling.damagePolicy});
}

Result<void> Editor::openCopy(const std::string& path, const dxf::FileOrigin& original) {
  return open({path, dxf::DamagePolicy::recover, original});
}

Result<void> Editor::open(const OpeningRequest& request) {
  auto opened = m_opener(request);
  const bool isCancelled = !opened && opened.error().code == ErrorCode::cancelled;
  if (!isCancelled) m_hasOpeningFailed = !opened;
  if (!opened) return tl::unexpected(opened.error());
  warnOf(opened->findings, request.path, opened->database->file().form());
  setDatabase(std::move(opened->database), std::move(opened->picker));
  return {};
}

void Editor::warnOf(const std::vector<dxf::Finding>& findings, const std::string& path, dxf::Form form) {
  for (std::size_t i = 0; i < findings.size() && i < kShownFindings; ++i) {
    report(warningOf(findings[i], path, form), Fault::none);
  }
  if (findings.size() <= kShownFindings) return;
  const std::string text = fmt::format("warning: {} more of the kind", findings.size() - kShownFindings);
  report({ErrorCode::damagedDrawing, text, path}, Fault::none);
}

void Editor::beginNewDrawing() {
  m_hasOpeningFailed = false;
  setDatabase(db::Database::create());
}

Result<void> Editor::saveDrawing(const std::string& path, ChangedFile changedFile) {
  dxf::SaveOptions options;
  options.keepsBackup = m_fileHandling.keepsBackup;
  options.replacesChangedFile = changedFile == ChangedFile::replace;
  return m_database->save(path, options);
}

bool Editor::hasUnsavedChanges() const {
  return m_database->file().isModified();
}

bool Editor::isChangedOnDisk() const {
  return !m_database->file().isUnchangedOnDisk();
}

Fault Editor::run(InputSource& source, OnFault onFault) {
  Session::Input outer = std::exchange(m_session->input, Session::Input{&source});
  while (!isQuitRequested()) {
    const Answer answer = m_session->ask({Question::Kind::command, L"Command: "});
    if (answer.kind == Answer::Kind::text) execute(answer.text);
    if (m_session->input.hasEnded) break;
    if (answer.kind == Answer::Kind::cancel) setPickedFirst({});
    if (m_session->input.fault != Fault::none && onFault == OnFault::stop) break;
  }
  return std::exchange(m_session->input, std::move(outer)).fault;
}

void Editor::execute(const std::wstring& name) {
  if (const Command* command = m_commands.find(name)) {
    const Command running = *command;  // the command may remove itself from the stack
    return runCommand(running);
  }
  if (m_variables.has(name)) {
    const Command setsVariable{{}, upperCase(name), {}, 0, [&] { setVariable(*this, name); }};
    return runCommand(setsVariable);
  }
  report({ErrorCode::unknownName, "unknown command " + utf8FromWide(inQuotes(name))}, Fault::script);
  // What follows was meant for the command that is not there.
  m_session->input.line.dropRest();
}

void Editor::runCommand(const Command& command) {
  m_session->running = {command.globalName, m_session->input.lineNumber};
  m_session->restrictions = {};
  const bool isUndoStep = !(command.flags & kIsNoUndoStep);
  const db::Database* database = m_database.get();
  const std::size_t changesSeen = m_database->changeCount();
  if (isUndoStep) m_database->beginUndoStep(command.globalName);
  const auto reportThrown = [&](const std::string& what) {
    report({ErrorCode::notApplicable, utf8FromWide(command.globalName) + " failed: " + what}, Fault::script);
  };
  try {
    command.run();
  } catch (const std::exception& thrown) {
    reportThrown(thrown.what());
  } catch (...) {
    reportThrown("unknown exception");
  }
  closeLeftovers(command.globalName);
  reportLocked(*this, m_database->takeLockedEntities().size());
  if (isUndoStep && database == m_database.get()) m_database->endUndoStep();
  m_database->flush();
  if (database == m_database.get()) endPickedFirst(changesSeen);
  warnOf(m_database->takeFindings(), m_database->file().path(), m_database->file().form());
  m_session->running = {};
}

void Editor::endPickedFirst(std::size_t changesSeen) {
  const auto changes = m_database->changesSince(changesSeen);
  const bool hasChanged = std::any_of(changes.begin(), changes.end(), [&](dxf::RecordId record) {
    return m_database->file().type(record) != dxf::RecordType::section;
  });
  if (hasChanged || m_session->pickedFirst.isTaken) m_session->pickedFirst = {};
}

/// An object left open could never be opened for write again; it is the command's fault, not the user's.
void Editor::closeLeftovers(const std::wstring& commandName) {
  const std::vector<db::OpenObject> leftovers = m_database->openObjects();
  if (leftovers.empty()) return;
  for (const db::OpenObject& leftover : leftovers) {
    const dxf::RecordId record = m_database->recordOf(leftover.id);
    const std::string how = leftover.hasWriter ? "for write" : fmt::format("by {} reader(s)", leftover.readers);
    const std::string text = fmt::format("{} left an object open: {} {:X} ({})", utf8FromWide(commandName),
                                         m_database->file().typeName(record), m_database->file().handle(record), how);
    report({ErrorCode::notApplicable, text}, Fault::script);
  }
  m_database->closeAll();
}

void Editor::print(std::wstring_view text) {
  m_session->writeLine(text);
}

void Editor::write(std::wstring_view text) {
  m_session->write(text);
}

void Editor::report(const Error& error, Fault fault) {
  m_session->report(error.message(), fault);
}

KdGePoint3d Editor::toWorld(const KdGePoint3d& ucs) {
  return userPlane().toWorld(ucs);
}

KdGePoint3d Editor::toUser(const KdGePoint3d& wcs) {
  return userPlane().toUser(wcs);
}

const UserPlane& Editor::userPlane() {
  return m_session->userPlane.read(*m_database, m_variables);
}

Result<void> Editor::setUserPlane(const UserPlane& plane) {
  const UserPlane former = userPlane();
  if (auto written = exchangeUserPlane(plane); !written) return written;
  m_session->formerPlanes.push_back(former);
  return {};
}

Result<bool> Editor::restoreUserPlane() {
  std::vector<UserPlane>& formers = m_session->formerPlanes;
  if (formers.empty()) return false;
  if (auto written = exchangeUserPlane(formers.back()); !written) return tl::unexpected(written.error());
  formers.pop_back();
  return true;
}

Result<void> Editor::exchangeUserPlane(const UserPlane& plane) {
  const KdGePoint3d lastWcs = toWorld(variableOr(m_variables, L"LASTPOINT", KdGePoint3d()));
  if (auto written = writeUserPlane(plane, *m_database, m_variables); !written) return written;
  m_variables.setInternally(L"LASTPOINT", toUser(lastWcs));
  return {};
}

Result<db::VariableValue> Editor::variable(std::wstring_view name) {
  if (equalsIgnoringCase(name, L"VIEWSIZE")) m_variables.setInternally(L"VIEWSIZE", view().height());
  if (equalsIgnoringCase(name, L"VIEWCTR")) {
    m_variables.setInternally(L"VIEWCTR", toUser(view().toWorld(view().centerDcs())));
  }
  return m_variables.get(name);
}

const std::wstring& Editor::runningTool() const {
  return m_session->running.tool.empty() ? m_session->running.name : m_session->running.tool;
}

void Editor::setRunningTool(std::wstring commandLine) {
  m_session->running.tool = std::move(commandLine);
}

Result<Plotter*> Editor::plotter() {
  if (!m_session->plotter) {
    auto loaded = loadPlotter();
    if (!loaded) return tl::unexpected(loaded.error());
    m_session->plotter = std::move(*loaded);
  }
  return m_session->plotter.get();
}

void Editor::requestQuit() {
  m_session->isQuitRequested = true;
}

bool Editor::isQuitRequested() const {
  return m_session->isQuitRequested;
}

}  // namespace torva::command

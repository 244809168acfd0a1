#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "command/command_stack.h"
#include "command/file_request.h"
#include "command/input_source.h"
#include "command/opening.h"
#include "command/plotter.h"
#include "command/user_plane.h"
#include "db/database.h"
#include "db/system_variables.h"
#include "view/picker.h"
#include "view/view.h"

#include <kdrx/ed.h>

namespace torva::command {

/// What programs want to know after a run.
enum class Fault { none, drawing, script };

/// What a run does after a fault.
enum class OnFault { goOn, stop };

/// Whether a blank ends a text answer, or only the line's end does.
enum class Blanks { endAnswer, belongToAnswer };

/// Whether an entity is asked for alone or as one of a selection.
enum class Picks { one, many };

/// What saving does with a file that another program changed since it was opened.
enum class ChangedFile { keep, replace };

/// How the command line opens and saves drawings.
struct FileHandling {
  dxf::DamagePolicy damagePolicy = dxf::DamagePolicy::refuse;
  bool keepsBackup = false;
};

/// The command line of one drawing at a time: asks for input, runs commands, owns drawing and view.
///
/// While it lives, it and its drawing are what the free functions of the programming interface work on.
class TORVA_API Editor {
 public:
  /// @param print takes text for the user as it stands, line ends included
  /// @param report takes one line for the user about a fault or a warning, without line end
  Editor(CommandStack& commands, std::function<void(std::wstring_view)> print,
         std::function<void(const std::string&)> report);
  ~Editor();
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  /// The drawing that commands work on; a new one from the start, never null.
  db::Database& database() { return *m_database; }
  /// Replaces the drawing; what was changed in the former one is lost. Requires: no object of the former is in use.
  /// @param picker one in that drawing; null: it is made when first asked for
  void setDatabase(std::unique_ptr<db::Database> database, std::unique_ptr<view::Picker> picker = nullptr);
  db::SystemVariables& variables() { return m_variables; }
  /// Reads a system variable as SystemVariables::get() does, those that follow from the view included.
  Result<db::VariableValue> variable(std::wstring_view name);
  /// The view of the drawing and the picker in it; made when first asked for.
  view::View& view();
  view::Picker& picker();
  /// Shows all that is drawn, with a margin. @return false when nothing is; the view stays then
  bool showExtents();
  CommandStack& commands() { return m_commands; }
  /// Size of the viewport that drawings are shown in, in pixels; 1000 x 1000 at first.
  void setViewport(int widthPx, int heightPx);

  FileHandling& fileHandling() { return m_fileHandling; }
  /// Opens a drawing in place of the present one, which stays when that fails. What was mended is reported as warnings.
  /// Errors are those of dxf::DrawingFile::open().
  Result<void> openDrawing(const std::string& path);
  /// The same for a copy of an unsaved drawing: it is opened, damaged or not, as that drawing, modified.
  Result<void> openCopy(const std::string& path, const dxf::FileOrigin& original);
  /// How drawings are got from now on; at first by openDatabase(). A program with a window does it with an OpeningThread
  /// while its events are handled.
  void setOpener(DrawingOpener opener) { m_opener = std::move(opener); }
  /// Puts a new, empty drawing in place of the present one.
  void beginNewDrawing();
  /// Saves the drawing; errors are those of dxf::DrawingFile::save().
  Result<void> saveDrawing(const std::string& path, ChangedFile changedFile = ChangedFile::keep);
  bool hasUnsavedChanges() const;
  /// Whether another program has changed or removed the drawing's file since it was opened or saved. Looks at the file's
  /// folder entry alone, so that it may be asked often.
  bool isChangedOnDisk() const;
  /// Whether the last drawing asked for could not be opened, so that the present one is not what was meant. One whose
  /// opening was cancelled leaves that as it was.
  bool hasOpeningFailed() const { return m_hasOpeningFailed; }

  /// Runs what a source says until it ends or QUIT is given. Faults are reported with the source's name and line.
  /// A source that ends inside a command: the command is cancelled, and for a script that is a fault.
  /// @return the first fault
  Fault run(InputSource& source, OnFault onFault);

  // What the kded functions and the built-in commands ask; statuses as in <kdrx/ed.h>.
  int initGet(int flags, const wchar_t* keywords);
  /// What the next input call may show for the cursor; to be called after initGet(), which takes it back.
  void offerPreview(Preview preview);
  int getKeyword(std::wstring prompt, std::wstring& keyword);
  /// @param picks whether it is one of several that are chosen, also by windows
  int selectEntity(std::wstring prompt, KdDbObjectId& id, KdGePoint3d& pointUcs, Picks picks = Picks::one);
  /// What a pick at a point gives, see view::Picker::pick(): PICKBOX says how near it has to be.
  dxf::RecordId entityAt(const KdGePoint3d& pointWcs);
  /// The entities in a window of the view between two opposite corners, in drawing order.
  std::vector<dxf::RecordId> entitiesIn(const KdGePoint3d& cornerWcs, const KdGePoint3d& oppositeWcs, view::WindowRule rule);
  /// The corner of a window opposite to `firstUcs`.
  int getCorner(const KdGePoint3d& firstUcs, std::wstring prompt, KdGePoint3d& pointUcs);
  int getPoint(const KdGePoint3d* baseUcs, std::wstring prompt, KdGePoint3d& pointUcs);
  int getReal(std::wstring prompt, double& value);
  /// Asks for a number, or a point, which gives its distance from `baseUcs`.
  int getDistance(const KdGePoint3d& baseUcs, std::wstring prompt, double& value);
  int getInteger(std::wstring prompt, int& value);
  /// An answer that is an offered keyword ends with kKdInputKeyword here too.
  int getString(std::wstring prompt, Blanks blanks, std::wstring& text);
  /// Asks for a file, with the chooser if there is one; statuses as of kdedGetFileD().
  int getFile(const FileRequest& request, std::wstring& path);
  /// How files are asked for from now on; null: at the command line.
  void setFileChooser(FileChooser chooser) { m_fileChooser = std::move(chooser); }
  /// The keyword that the last input call ended with; empty when it ended otherwise.
  const std::wstring& lastKeyword() const;
  /// Whether the last selectEntity() was a pick that met nothing.
  bool lastMissed() const;
  /// The entities chosen before a command, in drawing order, without those that were erased meanwhile. The next command that
  /// asks for a selection takes them instead of asking. They are forgotten when that command ends, when a command changes
  /// the drawing (its header, which holds settings, excepted), and with the drawing.
  std::vector<dxf::RecordId> pickedFirst() const;
  /// Requires: they are entities of model space.
  void setPickedFirst(std::vector<dxf::RecordId> entities);
  /// Gives them to the running command; none the second time.
  std::vector<dxf::RecordId> takePickedFirst();
  /// Makes what the running command has been given so far seen as pickedFirst(); forgotten when it ends.
  void showTaken(std::vector<dxf::RecordId> entities);
  /// What the last command that asked for a selection was given; kept until the drawing is replaced.
  std::vector<KdDbObjectId>& previousSelection();

  /// Prints a message on a line of its own.
  void print(std::wstring_view text);
  /// Prints text as it stands, wherever the line is.
  void write(std::wstring_view text);
  /// Reports a fault, which becomes the run's result, or with Fault::none a warning. The place in the script is added.
  void report(const Error& error, Fault fault);

  /// Between user and world coordinates.
  KdGePoint3d toWorld(const KdGePoint3d& ucs);
  KdGePoint3d toUser(const KdGePoint3d& wcs);
  const UserPlane& userPlane();
  /// Makes a plane the user coordinate system, apart from its elevation; LASTPOINT stays where it is in the drawing.
  /// @return notApplicable when the drawing has no header to keep it in
  Result<void> setUserPlane(const UserPlane& plane);
  /// Brings the user coordinate system back that was there before the last setUserPlane() in this drawing, as often as there
  /// is one. @return whether there was one
  Result<bool> restoreUserPlane();

  /// The command that runs, or the tool that it named, as it would be typed; empty at the command prompt.
  const std::wstring& runningTool() const;
  void setRunningTool(std::wstring commandLine);

  /// Loads libtorva-gui.so on first need. @return libraryNotLoadable
  Result<Plotter*> plotter();
  /// Ends the run after the running command (QUIT); runs begun later end at once.
  void requestQuit();
  bool isQuitRequested() const;

 private:
  class Session;  // state of the dialogue with the user

  Result<void> open(const OpeningRequest& request);
  void execute(const std::wstring& name);
  void runCommand(const Command& command);
  void endPickedFirst(std::size_t changesSeen);
  void closeLeftovers(const std::wstring& commandName);
  /// Reports findings about a drawing as warnings, the first of many.
  void warnOf(const std::vector<dxf::Finding>& findings, const std::string& path, dxf::Form form);
  int askPoint(Question question, KdGePoint3d& pointUcs);
  int pickByHandle(std::uint64_t handle, KdDbObjectId& id);
  int pickByPoint(const KdGePoint3d& pointUcs, KdDbObjectId& id);
  int miss();
  Result<void> exchangeUserPlane(const UserPlane& plane);

  CommandStack& m_commands;
  db::SystemVariables m_variables;
  FileHandling m_fileHandling;
  DrawingOpener m_opener = [](const OpeningRequest& request) { return openDatabase(request); };
  FileChooser m_fileChooser;
  bool m_hasOpeningFailed = false;
  int m_widthPx = 1000, m_heightPx = 1000;
  std::unique_ptr<db::Database> m_database;
  std::unique_ptr<view::View> m_view;
  std::unique_ptr<view::Picker> m_picker;
  std::unique_ptr<Session> m_session;
};

}  // namespace torva::command

#pragma once

#include <optional>

#include "autosave.h"
#include "canvas.h"
#include "command_line.h"
#include "drawing_opener.h"
#include "properties_panel.h"
#include "runtime/host.h"
#include "runtime/recent_files.h"
#include "window_source.h"

#include <QMainWindow>

class HelpWindow;
class QLabel;
class QMenu;

/// The window: canvas, command line, menus and tool bars. An entry of a menu or tool bar types its command.
class MainWindow final : public QMainWindow {
  Q_OBJECT
 public:
  /// `host` and `source` must outlive the window; `commandLine` becomes part of it.
  MainWindow(torva::runtime::Host& host, WindowSource& source, CommandLine* commandLine);
  ~MainWindow() override;

  Canvas& canvas() { return *m_canvas; }
  /// Keeps place, size, panels and ground in the profile, for the next start.
  void keepLook();
  /// Opens the drawing that the program is started with, and shows all of it.
  void openFirst(const QString& path);

 protected:
  /// Asks what is to become of unsaved changes first.
  void closeEvent(QCloseEvent* event) override;
  /// Typing anywhere goes to the command line.
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void fillMenus();
  void addPlotEntries(QMenu& menu);
  void addLookEntries(QMenu& menu);
  void restoreLook();

  void undo();
  void beginNew();
  void chooseAndOpen();
  std::wstring ownFolder() const;
  std::optional<QString> fileToWrite(const QString& title, const QString& ending);
  void showOpened();
  void open(const QString& path);
  void save();
  void saveAs();
  void plot(const QString& ending);
  void print();
  void showHelp();
  void showTitle();
  void setGround(Ground ground);

  /// What is to become of unsaved changes, when there are any. False when the user would rather go on.
  bool mayLeaveDrawing();
  bool saveNow();

  void fillRecentFiles(QMenu& menu);
  void noteFile();
  void addPanels();
  void offerLeftDrawings();
  void recover(const torva::runtime::LeftDrawing& left);
  void report(const torva::Result<void>& result);

  torva::runtime::Host& m_host;
  torva::command::Editor& m_editor;
  WindowSource& m_source;
  CommandLine* m_commandLine;
  Canvas* m_canvas;
  PropertiesPanel* m_properties;
  DrawingOpener m_opener;
  Autosave m_autosave;
  torva::runtime::RecentFiles m_recentFiles;
  std::string m_notedPath;
  bool m_hasOfferedLeft = false;
  bool m_showsWhole = false;  // of the drawing that is being opened
  QLabel* m_coordinates;
  HelpWindow* m_help = nullptr;
};

#include "main_window.h"

#include <algorithm>

#include "answers.h"
#include "base/text.h"
#include "command/variable_access.h"
#include "dialog/file_dialog.h"
#include "dialog/message_service.h"
#include "help_window.h"
#include "layers_panel.h"
#include "menu_entries.h"
#include "printing.h"

#include <kdrx/ui.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>

using torva::command::Fault;
using torva::command::FileUse;

namespace {

constexpr char kSection[] = "Window";
constexpr QSize kFirstSize(1280, 860);
constexpr wchar_t kDrawings[] = L"dxf";

QString nameOf(const torva::db::Database& drawing) {
  const QString path = QString::fromStdString(drawing.file().path());
  return path.isEmpty() ? MainWindow::tr("unnamed") : QFileInfo(path).fileName();
}

}  // namespace

MainWindow::MainWindow(torva::runtime::Host& host, WindowSource& source, CommandLine* commandLine)
    : m_host(host),
      m_editor(host.editor()),
      m_source(source),
      m_commandLine(commandLine),
      m_canvas(new Canvas(host.editor(), source, this)),
      m_properties(new PropertiesPanel(host.editor(), source, this)),
      m_opener(*this),
      m_autosave(host.editor(), source),
      m_recentFiles(host.profile()),
      m_coordinates(new QLabel(this)) {
  setObjectName("mainWindow");
  setAcceptDrops(true);
  setCentralWidget(m_canvas);

  auto* dock = new QDockWidget(tr("Command line"), this);
  dock->setObjectName("commandLineDock");
  dock->setFeatures(QDockWidget::DockWidgetMovable);
  dock->setWidget(m_commandLine);
  addDockWidget(Qt::BottomDockWidgetArea, dock);
  resizeDocks({dock}, {dock->minimumSizeHint().height()}, Qt::Vertical);
  statusBar()->addPermanentWidget(m_coordinates);

  addPanels();
  fillMenus();
  restoreLook();
  m_editor.setOpener([this](const torva::command::OpeningRequest& request) { return m_opener.open(request); });
  m_editor.setFileChooser(torva::dialog::chooseFile);

  QStringList names;
  for (const std::wstring& name : m_host.commandNames()) names << QString::fromStdWString(name);
  for (const std::wstring& name : m_editor.variables().names()) names << QString::fromStdWString(name);
  m_commandLine->setNames(names);

  connect(m_canvas, &Canvas::cursorMoved, this, [this](const KdGePoint3d& point) {
    m_coordinates->setText(QString("%1, %2, %3").arg(point.x, 0, 'f', 4).arg(point.y, 0, 'f', 4).arg(point.z, 0, 'f', 4));
  });
  connect(&m_source, &WindowSource::asked, this, [this] {
    showTitle();
    noteFile();
    showOpened();
    // Not before the drawing is there that the program was started with: it would take the place of what is recovered.
    if (m_source.isIdle() && !std::exchange(m_hasOfferedLeft, true)) {
      QTimer::singleShot(0, this, &MainWindow::offerLeftDrawings);
    }
  });
  connect(m_canvas, &Canvas::selectionChanged, m_properties, &PropertiesPanel::refresh);
  connect(&m_autosave, &Autosave::fileChanged, this, [this](const QString& path) {
    m_editor.report({torva::ErrorCode::fileChangedOnDisk, "another program changed the file", path.toStdString()},
                    Fault::none);
  });
}

MainWindow::~MainWindow() {
  m_editor.setFileChooser(nullptr);
  m_editor.setOpener([](const torva::command::OpeningRequest& request) { return torva::command::openDatabase(request); });
}

void MainWindow::addPanels() {
  const auto add = [this](QWidget* panel, const QString& title, const char* name) {
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setWidget(panel);
    addDockWidget(Qt::RightDockWidgetArea, dock);
  };
  add(m_properties, tr("Properties"), "propertiesDock");
  add(new LayersPanel(m_editor, m_source, this), tr("Layers"), "layersDock");
}

void MainWindow::fillMenus() {
  MenuEntries entries(*this, m_source);
  QMenu& file = entries.menu(tr("&File"));
  entries.asking(
      file, tr("&New"), L"NEW", [this] { beginNew(); }, QKeySequence::New);
  entries.asking(
      file, tr("&Open..."), L"OPEN", [this] { chooseAndOpen(); }, QKeySequence::Open);
  entries.asking(
      file, tr("&Save"), L"QSAVE", [this] { save(); }, QKeySequence::Save);
  entries.action(
      file, tr("Save &as..."), [this] { saveAs(); }, QKeySequence("Ctrl+Shift+S"));
  file.addSeparator();
  addPlotEntries(file);
  file.addSeparator();
  fillRecentFiles(*file.addMenu(tr("&Recent files")));
  file.addSeparator();
  entries.action(
      file, tr("E&xit"), [this] { close(); }, QKeySequence::Quit);

  QMenu& edit = entries.menu(tr("&Edit"));
  entries.asking(
      edit, tr("&Undo"), L"U", [this] { undo(); }, QKeySequence::Undo);
  entries.command(edit, tr("&Redo"), L"REDO").setShortcuts({QKeySequence::Redo, QKeySequence("Ctrl+Y")});
  edit.addSeparator();
  entries.command(edit, tr("&Erase"), L"ERASE", QKeySequence::Delete);
  entries.command(edit, tr("&Move"), L"MOVE");
  entries.command(edit, tr("&Copy"), L"COPY");
  entries.command(edit, tr("E&xplode"), L"EXPLODE");
  entries.command(edit, tr("&List"), L"LIST");

  QMenu& view = entries.menu(tr("&View"));
  entries.asking(view, tr("Zoom &extents"), L"ZOOM E", [this] { m_canvas->zoomExtents(); });
  entries.command(view, tr("Zoom &window"), L"ZOOM W");
  view.addSeparator();
  addLookEntries(view);
  view.addSeparator();
  for (QDockWidget* dock : findChildren<QDockWidget*>()) view.addAction(dock->toggleViewAction());

  QMenu& draw = entries.menu(tr("&Draw"));
  entries.command(draw, tr("&Multiline"), L"MLINE");
  entries.command(draw, tr("&Line"), L"LINE");
  entries.command(draw, tr("&Circle"), L"CIRCLE");

  QMenu& multiline = entries.menu(tr("&Multiline"));
  entries.command(multiline, tr("Edit &tools..."), L"MLEDIT");
  entries.command(multiline, tr("&Styles..."), L"MLSTYLE");
  multiline.addSeparator();
  entries.multilineTools(multiline);

  QMenu& help = entries.menu(tr("&Help"));
  entries.action(
      help, tr("&User guide"), [this] { showHelp(); }, QKeySequence::HelpContents);
  entries.command(help, tr("&Commands"), L"HELP");

  entries.toolBar(tr("Standard"), "standardBar", {L"NEW", L"OPEN", L"QSAVE", L"", L"U", L"REDO", L"", L"ZOOM E", L"ZOOM W"});
  entries.toolBar(tr("Draw and change"), "drawBar",
                  {L"MLINE", L"LINE", L"CIRCLE", L"", L"ERASE", L"MOVE", L"COPY", L"EXPLODE", L"", L"MLEDIT", L"MLSTYLE"});
  entries.multilineToolBar(tr("Multiline tools"), "multilineBar");
}

void MainWindow::addPlotEntries(QMenu& menu) {
  for (const char* ending : {"pdf", "svg", "png"}) {
    connect(menu.addAction(tr("Plot to %1...").arg(QString(ending).toUpper())), &QAction::triggered, this,
            [this, ending] { plot(ending); });
  }
  auto* toPrinter = menu.addAction(tr("&Print..."));
  toPrinter->setShortcut(QKeySequence::Print);
  connect(toPrinter, &QAction::triggered, this, &MainWindow::print);
}

void MainWindow::addLookEntries(QMenu& menu) {
  auto* dark = menu.addAction(tr("&Dark background"));
  dark->setObjectName("darkBackground");
  dark->setCheckable(true);
  connect(dark, &QAction::toggled, this, [this](bool isDark) { setGround(isDark ? Ground::dark : Ground::light); });
  auto* weights = menu.addAction(tr("Line w&eights"));
  weights->setObjectName("lineWeights");
  weights->setCheckable(true);
  connect(weights, &QAction::toggled, m_canvas, &Canvas::setShowsLineweights);
}

void MainWindow::restoreLook() {
  const auto kept = [&](const char* key) {
    const QString text = QString::fromStdWString(m_host.profile().text(kSection, key).value_or(L""));
    return QByteArray::fromBase64(text.toLatin1());
  };
  if (!restoreGeometry(kept("Geometry"))) resize(kFirstSize);
  restoreState(kept("State"));
  auto* dark = findChild<QAction*>("darkBackground");
  dark->setChecked(m_host.profile().integer(kSection, "DarkBackground").value_or(1) != 0);
  setGround(dark->isChecked() ? Ground::dark : Ground::light);
  findChild<QAction*>("lineWeights")->setChecked(m_host.profile().integer(kSection, "LineWeights").value_or(0) != 0);
}

void MainWindow::keepLook() {
  auto& profile = m_host.profile();
  const auto keep = [&](const char* key, const QByteArray& bytes) {
    return profile.setText(kSection, key, QString::fromLatin1(bytes.toBase64()).toStdWString()).has_value();
  };
  const auto keepMark = [&](const char* key, const char* action) {
    return profile.setInteger(kSection, key, findChild<QAction*>(action)->isChecked() ? 1 : 0).has_value();
  };
  const bool isKept = keep("Geometry", saveGeometry()) && keep("State", saveState()) &&
                      keepMark("DarkBackground", "darkBackground") && keepMark("LineWeights", "lineWeights");
  if (!isKept) m_editor.print(L"The window's look cannot be kept.");
}

void MainWindow::setGround(Ground ground) {
  m_canvas->setGround(ground);
}

void MainWindow::showTitle() {
  const torva::db::Database& drawing = m_editor.database();
  setWindowTitle(nameOf(drawing) + "[*] - TORVA multilines");
  setWindowModified(m_editor.hasUnsavedChanges());
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  m_commandLine->takeKey(event);
}

/// Where a command offers to take its last step back, that is meant; else the last command.
void MainWindow::undo() {
  const auto* question = m_source.question();
  if (!question) return;
  const std::wstring keyword = L"Undo";
  const std::vector<std::wstring>& names = question->keywords.names();
  if (std::ranges::find(names, keyword) != names.end()) return m_source.answer(keyword);
  m_source.giveCommand(L"U", Repeat::former);
}

// Files.

void MainWindow::beginNew() {
  if (!mayLeaveDrawing()) return;
  m_source.giveCommand(m_editor.hasUnsavedChanges() ? L"NEW Yes" : L"NEW");
}

void MainWindow::chooseAndOpen() {
  const auto path = torva::dialog::chooseFile({L"Open a drawing", ownFolder(), kDrawings, FileUse::read});
  if (path) open(QString::fromStdWString(*path));
}

/// The folder of the drawing, with '/' at its end; empty when it has none.
std::wstring MainWindow::ownFolder() const {
  const std::string& path = m_editor.database().file().path();
  return path.empty() ? std::wstring() : QFileInfo(QString::fromStdString(path)).absolutePath().toStdWString() + L'/';
}

/// Asks for a file to write; nothing when the user would rather not, or not replace the one that is there.
std::optional<QString> MainWindow::fileToWrite(const QString& title, const QString& ending) {
  const std::string& own = m_editor.database().file().path();
  const QString base = own.empty() ? QString("drawing") : QFileInfo(QString::fromStdString(own)).completeBaseName();
  const std::wstring start = ownFolder() + (base + '.' + ending).toStdWString();
  const auto path = torva::dialog::chooseFile({title.toStdWString(), start, ending.toStdWString(), FileUse::write});
  if (!path) return std::nullopt;
  const QString chosen = QString::fromStdWString(*path);
  const QString question = tr("Replace %1?").arg(chosen);
  const bool isKept =
      QFileInfo::exists(chosen) &&
      torva::dialog::showMessage(this, question.toStdWString(), L"TORVA multilines", MB_YESNO | MB_ICONQUESTION) != IDYES;
  return isKept ? std::nullopt : std::optional(chosen);
}

void MainWindow::open(const QString& path) {
  if (!mayLeaveDrawing()) return;
  const bool isDiscarded = m_editor.hasUnsavedChanges();
  m_source.giveCommand((isDiscarded ? L"OPEN Yes " : L"OPEN ") + quoted(path.toStdWString()));
}

void MainWindow::openFirst(const QString& path) {
  m_showsWhole = true;
  m_source.answer(L"OPEN " + quoted(path.toStdWString()));
}

/// Shows the whole drawing that the program was started with, if it was opened.
void MainWindow::showOpened() {
  if (!m_source.isIdle() || !std::exchange(m_showsWhole, false)) return;
  if (!m_editor.hasOpeningFailed()) m_source.giveCommand(L"ZOOM E", Repeat::former);
}

void MainWindow::save() {
  if (m_editor.database().file().path().empty()) return saveAs();
  m_source.giveCommand(L"QSAVE");
}

void MainWindow::saveAs() {
  const auto path = fileToWrite(tr("Save the drawing as"), "dxf");
  if (!path) return;
  // The user was asked already whether a file is to be replaced; the command asks for any but the drawing's own.
  const QFileInfo chosen(*path), own(QString::fromStdString(m_editor.database().file().path()));
  const bool isAsked = chosen.exists() && chosen != own;
  m_source.giveCommand(L"SAVEAS " + quoted(path->toStdWString()) + (isAsked ? L" Yes" : L""));
}

bool MainWindow::saveNow() {
  std::string path = m_editor.database().file().path();
  if (path.empty()) path = fileToWrite(tr("Save the drawing as"), "dxf").value_or(QString()).toStdString();
  if (path.empty()) return false;
  const auto saved = m_host.saveDrawing(path);
  if (saved) return true;
  torva::dialog::showMessage(this, torva::wideFromUtf8(saved.error().message()), windowTitle().toStdWString(),
                             MB_OK | MB_ICONERROR);
  return false;
}

bool MainWindow::mayLeaveDrawing() {
  if (!m_editor.hasUnsavedChanges()) return true;
  const QString question = tr("Save the changes to %1?").arg(nameOf(m_editor.database()));
  switch (torva::dialog::showMessage(this, question.toStdWString(), L"TORVA multilines", MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
      return saveNow();
    case IDNO:
      return true;
    default:
      return false;
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // While a command works, nothing can be asked of the drawing.
  if (!m_source.question() || !mayLeaveDrawing()) return event->ignore();
  m_source.close();
  event->accept();
}

/// The list is made each time it is shown: other windows open files too.
void MainWindow::fillRecentFiles(QMenu& menu) {
  connect(&menu, &QMenu::aboutToShow, this, [this, &menu] {
    menu.clear();
    for (const std::string& path : m_recentFiles.list()) {
      const QString name = QString::fromStdString(path);
      connect(menu.addAction(QString(name).replace('&', "&&")), &QAction::triggered, this, [this, name] { open(name); });
    }
    if (menu.isEmpty()) menu.addAction(tr("none"))->setEnabled(false);
  });
}

/// Puts a file that was opened or saved among the recent ones.
void MainWindow::noteFile() {
  const std::string& path = m_editor.database().file().path();
  if (path.empty() || path == std::exchange(m_notedPath, path)) return;
  if (const auto kept = m_recentFiles.add(path); !kept) m_editor.report(kept.error(), Fault::none);
}

/// Drawings that a program left which did not come to its end.
void MainWindow::offerLeftDrawings() {
  for (const auto& left : m_autosave.recovery().list()) {
    const QString of = left.original.path.empty() ? tr("an unnamed drawing") : QString::fromStdString(left.original.path);
    const QString when = QLocale().toString(QDateTime::fromSecsSinceEpoch(left.keptAt), QLocale::ShortFormat);
    const QString question =
        tr("TORVA multilines did not end as it should. There is an unsaved state of %1, kept on %2. Open it? "
           "No throws it away.")
            .arg(of, when);
    const int answer =
        torva::dialog::showMessage(this, question.toStdWString(), L"TORVA multilines", MB_YESNOCANCEL | MB_ICONQUESTION);
    if (answer == IDYES) return recover(left);
    if (answer == IDNO) report(m_autosave.recovery().discard(left));
  }
}

void MainWindow::recover(const torva::runtime::LeftDrawing& left) {
  // Events are handled meanwhile, and no command holds the drawing.
  setEnabled(false);
  auto opened = m_editor.openCopy(left.copy, left.original);
  setEnabled(true);
  if (opened) opened = m_autosave.recovery().take(left);
  report(opened);
  m_source.giveCommand(L"ZOOM E");
}

void MainWindow::report(const torva::Result<void>& result) {
  if (!result) m_editor.report(result.error(), Fault::drawing);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (!urls.isEmpty() && urls.first().isLocalFile()) open(urls.first().toLocalFile());
}

void MainWindow::plot(const QString& ending) {
  if (const auto path = fileToWrite(tr("Plot to"), ending)) m_source.giveCommand(L"PLOT " + quoted(path->toStdWString()));
}

void MainWindow::print() {
  printView(*this, m_editor);
}

void MainWindow::showHelp() {
  if (!m_help) m_help = new HelpWindow(QString::fromStdString(m_host.guideFolder()), this);
  m_help->showPageOf(QString::fromStdWString(m_editor.runningTool()));
}

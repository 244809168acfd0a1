#include "menu_entries.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

// The icons lie in an archive: without these calls nothing would link them in. The macro asks to be used outside of all
// namespaces.
static void initIcons() {
  Q_INIT_RESOURCE(icons);
  Q_INIT_RESOURCE(tool_icons);
}

namespace {

struct MultilineTool {
  const char* text;
  const wchar_t* line;
};

constexpr MultilineTool kMultilineTools[] = {
    {"Closed cross", L"-MLEDIT CC"}, {"Open cross", L"-MLEDIT OC"}, {"Merged cross", L"-MLEDIT MC"},
    {"Closed tee", L"-MLEDIT CT"},   {"Open tee", L"-MLEDIT OT"},   {"Merged tee", L"-MLEDIT MT"},
    {"Corner joint", L"-MLEDIT CJ"}, {"Add vertex", L"-MLEDIT AV"}, {"Delete vertex", L"-MLEDIT DV"},
    {"Cut single", L"-MLEDIT CS"},   {"Cut all", L"-MLEDIT CA"},    {"Weld all", L"-MLEDIT WA"},
};

/// An entry's icon is named after what it types.
QIcon iconOf(const QString& line) {
  const QString name = QString(line).replace(' ', '-');
  for (const char* ending : {".svg", ".png"}) {
    const QString path = ":/icons/" + name + ending;
    if (QFile::exists(path)) return QIcon(path);
  }
  return {};
}

/// The tool tip tells the command.
void nameAfter(QAction& entry, const std::wstring& line) {
  entry.setObjectName(QString::fromStdWString(line));
  entry.setToolTip(QString("%1 (%2)").arg(entry.iconText(), entry.objectName()));
  entry.setIcon(iconOf(entry.objectName()));
  entry.setIconVisibleInMenu(false);
}

}  // namespace

MenuEntries::MenuEntries(QMainWindow& window, WindowSource& source) : m_window(window), m_source(source) {
  initIcons();
}

QMenu& MenuEntries::menu(const QString& title) {
  QMenu* menu = m_window.menuBar()->addMenu(title);
  menu->setToolTipsVisible(true);
  return *menu;
}

QAction& MenuEntries::command(QMenu& menu, const QString& text, const std::wstring& line, const QKeySequence& shortcut) {
  return asking(
      menu, text, line, [&source = m_source, line] { source.giveCommand(line); }, shortcut);
}

QAction& MenuEntries::asking(QMenu& menu, const QString& text, const std::wstring& line, std::function<void()> act,
                             const QKeySequence& shortcut) {
  QAction& entry = action(menu, text, std::move(act), shortcut);
  nameAfter(entry, line);
  return entry;
}

QAction& MenuEntries::action(QMenu& menu, const QString& text, std::function<void()> act, const QKeySequence& shortcut) {
  QAction* entry = menu.addAction(text);
  entry->setShortcut(shortcut);
  QObject::connect(entry, &QAction::triggered, &m_window, std::move(act));
  return *entry;
}

void MenuEntries::multilineTools(QMenu& menu) {
  for (const MultilineTool& tool : kMultilineTools) command(menu, QObject::tr(tool.text), tool.line);
}

void MenuEntries::toolBar(const QString& title, const char* objectName, const std::vector<std::wstring>& lines) {
  QToolBar* bar = m_window.addToolBar(title);
  bar->setObjectName(objectName);
  for (const std::wstring& line : lines) {
    if (line.empty()) {
      bar->addSeparator();
    } else {
      bar->addAction(m_window.findChild<QAction*>(QString::fromStdWString(line)));
    }
  }
}

void MenuEntries::multilineToolBar(const QString& title, const char* objectName) {
  std::vector<std::wstring> lines;
  for (const MultilineTool& tool : kMultilineTools) lines.emplace_back(tool.line);
  toolBar(title, objectName, lines);
}

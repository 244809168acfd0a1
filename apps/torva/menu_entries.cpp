#include "menu_entries.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

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

}  // namespace

QMenu& MenuEntries::menu(const QString& title) {
  QMenu* menu = m_window.menuBar()->addMenu(title);
  menu->setToolTipsVisible(true);
  return *menu;
}

QAction& MenuEntries::command(QMenu& menu, const QString& text, const std::wstring& line, const QKeySequence& shortcut) {
  QAction& entry = action(
      menu, text, [&source = m_source, line] { source.giveCommand(line); }, shortcut);
  entry.setToolTip(QString::fromStdWString(line));
  entry.setObjectName(entry.toolTip());
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

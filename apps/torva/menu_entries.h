#pragma once

#include <functional>
#include <string>

#include "window_source.h"

#include <QKeySequence>
#include <QMainWindow>

class QAction;
class QMenu;
class QToolBar;

/// Fills a window's menus: an entry types a command or calls a function of the window.
class MenuEntries {
 public:
  MenuEntries(QMainWindow& window, WindowSource& source) : m_window(window), m_source(source) {}

  QMenu& menu(const QString& title);
  /// An entry that types `line`. Its tool tip names the command.
  QAction& command(QMenu& menu, const QString& text, const std::wstring& line, const QKeySequence& shortcut = {});
  QAction& action(QMenu& menu, const QString& text, std::function<void()> act, const QKeySequence& shortcut = {});
  /// The twelve tools of -MLEDIT.
  void multilineTools(QMenu& menu);

 private:
  QMainWindow& m_window;
  WindowSource& m_source;
};

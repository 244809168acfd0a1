#pragma once

#include <functional>
#include <string>
#include <vector>

#include "window_source.h"

#include <QKeySequence>
#include <QMainWindow>

class QAction;
class QMenu;

/// Fills a window's menus and tool bars: an entry types a command or calls a function of the window.
class MenuEntries {
 public:
  MenuEntries(QMainWindow& window, WindowSource& source);

  QMenu& menu(const QString& title);
  /// An entry that types `line`. Its tool tip names the command.
  QAction& command(QMenu& menu, const QString& text, const std::wstring& line, const QKeySequence& shortcut = {});
  QAction& action(QMenu& menu, const QString& text, std::function<void()> act, const QKeySequence& shortcut = {});
  /// An entry that ends in typing `line`, once the user has been asked for what belongs to it.
  QAction& asking(QMenu& menu, const QString& text, const std::wstring& line, std::function<void()> act,
                  const QKeySequence& shortcut = {});
  /// The twelve tools of -MLEDIT.
  void multilineTools(QMenu& menu);

  /// A tool bar of entries that the menus have, by what they type; an empty line separates.
  void toolBar(const QString& title, const char* objectName, const std::vector<std::wstring>& lines);
  /// A tool bar of the twelve tools of -MLEDIT.
  void multilineToolBar(const QString& title, const char* objectName);

 private:
  QMainWindow& m_window;
  WindowSource& m_source;
};

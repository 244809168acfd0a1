#pragma once

#include <string>

#include "command/editor.h"
#include "runtime/recovery.h"
#include "window_source.h"

#include <QTimer>

/// Keeps a copy of a changed drawing every few minutes, for the case that the program does not come to an end of its own,
/// and looks whether another program changed the drawing's file.
class Autosave final : public QObject {
  Q_OBJECT
 public:
  Autosave(torva::command::Editor& editor, WindowSource& source);

  torva::runtime::Recovery& recovery() { return m_recovery; }

 signals:
  /// The drawing's file is no longer the one that was opened; told once.
  void fileChanged(const QString& path);

 private:
  void keepCopy();
  void lookAtFile();

  torva::command::Editor& m_editor;
  WindowSource& m_source;
  torva::runtime::Recovery m_recovery;
  QTimer m_keeping, m_looking;
  QString m_toldOf;
};

#pragma once

#include "command/opening.h"

#include <QWidget>

/// Opens drawings on a thread of their own while the window lives, with a bar that shows how far it is and a button to
/// cancel.
class DrawingOpener final : public QObject {
  Q_OBJECT
 public:
  explicit DrawingOpener(QWidget& window) : m_window(window) {}

  /// Waits for the drawing with the event loop running. @return cancelled when the user gave up
  torva::Result<torva::command::OpenedDrawing> open(const torva::command::OpeningRequest& request);

 private:
  QWidget& m_window;
};

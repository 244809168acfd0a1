#pragma once

#include <QString>
#include <QWidget>

class QTextBrowser;

/// The user guide.
class HelpWindow final : public QWidget {
  Q_OBJECT
 public:
  /// @param guideFolder where the guide's pages lie
  HelpWindow(const QString& guideFolder, QWidget* parent);

  /// Shows the page about a tool or command, given as it would be typed ("-MLEDIT CC"); the first page for all that have
  /// none.
  void showPageOf(const QString& tool);

 private:
  QString m_guideFolder;
  QTextBrowser* m_browser;
};

#pragma once

#include <string_view>

#include "command/editor.h"
#include "window_source.h"

#include <QLineEdit>
#include <QStringList>
#include <QWidget>

class QCompleter;
class QLabel;
class QPlainTextEdit;
class QStringListModel;

/// Where answers are typed: a line with history and completion.
class AnswerEdit final : public QLineEdit {
  Q_OBJECT
 public:
  explicit AnswerEdit(QWidget* parent);

  /// Offered while the answer is typed.
  void setCompletions(const QStringList& words);
  /// Whether a blank is part of the answer instead of its end.
  void setTakesBlanks(bool takesBlanks) { m_takesBlanks = takesBlanks; }

 signals:
  void entered(const QString& line);
  void cancelled();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QString take();
  void enter();
  void recall(int step);
  bool isInQuotes() const { return text().count('"') % 2 == 1; }

  QStringListModel* m_words;
  QStringList m_history;
  int m_recalled = 0;
  bool m_takesBlanks = false;
};

/// The command line of the window: what was said, the prompt with its keywords to click, and the answer that is typed.
class CommandLine final : public QWidget {
  Q_OBJECT
 public:
  explicit CommandLine(WindowSource& source, QWidget* parent = nullptr);

  /// Shows text as it stands, line ends included.
  void print(std::wstring_view text);
  /// Shows a line about a fault.
  void report(const std::string& line);

  /// The names of commands and variables, for completion.
  void setNames(const QStringList& names) { m_names = names; }
  /// A key pressed elsewhere in the window: what can be typed goes to the answer.
  void takeKey(QKeyEvent* event);

 private:
  void show(const torva::command::Question& question);
  void append(const QString& text, bool isFault);

  WindowSource& m_source;
  QPlainTextEdit* m_transcript;
  QLabel* m_prompt;
  AnswerEdit* m_answer;
  QStringList m_names;
  bool m_isLineEnded = false;  // the transcript's last one
  bool m_isHandingOn = false;  // a key of the window to the answer
};

/// The prompt as rich text: the keywords that it names in brackets are links to themselves.
QString promptWithLinks(const torva::command::Question& question);

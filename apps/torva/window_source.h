#pragma once

#include <deque>
#include <string>

#include "command/input_source.h"

#include <QEventLoop>
#include <QObject>

/// Which command Enter repeats after one that was given.
enum class Repeat { it, former };

/// Answers that come from the window. A question is shown by whoever listens to asked(); until it is answered the event loop
/// runs. Whatever the user does becomes a line of text here.
class WindowSource final : public QObject, public torva::command::InputSource {
  Q_OBJECT
 public:
  /// Before each answer the question is shown, even if the answer waits already.
  Line next(const torva::command::Question& question) override;
  std::string name() const override { return {}; }
  bool echoes() const override { return true; }

  /// The question that waits for an answer; null while a command works.
  const torva::command::Question* question() const { return m_question; }
  bool isAtCommandPrompt() const;
  /// Whether no command runs and none has been given.
  bool isIdle() const { return isAtCommandPrompt() && m_lines.empty(); }

  /// Answers the question at hand, or the next one. An empty line at the command prompt runs the last command again.
  void answer(std::wstring line);
  /// Cancels the running command.
  void cancel();
  /// Gives a command, with answers behind it, after cancelling the one that asks.
  void giveCommand(const std::wstring& line, Repeat repeat = Repeat::it);
  /// Ends the input: a running command is cancelled, and nothing more is asked.
  void close();

 signals:
  void asked(const torva::command::Question& question);
  /// A question was answered: whoever shows it should not any more.
  void answered();

 private:
  struct Given {
    Line line;
    Repeat repeat = Repeat::it;
  };
  void put(Given given);
  Line take(torva::command::Question::Kind kind);

  const torva::command::Question* m_question = nullptr;
  std::deque<Given> m_lines;
  QEventLoop m_loop;
  std::wstring m_lastCommand;
  bool m_isClosed = false;
};

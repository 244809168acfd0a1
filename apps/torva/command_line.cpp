#include "command_line.h"

#include <utility>

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QStringListModel>
#include <QVBoxLayout>

using torva::command::Question;

namespace {

constexpr int kKeptLines = 5000, kKeptAnswers = 500, kShownLines = 5;

QString fromWide(std::wstring_view text) {
  return QString::fromWCharArray(text.data(), static_cast<int>(text.size()));
}

bool isKeyword(const Question& question, const QString& word) {
  for (const std::wstring& keyword : question.keywords.names()) {
    if (fromWide(keyword).compare(word, Qt::CaseInsensitive) == 0) return true;
  }
  return false;
}

QString linked(const Question& question, const QString& word) {
  const QString shown = word.toHtmlEscaped();
  return isKeyword(question, word) ? QString("<a href=\"%1\">%1</a>").arg(shown) : shown;
}

}  // namespace

QString promptWithLinks(const Question& question) {
  const QString prompt = fromWide(question.prompt);
  const int open = prompt.indexOf('['), close = prompt.indexOf(']', open);
  if (open < 0 || close < 0) return prompt.toHtmlEscaped();
  QStringList words;
  for (const QString& word : prompt.mid(open + 1, close - open - 1).split('/')) words << linked(question, word);
  return prompt.left(open + 1).toHtmlEscaped() + words.join('/') + prompt.mid(close).toHtmlEscaped();
}

AnswerEdit::AnswerEdit(QWidget* parent) : QLineEdit(parent), m_words(new QStringListModel(this)) {
  auto* completer = new QCompleter(m_words, this);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setCompletionMode(QCompleter::PopupCompletion);
  setCompleter(completer);
}

void AnswerEdit::setCompletions(const QStringList& words) {
  m_words->setStringList(words);
  completer()->popup()->hide();
}

bool AnswerEdit::event(QEvent* event) {
  // With nothing typed, undo, erase and the like are meant for the drawing.
  if (event->type() == QEvent::ShortcutOverride && text().isEmpty()) {
    event->ignore();
    return false;
  }
  return QLineEdit::event(event);
}

void AnswerEdit::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return enter();
    case Qt::Key_Space:
      if (!m_takesBlanks && !isInQuotes()) return enter();
      break;
    case Qt::Key_Escape:
      take();
      emit cancelled();
      return;
    case Qt::Key_Up:
      return recall(-1);
    case Qt::Key_Down:
      return recall(1);
    case Qt::Key_Tab:
      if (completer()->completionCount() > 0) setText(completer()->currentCompletion());
      completer()->popup()->hide();
      return;
    default:
      break;
  }
  QLineEdit::keyPressEvent(event);
}

/// The text that stands there, which goes together with what it was completed with.
QString AnswerEdit::take() {
  const QString line = text();
  clear();
  completer()->popup()->hide();
  return line;
}

void AnswerEdit::enter() {
  const QString line = take();
  if (!line.isEmpty() && (m_history.isEmpty() || m_history.last() != line)) m_history << line;
  if (m_history.size() > kKeptAnswers) m_history.removeFirst();
  m_recalled = m_history.size();
  emit entered(line);
}

void AnswerEdit::recall(int step) {
  m_recalled = qBound(0, m_recalled + step, m_history.size());
  setText(m_recalled < m_history.size() ? m_history[m_recalled] : QString());
  completer()->popup()->hide();
}

CommandLine::CommandLine(WindowSource& source, QWidget* parent)
    : QWidget(parent),
      m_source(source),
      m_transcript(new QPlainTextEdit(this)),
      m_prompt(new QLabel(this)),
      m_answer(new AnswerEdit(this)) {
  m_transcript->setObjectName("transcript");
  m_transcript->setReadOnly(true);
  m_transcript->setMaximumBlockCount(kKeptLines);
  m_transcript->setFocusPolicy(Qt::ClickFocus);
  m_transcript->setMinimumHeight(m_transcript->fontMetrics().lineSpacing() * kShownLines);
  m_prompt->setObjectName("prompt");
  m_prompt->setTextFormat(Qt::RichText);
  m_prompt->setFocusPolicy(Qt::NoFocus);
  m_answer->setObjectName("answer");

  auto* answerRow = new QHBoxLayout;
  answerRow->addWidget(m_prompt);
  answerRow->addWidget(m_answer, 1);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(4, 4, 4, 4);
  rows->addWidget(m_transcript);
  rows->addLayout(answerRow);

  connect(m_answer, &AnswerEdit::entered, this, [this](const QString& line) { m_source.answer(line.toStdWString()); });
  connect(m_answer, &AnswerEdit::cancelled, this, [this] { m_source.cancel(); });
  connect(m_prompt, &QLabel::linkActivated, this, [this](const QString& word) { m_source.answer(word.toStdWString()); });
  connect(&m_source, &WindowSource::asked, this, &CommandLine::show);
  connect(&m_source, &WindowSource::answered, m_prompt, &QLabel::clear);
}

void CommandLine::show(const Question& question) {
  m_prompt->setText(promptWithLinks(question));
  m_answer->setTakesBlanks(question.kind == Question::Kind::text);
  QStringList words;
  for (const std::wstring& keyword : question.keywords.names()) words << fromWide(keyword);
  m_answer->setCompletions(question.kind == Question::Kind::command ? m_names : words);
}

void CommandLine::takeKey(QKeyEvent* event) {
  // What the answer does not want comes back through the window.
  if (m_isHandingOn) return event->ignore();
  const QScopedValueRollback<bool> handingOn(m_isHandingOn, true);
  m_answer->setFocus(Qt::OtherFocusReason);
  QApplication::sendEvent(m_answer, event);
}

void CommandLine::print(std::wstring_view text) {
  append(fromWide(text), false);
}

void CommandLine::report(const std::string& line) {
  append(QString::fromStdString(line) + '\n', true);
}

void CommandLine::append(const QString& text, bool isFault) {
  QTextCursor cursor(m_transcript->document());
  cursor.movePosition(QTextCursor::End);
  QTextCharFormat format;
  if (isFault) format.setForeground(QColor(0xD0, 0x40, 0x30));
  // The end of the last line waits for the next one: an empty line would take the place of one that says something.
  if (std::exchange(m_isLineEnded, text.endsWith('\n'))) cursor.insertText("\n");
  cursor.insertText(m_isLineEnded ? text.chopped(1) : text, format);
  m_transcript->moveCursor(QTextCursor::End);
  m_transcript->ensureCursorVisible();
}

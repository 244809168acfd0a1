#include "window_source.h"

#include <utility>

using torva::command::InputSource;
using torva::command::Question;

InputSource::Line WindowSource::next(const Question& question) {
  m_question = &question;
  emit asked(question);
  if (m_lines.empty() && !m_isClosed) m_loop.exec();
  m_question = nullptr;
  emit answered();
  return take(question.kind);
}

InputSource::Line WindowSource::take(Question::Kind kind) {
  if (m_isClosed) return {kind == Question::Kind::command ? Kind::end : Kind::interrupt};
  auto [line, repeat] = std::move(m_lines.front());
  m_lines.pop_front();
  if (kind != Question::Kind::command || line.kind != Kind::line) return line;
  if (line.text.empty()) line.text = m_lastCommand;
  if (repeat == Repeat::it) m_lastCommand = line.text.substr(0, line.text.find(L' '));
  return line;
}

bool WindowSource::isAtCommandPrompt() const {
  return m_question && m_question->kind == Question::Kind::command;
}

void WindowSource::answer(std::wstring line) {
  put({{Kind::line, std::move(line)}});
}

void WindowSource::cancel() {
  put({{Kind::interrupt}});
}

void WindowSource::giveCommand(const std::wstring& line, Repeat repeat) {
  if (!isAtCommandPrompt()) cancel();
  put({{Kind::line, line}, repeat});
}

void WindowSource::close() {
  m_isClosed = true;
  m_loop.quit();
}

void WindowSource::put(Given given) {
  m_lines.push_back(std::move(given));
  m_loop.quit();
}

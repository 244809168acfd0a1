#include "command/answer_line.h"

#include <utility>

namespace torva::command {

namespace {

constexpr wchar_t kControlC = 3;

bool isBlank(wchar_t c) {
  return c == L' ' || (c >= L'\t' && c <= L'\r');
}

/// Whether a character is neither a blank nor may begin a ^C: nearly all are.
bool isPlain(wchar_t c) {
  return c > L' ' && c != L'^';
}

Answer textOrEmpty(std::wstring text) {
  if (text.empty()) return {Answer::Kind::empty};
  return {Answer::Kind::text, std::move(text)};
}

}  // namespace

AnswerLine::AnswerLine(std::wstring text) : m_text(std::move(text)), m_isExhausted(false) {
  while (!m_text.empty() && isBlank(m_text.back())) m_text.pop_back();
  while (m_position < m_text.size() && isBlank(m_text[m_position])) ++m_position;
  if (m_position < m_text.size() && m_text[m_position] == L';') m_isExhausted = true;
}

Answer AnswerLine::next() {
  m_isFresh = false;
  if (m_position < m_text.size() && m_text[m_position] == L'"') return quoted();
  const std::size_t start = m_position;
  for (; m_position < m_text.size(); ++m_position) {
    if (isPlain(m_text[m_position])) continue;
    if (isBlank(m_text[m_position])) break;
    if (const std::size_t length = cancelLength(m_position)) {
      m_position += length;
      skipBlanks();
      return {Answer::Kind::cancel};
    }
  }
  std::wstring text = m_text.substr(start, m_position - start);
  skipBlanks();
  return textOrEmpty(std::move(text));
}

Answer AnswerLine::rest() {
  const std::size_t start = m_position;
  if (start < m_text.size() && m_text[start] == L'"') {
    Answer answer = quoted();
    if (m_isExhausted) return answer;
    m_position = start;
  }
  m_isFresh = false;
  for (std::size_t i = start; i < m_text.size(); ++i) {
    if (const std::size_t length = cancelLength(i)) {
      m_position = i + length;
      skipBlanks();
      return {Answer::Kind::cancel};
    }
  }
  m_isExhausted = true;
  return textOrEmpty(m_text.substr(start));
}

std::size_t AnswerLine::cancelLength(std::size_t position) const {
  if (m_text[position] == kControlC) return 1;
  if (m_text[position] != L'^' || position + 1 == m_text.size()) return 0;
  return m_text[position + 1] == L'C' || m_text[position + 1] == L'c' ? 2 : 0;
}

Answer AnswerLine::quoted() {
  m_isFresh = false;
  std::wstring text;
  for (++m_position; m_position < m_text.size(); ++m_position) {
    if (m_text[m_position] == L'"') {
      if (m_position + 1 == m_text.size() || m_text[m_position + 1] != L'"') break;
      ++m_position;
    }
    text += m_text[m_position];
  }
  if (m_position < m_text.size()) ++m_position;
  skipBlanks();
  return textOrEmpty(std::move(text));
}

void AnswerLine::skipBlanks() {
  while (m_position < m_text.size() && isBlank(m_text[m_position])) ++m_position;
  m_isExhausted = m_position >= m_text.size();
}

}  // namespace torva::command

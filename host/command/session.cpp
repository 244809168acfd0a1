#include "command/session.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "base/text.h"

namespace torva::command {

namespace {

constexpr std::size_t kLongestQuote = 60;

bool isControl(wchar_t c) {
  return c < L' ' || (c >= 0x7F && c < 0xA0);
}

}  // namespace

std::wstring inQuotes(std::wstring_view text) {
  std::wstring shown(text.substr(0, kLongestQuote));
  std::replace_if(shown.begin(), shown.end(), isControl, L'?');
  if (text.size() > kLongestQuote) shown += L"...";
  return L'"' + shown + L'"';
}

const Keywords* Editor::Session::keywordsOf(std::wstring_view list) {
  const auto known = m_keywords.find(list);
  if (known != m_keywords.end()) return &known->second;
  auto read = Keywords::parse(list);
  return read ? &m_keywords.emplace(list, std::move(*read)).first->second : nullptr;
}

Answer Editor::Session::ask(const Question& question) {
  while (input.line.isExhausted()) {
    if (!input.source || input.hasEnded) return {Answer::Kind::cancel};
    takeLine(input.source->next(question), question.prompt);
  }
  const bool wasTypedAtPrompt = input.line.isFresh() && !input.source->echoes();
  Answer answer = question.kind == Question::Kind::text ? input.line.rest() : input.line.next();
  // Enter and ^C at the command prompt do nothing, so there is nothing to see.
  const bool doesNothing = running.name.empty() && answer.kind != Answer::Kind::text;
  if (wasTypedAtPrompt) {
    m_isAtLineStart = true;
  } else if (!doesNothing) {
    echo(question.prompt, answer);
  }
  return answer;
}

void Editor::Session::takeLine(InputSource::Line line, const std::wstring& prompt) {
  if (line.number > 0) input.lineNumber = line.number;
  switch (line.kind) {
    case InputSource::Kind::line:
      input.line = AnswerLine(std::move(line.text));
      return;
    case InputSource::Kind::interrupt:
      input.line = AnswerLine(L"^C");
      return;
    case InputSource::Kind::failure:
      report("cannot read the script any further: " + utf8FromWide(line.text), Fault::script);
      [[fallthrough]];
    case InputSource::Kind::end:
      endOfInput(prompt);
  }
}

void Editor::Session::endOfInput(const std::wstring& prompt) {
  input.hasEnded = true;
  if (running.name.empty()) return;
  echo(prompt, {Answer::Kind::cancel});
  if (!input.source->echoes()) return;
  report(fmt::format("the script ended inside the command {} of line {}, which is cancelled", utf8FromWide(running.name),
                     running.lineNumber),
         Fault::script);
}

void Editor::Session::echo(std::wstring_view prompt, const Answer& answer) {
  writeLine(prompt, answer.kind == Answer::Kind::cancel ? L"*Cancel*" : std::wstring_view(answer.text));
}

void Editor::Session::refuse(const std::wstring& answer, std::wstring_view expected, const Keywords& keywords) {
  std::wstring text = L"Expected " + std::wstring(expected);
  if (!keywords.isEmpty()) text += (expected.empty() ? L"" : L" or ") + keywords.list();
  writeLine(answer.empty() ? text + L"." : text + L", not " + inQuotes(answer) + L".");
}

void Editor::Session::write(std::wstring_view text) {
  if (text.empty()) return;
  m_print(text);
  m_isAtLineStart = text.back() == L'\n';
}

void Editor::Session::writeLine(std::wstring_view text, std::wstring_view more) {
  m_line.clear();
  if (!m_isAtLineStart) m_line += L'\n';
  m_line.append(text).append(more);
  if (m_line.empty() || m_line.back() != L'\n') m_line += L'\n';
  write(m_line);
}

void Editor::Session::show(Question& question, Restrictions& now) {
  // On other command lines, where nobody keeps the column, prompts begin with line ends; here they always start a line.
  question.prompt.erase(0, std::min(question.prompt.find_first_not_of(L"\r\n"), question.prompt.size()));
  question.keywords = std::move(now.keywords);
  question.preview = std::move(now.preview);
}

void Editor::Session::report(const std::string& text, Fault fault) {
  std::string line;
  if (input.source && !input.source->name().empty()) line = fmt::format("{}:{}: ", input.source->name(), input.lineNumber);
  line += text;
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  if (!m_isAtLineStart) write(L"\n");
  m_report(line);
  if (fault != Fault::none && input.fault == Fault::none) input.fault = fault;
}

}  // namespace torva::command

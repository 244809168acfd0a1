#include "terminal_source.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <histedit.h>

#include "base/export.h"
#include "base/text.h"

namespace {

constexpr int kKeptLines = 1000;

volatile std::sig_atomic_t interruptFlag = 0;

void noteInterrupt(int) {
  interruptFlag = 1;
}

bool takeInterrupt() {
  const bool isInterrupted = interruptFlag != 0;
  interruptFlag = 0;
  return isInterrupted;
}

}  // namespace

class TerminalSource::Editing {
 public:
  Editing() : m_edit(el_init("torvac", stdin, stdout, stderr)), m_history(history_init()) {
    history(m_history, &m_event, H_SETSIZE, kKeptLines);
    el_set(m_edit, EL_CLIENTDATA, this);
    el_set(m_edit, EL_PROMPT, &Editing::promptOf);
    el_set(m_edit, EL_EDITOR, "emacs");
    el_set(m_edit, EL_HIST, history, m_history);
  }
  ~Editing() {
    history_end(m_history);
    el_end(m_edit);
  }
  Editing(const Editing&) = delete;
  Editing& operator=(const Editing&) = delete;

  /// One line with its end; null at the end of input and after an interrupt.
  const char* read(std::string prompt) {
    m_prompt = std::move(prompt);
    int length = 0;
    const char* line = el_gets(m_edit, &length);
    if (!line || length <= 0) return nullptr;
    if (length > 1) history(m_history, &m_event, H_ENTER, line);
    return line;
  }

  /// Puts the terminal back to where a line begins, after an interrupt left one half typed.
  void reset() { el_reset(m_edit); }

 private:
  static char* promptOf(EditLine* edit) {
    Editing* self = nullptr;
    el_get(edit, EL_CLIENTDATA, &self);
    return self->m_prompt.data();
  }

  EditLine* m_edit;
  History* m_history;
  HistEvent m_event{};
  std::string m_prompt;
};

TerminalSource::TerminalSource() {
  std::setlocale(LC_CTYPE, "");
  m_editing = std::make_unique<Editing>();
  // Without SA_RESTART, so that ^C ends the read and not the program.
  struct sigaction action {};
  action.sa_handler = noteInterrupt;
  ::sigaction(SIGINT, &action, nullptr);
}

TerminalSource::~TerminalSource() = default;

TerminalSource::Line TerminalSource::next(const torva::command::Question& question) {
  std::fflush(stdout);
  if (takeInterrupt()) return {Kind::interrupt};
  const char* read = m_editing->read(torva::utf8FromWide(question.prompt));
  if (!read) {
    const Kind kind = takeInterrupt() ? Kind::interrupt : Kind::end;
    if (kind == Kind::interrupt) m_editing->reset();
    std::fputc('\n', stdout);
    return {kind};
  }
  std::string line = read;
  while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
  return {Kind::line, torva::wideFromUtf8(line)};
}

extern "C" TORVA_API torva::command::InputSource* torvaCreateTerminalSource() {
  return new TerminalSource;
}

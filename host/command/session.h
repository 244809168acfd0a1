#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "base/current.h"
#include "base/export.h"
#include "command/answer_line.h"
#include "command/editor.h"
#include "command/keywords.h"
#include "command/question.h"

namespace torva::command {

/// State of the dialogue with the user: where input comes from and how far it was read, what the next call may be answered
/// with, and where on its line the output stands.
class TORVA_INTERNAL Editor::Session {
 public:
  Session(std::function<void(std::wstring_view)> print, std::function<void(const std::string&)> report)
      : m_print(std::move(print)), m_report(std::move(report)) {}

  /// What is read at present.
  struct Input {
    InputSource* source = nullptr;
    AnswerLine line = {};
    std::size_t lineNumber = 0;
    bool hasEnded = false;
    Fault fault = Fault::none;
  };
  Input input;

  /// The running command; empty at the command prompt.
  struct Running {
    std::wstring name = {};
    std::size_t lineNumber = 0;
    std::wstring tool = {};  ///< The command line that starts the tool at work; empty where that is the command itself.
  };
  Running running;

  /// Restrictions of the next input call, and what it shows meanwhile.
  struct Restrictions {
    int flags = kKdInitGetNone;
    Keywords keywords = {};
    Preview preview = {};
  };
  Restrictions restrictions;

  /// The keywords of a list; null when it cannot be read. Commands offer the same few lists again and again, which are read
  /// once.
  const Keywords* keywordsOf(std::wstring_view list);

  std::wstring lastKeyword;
  UserPlaneReader userPlane;
  std::vector<KdDbObjectId> previousSelection;

  /// What was chosen before a command.
  struct PickedFirst {
    std::vector<dxf::RecordId> entities = {};
    bool isTaken = false;
  };
  PickedFirst pickedFirst;

  std::vector<UserPlane> formerPlanes;  // of this drawing, the last one at the end
  bool isQuitRequested = false;
  std::unique_ptr<Plotter> plotter;
  std::optional<Current<Editor>> currentEditor;
  std::optional<Current<db::Database>> currentDatabase;

  /// The next answer, or all that is left of the line. A source that has ended or cannot be read gives cancels; the first
  /// time inside a command that is reported.
  Answer ask(const Question& question);

  /// Asks until `accept` takes the answer, and returns its status. Consumes the restrictions.
  /// @param question without keywords and preview, which the restrictions hold
  /// @param accept gives a status, or nothing for an answer that is to be asked for again
  template <class Accept>
  int request(Question question, Accept accept);

  void write(std::wstring_view text);
  /// Writes on a line of its own, both texts as one.
  void writeLine(std::wstring_view text, std::wstring_view more = {});
  void report(const std::string& text, Fault fault);

 private:
  /// Makes the question what a source of answers is shown.
  static void show(Question& question, Restrictions& now);
  /// An interrupt counts as a line that says ^C.
  void takeLine(InputSource::Line line, const std::wstring& prompt);
  void endOfInput(const std::wstring& prompt);
  void echo(std::wstring_view prompt, const Answer& answer);
  void refuse(const std::wstring& answer, std::wstring_view expected, const Keywords& keywords);

  std::function<void(std::wstring_view)> m_print;
  std::function<void(const std::string&)> m_report;
  std::map<std::wstring, Keywords, std::less<>> m_keywords;  // by their lists
  std::wstring m_line;                                       // that is written, kept for its memory
  bool m_isAtLineStart = true;
};

/// A text of the user's as messages show it: in quotes, cut when long, without control characters.
std::wstring inQuotes(std::wstring_view text);

template <class Accept>
int Editor::Session::request(Question question, Accept accept) {
  Restrictions now = std::exchange(restrictions, {});
  show(question, now);
  lastKeyword.clear();
  for (;;) {
    const Answer answer = ask(question);
    if (answer.kind == Answer::Kind::cancel) return kKdInputCancel;
    if (answer.kind == Answer::Kind::empty) {
      if (!(now.flags & kKdNoEmptyAnswer)) return kKdInputNone;
    } else if (const std::wstring* keyword = question.keywords.match(answer.text)) {
      lastKeyword = *keyword;
      return kKdInputKeyword;
    } else if (const std::optional<int> status = accept(answer.text, now.flags)) {
      return *status;
    }
    refuse(answer.text, expectedAnswer(question.kind), question.keywords);
  }
}

}  // namespace torva::command

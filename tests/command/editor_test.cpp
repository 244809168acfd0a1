#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "test_editor.h"

namespace torva::command {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Editor, reportsAndClosesWhatACommandLeavesOpen) {
  TestEditor test;
  KdDbObject* object = nullptr;
  KdStatus status = KdStatus::ok;
  test.ask = [&](Editor& editor) {
    status = editor.database().openObject(object, editor.database().idOfHandle(0x2F), KdOpenMode::forWrite, false);
  };
  EXPECT_EQ(test.run("ASK\nASK\n"), Fault::script);
  EXPECT_EQ(status, KdStatus::ok) << "closed after the first time";
  EXPECT_THAT(test.faults, testing::Each(HasSubstr("ASK left an object open: MLINE 2F (for write)")));
  EXPECT_EQ(test.faults.size(), 2u);
  EXPECT_THAT(test.editor.database().openObjects(), IsEmpty());
}

/// A way to ask, with what it gets as text.
using Ask = std::function<int(Editor&, std::wstring& got)>;

const Ask kText = [](Editor& editor, std::wstring& got) { return editor.getString(L"Text: ", Blanks::endAnswer, got); };
const Ask kReal = [](Editor& editor, std::wstring& got) {
  double value = 77;
  const int status = editor.getReal(L"Number: ", value);
  got = std::to_wstring(value).substr(0, 4);
  return status;
};
const Ask kInteger = [](Editor& editor, std::wstring& got) {
  int value = 77;
  const int status = editor.getInteger(L"Number: ", value);
  got = std::to_wstring(value);
  return status;
};
const Ask kPoint = [](Editor& editor, std::wstring& got) {
  const KdGePoint3d base{100, 200, 0};
  KdGePoint3d point;
  const int status = editor.getPoint(&base, L"Point: ", point);
  got = std::to_wstring(int(point.x)) + L',' + std::to_wstring(int(point.y));
  return status;
};
const Ask kEntity = [](Editor& editor, std::wstring& got) {
  KdDbObjectId id;
  KdGePoint3d point;
  const int status = editor.selectEntity(L"Entity: ", id, point);
  const int error = std::get<int>(*editor.variables().get(L"ERRNO"));
  got = id.isNull() ? L"error " + std::to_wstring(error) : id == editor.database().idOfHandle(0x2F) ? L"2F" : L"30";
  return status;
};

TEST(Editor, asksUntilTheAnswerIsOneThatIsWanted) {
  const std::wstring missed = L"error " + std::to_wstring(kKdErrnoPickMissed), none = L"error 0";
  const struct {
    const Ask& ask;
    int flags;
    const char* answers;
    int status;
    std::wstring got;
  } rows[] = {
      {kText, kKdNoEmptyAnswer, "undo", kKdInputKeyword, L""},
      {kText, kKdInitGetNone, "\"\"", kKdInputNone, L""},
      {kPoint, kKdInitGetNone, "foo 3 3,4", kKdInputNormal, L"3,4"},
      {kPoint, kKdInitGetNone, "@1,1", kKdInputNormal, L"101,201"},
      {kPoint, kKdInitGetNone, "#2F:1,1 ^C", kKdInputCancel, L"0,0"},
      {kReal, kKdNoNegative, "-2 3", kKdInputNormal, L"3.00"},
      {kReal, kKdNoZero, "0 -1", kKdInputNormal, L"-1.0"},
      {kReal, kKdNoEmptyAnswer, "\"\" 1", kKdInputNormal, L"1.00"},
      {kReal, kKdInitGetNone, "x 1,5 \"\"", kKdInputNone, L"77.0"},
      {kInteger, kKdNoNegative, "-1 4", kKdInputNormal, L"4"},
      {kInteger, kKdNoZero, "0 2.5 99999999999 1", kKdInputNormal, L"1"},
      {kInteger, kKdNoEmptyAnswer, "\"\" ^C", kKdInputCancel, L"77"},
      {kEntity, kKdInitGetNone, "foo #2F 12 # #2f:@1,1", kKdInputNormal, L"2F"},
      {kEntity, kKdInitGetNone, "4,5.02", kKdInputNormal, L"30"},
      {kEntity, kKdInitGetNone, "4,5.5", kKdInputError, missed},
      {kEntity, kKdInitGetNone, "#31:1,1", kKdInputError, missed},
      {kEntity, kKdInitGetNone, "#0:1,1", kKdInputError, missed},
      {kEntity, kKdInitGetNone, "\"\"", kKdInputError, L"error " + std::to_wstring(kKdErrnoEmptyAnswer)},
      {kEntity, kKdInitGetNone, "^C", kKdInputCancel, none},
      {kEntity, kKdInitGetNone, "undo", kKdInputKeyword, none},
  };
  for (const auto& row : rows) {
    TestEditor test;
    std::pair<int, std::wstring> answer, after;
    test.ask = [&](Editor& editor) {
      editor.variables().setInternally(L"ERRNO", 0);
      editor.view().set({5, 5, 0}, 10);
      ASSERT_EQ(editor.initGet(row.flags, L"Undo"), kKdInputNormal);
      answer.first = row.ask(editor, answer.second);
      after.first = kText(editor, after.second);
    };
    test.run(std::string("ASK ") + row.answers + " undo");
    EXPECT_EQ(answer, std::pair(row.status, row.got)) << row.answers;
    EXPECT_EQ(after, (std::pair<int, std::wstring>(kKdInputNormal, L"undo"))) << "restrictions hold for one call";
    EXPECT_THAT(test.faults, IsEmpty()) << row.answers;
    EXPECT_THAT(test.editor.database().openObjects(), IsEmpty()) << row.answers;
  }
}

/// A terminal: answers are typed at the prompt, and ^C comes as a signal.
class FakeTerminal final : public InputSource {
 public:
  explicit FakeTerminal(std::vector<Line> lines) : m_lines(std::move(lines)) {}
  Line next(const Question& question) override {
    prompts.push_back(question.prompt);
    return m_next < m_lines.size() ? m_lines[m_next++] : Line{Kind::end};
  }
  std::string name() const override { return {}; }
  bool echoes() const override { return false; }
  std::vector<std::wstring> prompts;

 private:
  std::vector<Line> m_lines;
  std::size_t m_next = 0;
};

TEST(Editor, atATerminalEchoesOnlyWhatWasTypedAhead) {
  TestEditor test;
  test.ask = [](Editor& editor) {
    std::wstring text;
    (void)editor.getString(L"\nA: ", Blanks::endAnswer, text);
    (void)editor.getString(L"B: ", Blanks::endAnswer, text);
  };
  FakeTerminal terminal({{InputSource::Kind::line, L"ASK x"}, {InputSource::Kind::line, L"y"}});
  EXPECT_EQ(test.editor.run(terminal, OnFault::goOn), Fault::none);
  EXPECT_EQ(test.output, L"A: x\n");
  EXPECT_THAT(terminal.prompts, ElementsAre(L"Command: ", L"B: ", L"Command: "));
}

TEST(Editor, aTerminalMayInterruptOrEndAnywhereWithoutFault) {
  for (const InputSource::Kind kind : {InputSource::Kind::interrupt, InputSource::Kind::end}) {
    TestEditor test;
    int status = 0;
    test.ask = [&](Editor& editor) {
      std::wstring text;
      status = editor.getString(L"A: ", Blanks::endAnswer, text);
    };
    FakeTerminal terminal({{InputSource::Kind::line, L"ASK"}, {kind}});
    EXPECT_EQ(test.editor.run(terminal, OnFault::goOn), Fault::none);
    EXPECT_EQ(status, kKdInputCancel);
    EXPECT_THAT(test.faults, IsEmpty());
  }
}

}  // namespace
}  // namespace torva::command

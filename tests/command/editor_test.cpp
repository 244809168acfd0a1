#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include "test_editor.h"

namespace torva::command {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Editor, reportsUnknownCommandsOncePerLineAndGoesOnUnlessItIsToStop) {
  TestEditor test;
  EXPECT_EQ(test.run("FOO a b\nSETVAR ERRNO\n"), Fault::script);
  EXPECT_THAT(test.faults, ElementsAre("test:1: unknown command \"FOO\""));
  EXPECT_THAT(test.output, HasSubstr(L"ERRNO = "));
  EXPECT_EQ(test.run("FOO\nBAR\n", OnFault::stop), Fault::script);
  EXPECT_EQ(test.faults.size(), 2u);
}

TEST(Editor, emptyLinesCommentsAndCancelsAreNothingAtTheCommandPrompt) {
  TestEditor test;
  EXPECT_EQ(test.run("\n; FOO\n^C\n  \n\"\"\n"), Fault::none);
  EXPECT_THAT(test.faults, IsEmpty());
}

TEST(Editor, cancelsACommandThatTheScriptEndsIn) {
  TestEditor test;
  int status = 0;
  test.ask = [&](Editor& editor) {
    std::wstring text;
    while (status != kKdInputCancel) status = editor.getString(L"Text: ", Blanks::endAnswer, text);
  };
  EXPECT_EQ(test.run("\nASK a\n b\n"), Fault::script);
  EXPECT_EQ(status, kKdInputCancel);
  EXPECT_THAT(test.faults, ElementsAre("test:3: the script ended inside the command ASK of line 2, which is cancelled"));
  EXPECT_EQ(test.run("SETVAR ERRNO\n"), Fault::none) << "the next script starts clean";
}

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

TEST(Editor, reportsWhatACommandThrows) {
  TestEditor test;
  test.ask = [](Editor&) { throw std::runtime_error("no luck"); };
  EXPECT_EQ(test.run("ASK\nSETVAR ERRNO\n"), Fault::script);
  EXPECT_THAT(test.faults, ElementsAre("test:1: ASK failed: no luck"));
  test.ask = [](Editor&) { throw 1; };
  EXPECT_EQ(test.run("ASK\n"), Fault::script);
}

TEST(Editor, asksForPoints) {
  const struct {
    const char* name;
    const char* answers;
    int status;
    KdGePoint3d point;
  } rows[] = {
      {"point", "3,4", kKdInputNormal, {3, 4, 0}},
      {"relative to the base", "@1,1", kKdInputNormal, {101, 201, 0}},
      {"asks again", "foo 3 3,4", kKdInputNormal, {3, 4, 0}},
      {"keyword", "u", kKdInputKeyword, {}},
      {"Enter", "\"\"", kKdInputNone, {}},
      {"cancel", "^C", kKdInputCancel, {}},
      {"a handle is no point", "#2F:1,1 3,4", kKdInputNormal, {3, 4, 0}},
  };
  for (const auto& row : rows) {
    TestEditor test;
    int status = 0;
    KdGePoint3d point;
    test.ask = [&](Editor& editor) {
      const KdGePoint3d base{100, 200, 0};
      ASSERT_EQ(editor.initGet(kKdInitGetNone, L"Undo"), kKdInputNormal);
      status = editor.getPoint(&base, L"Point: ", point);
    };
    test.run(std::string("ASK ") + row.answers + "\n");
    EXPECT_EQ(status, row.status) << row.name;
    EXPECT_TRUE(point.isEqualTo(row.point)) << row.name;
    EXPECT_THAT(test.faults, IsEmpty()) << row.name;
  }
}

TEST(Editor, asksForNumbersWithinTheRestrictions) {
  using Given = std::pair<int, double>;
  const struct {
    const char* name;
    int flags;
    const char* answers;
    Given real, integer;
  } rows[] = {
      {"free", kKdInitGetNone, "-2 0", {kKdInputNormal, -2}, {kKdInputNormal, 0}},
      {"not negative", kKdNoNegative, "-2 3 -1 4", {kKdInputNormal, 3}, {kKdInputNormal, 4}},
      {"not zero", kKdNoZero, "0 -1 0 1", {kKdInputNormal, -1}, {kKdInputNormal, 1}},
      {"not empty", kKdNoEmptyAnswer, "\"\" 1 \"\" 2", {kKdInputNormal, 1}, {kKdInputNormal, 2}},
      {"empty", kKdInitGetNone, "\"\" \"\"", {kKdInputNone, 77}, {kKdInputNone, 77}},
      {"other texts", kKdInitGetNone, "x 1,5 2.5 1.5 99999999999 3", {kKdInputNormal, 2.5}, {kKdInputNormal, 3}},
  };
  for (const auto& row : rows) {
    TestEditor test;
    double real = 77;
    int integer = 77, realStatus = 0, integerStatus = 0;
    test.ask = [&](Editor& editor) {
      ASSERT_EQ(editor.initGet(row.flags, nullptr), kKdInputNormal);
      realStatus = editor.getReal(L"Number: ", real);
      ASSERT_EQ(editor.initGet(row.flags, nullptr), kKdInputNormal);
      integerStatus = editor.getInteger(L"Number: ", integer);
    };
    test.run(std::string("ASK ") + row.answers + "\n");
    EXPECT_EQ(Given(realStatus, real), row.real) << row.name;
    EXPECT_EQ(Given(integerStatus, integer), row.integer) << row.name;
  }
}

TEST(Editor, restrictionsHoldForOneCall) {
  TestEditor test;
  std::vector<int> statuses;
  test.ask = [&](Editor& editor) {
    std::wstring text;
    statuses = {editor.initGet(kKdNoEmptyAnswer, L"Undo"), editor.getString(L"A: ", Blanks::endAnswer, text),
                editor.getString(L"B: ", Blanks::endAnswer, text), editor.getString(L"C: ", Blanks::endAnswer, text)};
  };
  test.run("ASK undo undo \"\"\n");
  EXPECT_THAT(statuses, ElementsAre(kKdInputNormal, kKdInputKeyword, kKdInputNormal, kKdInputNone));
}

TEST(Editor, asksForEntities) {
  const struct {
    const char* name;
    const char* answers;
    int status;
    std::uint64_t handle;
    int errorNumber;
  } rows[] = {
      {"handle", "#2F:1,1", kKdInputNormal, 0x2F, 0},
      {"handle in lower case, relative point", "#2f:@1,1", kKdInputNormal, 0x2F, 0},
      {"point on the line", "4,5", kKdInputNormal, 0x30, 0},
      {"point beside the line within the pick box", "4,5.02", kKdInputNormal, 0x30, 0},
      {"point beyond the pick box", "4,5.5", kKdInputError, 0, kKdErrnoPickMissed},
      {"missing handle", "#31:1,1", kKdInputError, 0, kKdErrnoPickMissed},
      {"handle 0", "#0:1,1", kKdInputError, 0, kKdErrnoPickMissed},
      {"Enter", "\"\"", kKdInputError, 0, kKdErrnoEmptyAnswer},
      {"cancel", "^C", kKdInputCancel, 0, 0},
      {"keyword", "undo", kKdInputKeyword, 0, 0},
      {"asks again", "foo #2F 12 # #2F:1,1", kKdInputNormal, 0x2F, 0},
  };
  for (const auto& row : rows) {
    TestEditor test;
    int status = 0;
    KdDbObjectId id;
    KdGePoint3d point;
    test.ask = [&](Editor& editor) {
      editor.variables().setInternally(L"ERRNO", 0);
      editor.view().set({5, 5, 0}, 10);
      ASSERT_EQ(editor.initGet(kKdInitGetNone, L"Undo"), kKdInputNormal);
      status = editor.selectEntity(L"Entity: ", id, point);
    };
    test.run(std::string("ASK ") + row.answers + "\n");
    EXPECT_EQ(status, row.status) << row.name;
    EXPECT_EQ(id, row.handle ? test.editor.database().idOfHandle(row.handle) : KdDbObjectId()) << row.name;
    EXPECT_EQ(std::get<int>(*test.editor.variables().get(L"ERRNO")), row.errorNumber) << row.name;
    EXPECT_THAT(test.editor.database().openObjects(), IsEmpty()) << row.name;
  }
}

/// Asks for an entity with each answer; the statuses and the points.
std::vector<std::pair<int, KdGePoint3d>> picksOf(TestEditor& test, const std::string& answers, std::size_t count) {
  std::vector<std::pair<int, KdGePoint3d>> picks(count);
  test.ask = [&](Editor& editor) {
    KdDbObjectId id;
    for (auto& [status, point] : picks) status = editor.selectEntity(L"Entity: ", id, point);
  };
  test.run("ASK " + answers);
  return picks;
}

TEST(Editor, missesErasedEntities) {
  TestEditor test;
  test.run("ERASE #2F:1,1 \"\"");
  EXPECT_EQ(picksOf(test, "#2F:1,1", 1)[0].first, kKdInputError);
}

TEST(Editor, lastPointFollowsAnswers) {
  TestEditor test;
  const auto picks = picksOf(test, "#2F:1,1 @2,0 @2<90", 3);
  EXPECT_TRUE(picks[1].second.isEqualTo({3, 1, 0}));
  EXPECT_TRUE(picks[2].second.isEqualTo({3, 3, 0}));
}

TEST(Editor, picksInTheUserCoordinateSystem) {
  TestEditor test;
  test.run("UCS 4,5 UCS Z 90");
  EXPECT_EQ(picksOf(test, "0,-3", 1)[0].first, kKdInputNormal) << "7,5 in the world lies on the line";
}

TEST(Editor, printsPromptsWithAnswersOnLinesOfTheirOwn) {
  TestEditor test;
  test.ask = [](Editor& editor) {
    std::wstring text;
    editor.write(L"half");
    (void)editor.getString(L"\nText: ", Blanks::belongToAnswer, text);
    editor.print(text);
  };
  test.run("ASK  a  b\n");
  EXPECT_EQ(test.output, L"Command: ASK\nhalf\nText: a  b\na  b\n");
}

TEST(Editor, undoTakesCommandsBackOneByOne) {
  TestEditor test;
  const std::pair<const char*, std::size_t> steps[] = {
      {"LINE 0,0 1,1 \"\"\nLINE 0,0 1,1 2,2 \"\"\nCIRCLE 0,0 1", 6}, {"U", 5}, {"UNDO 5", 2}, {"REDO\nREDO", 5}};
  for (const auto& [script, count] : steps) {
    EXPECT_EQ(test.run(script), Fault::none);
    EXPECT_EQ(handlesIn(test.editor.database()).size(), count) << script;
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

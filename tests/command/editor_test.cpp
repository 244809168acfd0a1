#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include "test_editor.h"

namespace torva::command {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What an input call gave, in the order of the calls of one ASK.
struct Given {
  int status = 0;
  std::wstring value;
  bool operator==(const Given&) const = default;
};

TEST(Editor, reportsUnknownCommandsOncePerLineAndGoesOn) {
  TestEditor test;
  EXPECT_EQ(test.run("FOO a b\nSETVAR ERRNO\n"), Fault::script);
  EXPECT_THAT(test.faults, ElementsAre("test:1: unknown command \"FOO\""));
  EXPECT_THAT(test.output, HasSubstr(L"ERRNO = "));
}

TEST(Editor, stopsAtAFaultWhenAsked) {
  TestEditor test;
  EXPECT_EQ(test.run("FOO\nBAR\n", OnFault::stop), Fault::script);
  EXPECT_EQ(test.faults.size(), 1u);
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
  const struct {
    const char* name;
    int flags;
    const char* answers;
    Given real, integer;
  } rows[] = {
      {"free", kKdInitGetNone, "-2 0", {kKdInputNormal, L"-2"}, {kKdInputNormal, L"0"}},
      {"not negative", kKdNoNegative, "-2 3 -1 4", {kKdInputNormal, L"3"}, {kKdInputNormal, L"4"}},
      {"not zero", kKdNoZero, "0 -1 0 1", {kKdInputNormal, L"-1"}, {kKdInputNormal, L"1"}},
      {"not empty", kKdNoEmptyAnswer, "\"\" 1 \"\" 2", {kKdInputNormal, L"1"}, {kKdInputNormal, L"2"}},
      {"empty", kKdInitGetNone, "\"\" \"\"", {kKdInputNone, L"77"}, {kKdInputNone, L"77"}},
      {"other texts", kKdInitGetNone, "x 1,5 2 1.5 99999999999 3", {kKdInputNormal, L"2"}, {kKdInputNormal, L"3"}},
  };
  for (const auto& row : rows) {
    TestEditor test;
    Given real, integer;
    test.ask = [&](Editor& editor) {
      double number = 77;
      int whole = 77;
      ASSERT_EQ(editor.initGet(row.flags, nullptr), kKdInputNormal);
      real.status = editor.getReal(L"Number: ", number);
      ASSERT_EQ(editor.initGet(row.flags, nullptr), kKdInputNormal);
      integer.status = editor.getInteger(L"Number: ", whole);
      real.value = std::to_wstring(static_cast<int>(number));
      integer.value = std::to_wstring(whole);
    };
    test.run(std::string("ASK ") + row.answers + "\n");
    EXPECT_EQ(real, row.real) << row.name;
    EXPECT_EQ(integer, row.integer) << row.name;
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

TEST(Editor, missesErasedEntities) {
  TestEditor test;
  int status = 0;
  test.ask = [&](Editor& editor) {
    KdDbObject* object = nullptr;
    ASSERT_EQ(editor.database().openObject(object, editor.database().idOfHandle(0x2F), KdOpenMode::forWrite, false),
              KdStatus::ok);
    ASSERT_EQ(object->erase(), KdStatus::ok);
    object->close();
    KdDbObjectId id;
    KdGePoint3d point;
    status = editor.selectEntity(L"Entity: ", id, point);
  };
  test.run("ASK #2F:1,1\n");
  EXPECT_EQ(status, kKdInputError);
  EXPECT_EQ(test.editor.database().undo(), L"ASK");
}

TEST(Editor, lastPointFollowsAnswers) {
  TestEditor test;
  std::vector<KdGePoint3d> points(3);
  test.ask = [&](Editor& editor) {
    KdDbObjectId id;
    for (KdGePoint3d& point : points) (void)editor.selectEntity(L"Entity: ", id, point);
  };
  test.run("ASK #2F:1,1 @2,0 @2<90\n");
  EXPECT_TRUE(points[1].isEqualTo({3, 1, 0}));
  EXPECT_TRUE(points[2].isEqualTo({3, 3, 0}));
}

TEST(Editor, picksInTheUserCoordinateSystem) {
  TestEditor test;
  test.editor.variables().setInternally(L"UCSORG", KdGePoint3d{4, 5, 0});
  test.editor.variables().setInternally(L"UCSXDIR", KdGePoint3d{0, 1, 0});
  test.editor.variables().setInternally(L"UCSYDIR", KdGePoint3d{-1, 0, 0});
  EXPECT_TRUE(test.editor.toWorld({1, 2, 3}).isEqualTo({2, 6, 3}));
  EXPECT_TRUE(test.editor.toUser({2, 6, 3}).isEqualTo({1, 2, 3}));
  int status = 0;
  test.ask = [&](Editor& editor) {
    KdDbObjectId id;
    KdGePoint3d point;
    status = editor.selectEntity(L"Entity: ", id, point);
  };
  test.run("ASK 0,-3\n");
  EXPECT_EQ(status, kKdInputNormal) << "7,5 in the world lies on the line";
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
  int scaleOfLast = 1;
  test.ask = [&](Editor& editor) {
    KdDbMline* mline = nullptr;
    ASSERT_EQ(kddbOpenObject(mline, editor.database().idOfHandle(0x2F), KdOpenMode::forWrite), KdStatus::ok);
    EXPECT_EQ(mline->setScale(++scaleOfLast), KdStatus::ok);
    mline->close();
  };
  const auto scale = [&] {
    const db::Database& database = test.editor.database();
    return database.mline(database.recordOf(database.idOfHandle(0x2F))).scale;
  };
  test.run("ASK\nASK\nASK\n");
  EXPECT_EQ(scale(), 4);
  test.run("U\n");
  EXPECT_EQ(scale(), 3);
  test.run("UNDO 5\n");
  EXPECT_EQ(scale(), 1);
  test.run("REDO\nREDO\n");
  EXPECT_EQ(scale(), 3);
  EXPECT_THAT(test.faults, IsEmpty());
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

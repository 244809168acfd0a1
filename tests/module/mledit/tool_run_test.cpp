#include <cwchar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "module/mledit/drawing.h"
#include "module/mledit/engine.h"

namespace {

using ::testing::ElementsAre;

constexpr unsigned kKeywords = 4002, kFirstOrUndo = 4010, kFirst = 4011, kSecond = 4012;

// The prompts that were loaded, in order.
std::vector<unsigned>& loadedTexts() {
  static std::vector<unsigned> texts;
  return texts;
}

}  // namespace

// The host's resource libraries are not part of this program: a text is its number, the keywords are UNDO.
int LoadStringW(KdModuleHandle, unsigned id, wchar_t* buffer, int capacity) noexcept {
  loadedTexts().push_back(id);
  return std::swprintf(buffer, static_cast<std::size_t>(capacity), id == kKeywords ? L"UNDO" : L"%u", id);
}

namespace {

class ToolRun : public ::testing::Test {
 protected:
  ToolRun() {
    addTool(L"CS", &CMlineEdit::cmd_mledit_CutSingle);
    addTool(L"CA", &CMlineEdit::cmd_mledit_CutAll);
    addTool(L"WA", &CMlineEdit::cmd_mledit_WeldAll);
    addTool(L"AV", &CMlineEdit::cmd_mledit_AddVertex);
    addTool(L"DV", &CMlineEdit::cmd_mledit_DeleteVertex);
    addTool(L"CT", &CMlineEdit::cmd_mledit_ClosedTree);
    addTool(L"OT", &CMlineEdit::cmd_mledit_OpenTree);
    addTool(L"MT", &CMlineEdit::cmd_mledit_MergedTree);
    addTool(L"CJ", &CMlineEdit::cmd_mledit_CornerJoint);
    addTool(L"OC", &CMlineEdit::cmd_mledit_OpenCross);
    loadedTexts().clear();
  }

  void addTool(const wchar_t* name, int (CMlineEdit::*tool)(KdModuleHandle)) {
    torva::command::Command command;
    command.group = L"TEST";
    command.globalName = command.localName = name;
    command.run = [this, tool] { m_result = (CMlineEdit().*tool)(nullptr); };
    ASSERT_EQ(m_drawing.commands().add(command), KdStatus::ok);
  }

  std::vector<ElementLists> listsOf(torva::dxf::Handle handle) { return m_drawing.listsOf(handle); }
  static std::string pick(torva::dxf::Handle handle, double x, double y) { return Drawing::pick(handle, x, y); }

  Drawing m_drawing;
  torva::dxf::Handle m_wall = m_drawing.addMline({{{0, 0, 0}, {20, 0, 0}, {40, 0, 0}}, {0, -1, -2}});
  torva::dxf::Handle m_other = m_drawing.addMline({{{0, 30, 0}, {20, 30, 0}}, {0, -1}});
  int m_result = 0;
};

const ElementLists kWhole0 = {{0, 0}, {0, 0}, {0, 0}};
const ElementLists kWhole1 = {{-1, 0}, {-1, 0}, {-1, 0}};
const ElementLists kWhole2 = {{-2, 0}, {-2, 0}, {-2, 0}};

TEST_F(ToolRun, CutAllOpensEveryElement) {
  m_drawing.run("CA\n" + pick(m_wall, 15, 0) + pick(m_wall, 23, -2) + "\n");
  EXPECT_THAT(listsOf(m_wall),
              ElementsAre(ElementLists{{0, 0, 15}, {0, 3}, {0, 0}}, ElementLists{{-1, 0, 15}, {-1, 3}, {-1, 0}},
                          ElementLists{{-2, 0, 15}, {-2, 3}, {-2, 0}}));
  EXPECT_THAT(loadedTexts(), ElementsAre(kFirst, kSecond, kKeywords, kFirstOrUndo));
  EXPECT_EQ(m_drawing.openCount(), 0u);
  EXPECT_EQ(m_drawing.faults(), "");
  EXPECT_EQ(m_result, kKdInputError) << "the empty answer that ended it";
}

TEST_F(ToolRun, CutSingleOpensTheElementOfTheFirstPick) {
  m_drawing.run("CS\n" + pick(m_wall, 5, -1) + pick(m_wall, 8, -2) + "\n");
  EXPECT_THAT(listsOf(m_wall), ElementsAre(kWhole0, ElementLists{{-1, 0, 5, 8}, {-1, 0}, {-1, 0}}, kWhole2));
}

TEST_F(ToolRun, UndoTakesBackTheLastCutOnce) {
  m_drawing.run("CS\n" + pick(m_wall, 5, -1) + pick(m_wall, 8, -1) + pick(m_wall, 10, -1) + pick(m_wall, 12, -1) +
                "undo\n\n");
  EXPECT_THAT(listsOf(m_wall), ElementsAre(kWhole0, ElementLists{{-1, 0, 5, 8}, {-1, 0}, {-1, 0}}, kWhole2));
  EXPECT_THAT(loadedTexts(),
              ElementsAre(kFirst, kSecond, kKeywords, kFirstOrUndo, kSecond, kKeywords, kFirstOrUndo, kFirst));
  EXPECT_EQ(m_drawing.openCount(), 0u);
}

TEST_F(ToolRun, UndoIsOfferedOnlyAfterACut) {
  m_drawing.run("CS\nundo\n" + pick(m_wall, 5, -1) + pick(m_wall, 8, -1) + "\n");
  EXPECT_THAT(loadedTexts(), ElementsAre(kFirst, kSecond, kKeywords, kFirstOrUndo));
}

TEST_F(ToolRun, AnswersThatPickNoMultilineAskAgain) {
  const auto line = m_drawing.add("LINE", "AcDbLine");
  m_drawing.run("CS\n45,45\n" + pick(line, 1, 1) + pick(m_wall, 5, 0) + "\n45,45\n" + pick(m_other, 5, 30) +
                pick(m_wall, 8, 0) + "\n");
  EXPECT_THAT(listsOf(m_wall), ElementsAre(ElementLists{{0, 0, 5, 8}, {0, 0}, {0, 0}}, kWhole1, kWhole2));
  EXPECT_THAT(loadedTexts(), ElementsAre(kFirst, kFirst, kFirst, kSecond, kKeywords, kFirstOrUndo));
}

TEST_F(ToolRun, ACancelEndsItAtEitherPromptAndKeepsCutsMade) {
  const std::string cut = pick(m_wall, 5, 0) + pick(m_wall, 8, 0);
  m_drawing.run("CS\n^C\n");
  EXPECT_EQ(m_result, kKdInputCancel);
  EXPECT_EQ(m_drawing.faults(), "") << "an object left open";
  m_drawing.run("CS\n" + cut + pick(m_wall, 10, 0) + "^C\n");
  EXPECT_EQ(m_result, kKdInputCancel);
  EXPECT_EQ(m_drawing.faults(), "") << "an object left open";
  EXPECT_THAT(listsOf(m_wall), ElementsAre(ElementLists{{0, 0, 5, 8}, {0, 0}, {0, 0}}, kWhole1, kWhole2));
}

TEST_F(ToolRun, APickThatMeetsNoLineIsCheckedAgainstTheMultiline) {
  // The second pass keeps segment 1 of the wall, which the other multiline does not have.
  m_drawing.run("CA\n" + pick(m_wall, 25, 0) + pick(m_wall, 28, 0) + pick(m_other, 5, 99) + pick(m_other, 8, 99) + "\n");
  EXPECT_THAT(listsOf(m_other), ElementsAre(ElementLists{{0, 0}, {0, 0}}, ElementLists{{-1, 0}, {-1, 0}}));
  // As the very first pick it is the origin on element 0.
  m_drawing.run("CS\n" + pick(m_wall, 5, 99) + pick(m_wall, 4, 0) + "\n");
  EXPECT_THAT(listsOf(m_wall)[0], ElementsAre(ElementsAre(0, 4), ElementsAre(0, 0, 5, 8), ElementsAre(0, 0)));
}

TEST_F(ToolRun, AMultilineThatCannotBeWrittenIsNotEdited) {
  KdDbMline* reader = nullptr;
  ASSERT_EQ(kddbOpenObject(reader, m_drawing.idOf(m_wall), KdOpenMode::forRead), KdStatus::ok);
  m_drawing.run("CA\n" + pick(m_wall, 5, 0) + pick(m_wall, 8, 0) + "\n");
  EXPECT_THAT(listsOf(m_wall), ElementsAre(kWhole0, kWhole1, kWhole2));
  EXPECT_THAT(loadedTexts(), ElementsAre(kFirst, kSecond, kFirst)) << "nothing to undo";
}

TEST_F(ToolRun, ACornerTellsWhatItRefuses) {
  constexpr unsigned kCornerFirst = 4004, kCornerSecond = 4005, kClosed = 4006, kNoCrossing = 4007;
  const auto ring = m_drawing.addMline({{{0, 60, 0}, {20, 60, 0}, {20, 80, 0}}, {1, -1}, true});
  m_drawing.run("CJ\n" + pick(ring, 9, 61) + pick(m_wall, 5, 0) + pick(ring, 9, 61) + pick(m_other, 5, 30) + "\n");
  EXPECT_THAT(loadedTexts(),
              ElementsAre(kCornerFirst, kClosed, kCornerFirst, kCornerSecond, kClosed, kNoCrossing, kCornerFirst));
  EXPECT_EQ(m_drawing.openCount(), 0u);
}

TEST_F(ToolRun, APairThatDoesNotMeetLeavesNothingToUndo) {
  constexpr unsigned kCrossFirstOrUndo = 4003, kCrossFirst = 4004, kCrossSecond = 4005;
  const auto across = m_drawing.addMline({{{10, -20, 0}, {10, 20, 0}}, {1, -1}});
  // Crosses the wall, but at an angle at which the elements count as running the same way.
  const auto along = m_drawing.addMline({{{0, -5e-10, 0}, {20, 5e-10, 0}}, {1, -1}});
  struct Row {
    const char* name;
    torva::dxf::Handle handle;
    double x, y;
    bool isUndoOffered;
  };
  const Row rows[] = {{"crosses", across, 9, -10, true}, {"parallel", m_other, 5, 30, false}, {"nearly", along, 5, 1, true}};
  for (const Row& row : rows) {
    loadedTexts().clear();
    m_drawing.run("OC\n" + pick(m_wall, 5, 0) + pick(row.handle, row.x, row.y) + "\n");
    if (row.isUndoOffered) {
      EXPECT_THAT(loadedTexts(), ElementsAre(kCrossFirst, kCrossSecond, kKeywords, kCrossFirstOrUndo)) << row.name;
    } else {
      EXPECT_THAT(loadedTexts(), ElementsAre(kCrossFirst, kCrossSecond, kCrossFirst)) << row.name;
    }
  }
  EXPECT_THAT(listsOf(along), ElementsAre(ElementLists{{1, 0}, {1, 0}}, ElementLists{{-1, 0}, {-1, 0}}));
}

TEST_F(ToolRun, ATeeRefusesAClosedStemAtOnceAndABarThatItDoesNotMeet) {
  constexpr unsigned kFirstMline = 4004, kSecondMline = 4005, kClosed = 4006, kNoCrossing = 4007;
  const auto ring = m_drawing.addMline({{{5, 15, 0}, {25, 15, 0}, {25, 25, 0}}, {0.5, -0.5}, true});
  const auto wall = listsOf(m_wall), other = listsOf(m_other);
  for (const char* tool : {"CT\n", "OT\n", "MT\n"}) {
    loadedTexts().clear();
    m_drawing.run(tool + pick(ring, 10, 14.5) + pick(m_wall, 10, 0) + pick(m_other, 10, 30) + "undo\n\n");
    EXPECT_THAT(loadedTexts(), ElementsAre(kFirstMline, kClosed, kFirstMline, kSecondMline, kNoCrossing, kFirstMline));
  }
  EXPECT_EQ(listsOf(m_wall), wall);
  EXPECT_EQ(listsOf(m_other), other);
}

TEST_F(ToolRun, NoScriptLeavesAnObjectOpen) {
  constexpr unsigned kSeed = 77;
  SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
  const MlineSketch path = {{{5, -5, 0}, {25, 5, 0}, {25, 35, 0}, {5, 15, 0}}, {1, -1}};
  const auto odd = m_drawing.addMline({path.path, path.distances, true}), oddOpen = m_drawing.addMline(path);
  for (const auto handle : {odd, oddOpen}) {
    m_drawing.edit(handle, [](KdDbMline& mline) {
      setList(mline, 1, 0, {});
      std::vector<std::vector<KdMLSegment>> parameters;
      ASSERT_EQ(mline.getParametersAt(2, parameters), KdStatus::ok);
      parameters.front().resize(1);
      ASSERT_EQ(mline.setParametersAt(2, parameters), KdStatus::ok);
    });
  }
  std::mt19937 random(kSeed);
  std::uniform_int_distribution<int> choice(0, 9);
  std::uniform_int_distribution<int> x(-2, 42), y(-3, 32);
  for (int round = 0; round < 300; ++round) {
    constexpr const char* kTools[] = {"CS\n", "CA\n", "WA\n", "AV\n", "DV\n", "CT\n", "OT\n", "MT\n", "CJ\n", "CJ\n"};
    std::string script = kTools[choice(random)];
    for (int i = 0; i < 12; ++i) {
      const int answer = choice(random);
      const torva::dxf::Handle target = answer < 3 ? m_wall : answer < 5 ? odd : answer < 7 ? oddOpen : m_other;
      script += answer == 9 ? "undo\n" : answer == 8 ? "\n" : pick(target, x(random), y(random));
    }
    m_drawing.run(script + "^C\n");
    ASSERT_THAT(m_drawing.faults(), ::testing::Not(::testing::HasSubstr("left an object open"))) << script;
  }
}

}  // namespace

#include "module/mledit/tool_run.h"

#include <cwchar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace {

using ::testing::ElementsAre;

constexpr unsigned kKeywords = 4002, kFirstOrUndo = 4010, kFirst = 4011, kSecond = 4012;  // of cuts
constexpr unsigned kMlineOrUndo = 4003, kFirstMline = 4004, kSecondMline = 4005, kClosed = 4006, kNoCrossing = 4007;

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

class ToolRunTest : public ToolRun {
 protected:
  ToolRunTest() {
    addTool(L"CC", &CMlineEdit::cmd_mledit_ClosedCross);
    addTool(L"OC", &CMlineEdit::cmd_mledit_OpenCross);
    addTool(L"MC", &CMlineEdit::cmd_mledit_MergedCross);
    addTool(L"CT", &CMlineEdit::cmd_mledit_ClosedTree);
    addTool(L"OT", &CMlineEdit::cmd_mledit_OpenTree);
    addTool(L"MT", &CMlineEdit::cmd_mledit_MergedTree);
    addTool(L"CJ", &CMlineEdit::cmd_mledit_CornerJoint);
    addTool(L"AV", &CMlineEdit::cmd_mledit_AddVertex);
    addTool(L"DV", &CMlineEdit::cmd_mledit_DeleteVertex);
    addTool(L"CS", &CMlineEdit::cmd_mledit_CutSingle);
    addTool(L"CA", &CMlineEdit::cmd_mledit_CutAll);
    addTool(L"WA", &CMlineEdit::cmd_mledit_WeldAll);
  }

  std::vector<ElementLists> listsOf(torva::dxf::Handle handle) { return m_drawing.listsOf(handle); }

  torva::dxf::Handle m_wall = m_drawing.addMline({{{0, 0, 0}, {20, 0, 0}, {40, 0, 0}}, {0, -1, -2}});
  torva::dxf::Handle m_other = m_drawing.addMline({{{0, 30, 0}, {20, 30, 0}}, {0, -1}});
  torva::dxf::Handle m_across = m_drawing.addMline({{{10, -20, 0}, {10, 20, 0}}, {1, -1}});
  torva::dxf::Handle m_line = m_drawing.add("LINE", "AcDbLine");
};

TEST_F(ToolRunTest, PromptsFollowTheAnswers) {
  // Crosses the wall, but at an angle at which the elements count as running the same way.
  const auto along = m_drawing.addMline({{{0, -5e-10, 0}, {20, 5e-10, 0}}, {1, -1}});
  const auto ring = m_drawing.addMline({{{5, 15, 0}, {25, 15, 0}, {25, 25, 0}}, {0.5, -0.5}, true});
  const std::string wall = pick(m_wall, 5, 0), other = pick(m_other, 5, 30), onRing = pick(ring, 10, 14.5);
  const std::string cut = wall + pick(m_wall, 8, 0), cross = wall + pick(m_across, 9, -10);
  const std::string another = pick(m_wall, 10, 0) + pick(m_wall, 12, 0);
  struct Row {
    const char* name;
    std::string script;
    std::vector<unsigned> texts;
    std::vector<double> list = {0, 0};  // of the wall's first element afterwards
  };
  const Row rows[] = {
      {"undo before a cut", "CS\nundo\n" + cut, {kFirst, kSecond, kKeywords, kFirstOrUndo}, {0, 0, 5, 8}},
      {"undo after two",
       "CS\n" + cut + another + "undo\n",
       {kFirst, kSecond, kKeywords, kFirstOrUndo, kSecond, kKeywords, kFirstOrUndo, kFirst},
       {0, 0, 5, 8}},
      {"picks of no multiline and of another one",
       "CS\n45,45\n" + pick(m_line, 1, 1) + wall + "\n45,45\n" + other + pick(m_wall, 8, 0),
       {kFirst, kFirst, kFirst, kSecond, kKeywords, kFirstOrUndo},
       {0, 0, 5, 8}},
      {"a cross, then a pair that does not",
       "OC\n" + cross + wall + other,
       {kFirstMline, kSecondMline, kKeywords, kMlineOrUndo, kSecondMline, kFirstMline},
       {0, 0, 9, 11}},
      {"a pair that hardly crosses",
       "OC\n" + wall + pick(along, 5, 1),
       {kFirstMline, kSecondMline, kKeywords, kMlineOrUndo}},
      {"a corner of what is closed, and of what does not cross",
       "CJ\n" + onRing + wall + onRing + other,
       {kFirstMline, kClosed, kFirstMline, kSecondMline, kClosed, kNoCrossing, kFirstMline}},
      {"a closed stem, and one that does not meet the bar",
       "OT\n" + onRing + wall + other + "undo\n",
       {kFirstMline, kClosed, kFirstMline, kSecondMline, kNoCrossing, kFirstMline}},
  };
  for (const Row& row : rows) {
    loadedTexts().clear();
    m_drawing.run(row.script + "\n");
    EXPECT_EQ(loadedTexts(), row.texts) << row.name;
    EXPECT_EQ(listsOf(m_wall)[0][0], row.list) << row.name;
    if (row.list.size() > 2) m_drawing.editor().database().undo();
  }
  EXPECT_THAT(listsOf(along), ElementsAre(ElementLists{{1, 0}, {1, 0}}, ElementLists{{-1, 0}, {-1, 0}}));
  EXPECT_EQ(m_drawing.openCount(), 0u);
}

TEST_F(ToolRunTest, APickThatMeetsNoLineIsCheckedAgainstTheMultiline) {
  // The second pass keeps segment 1 of the wall, which the other multiline does not have.
  m_drawing.run("CA\n" + pick(m_wall, 25, 0) + pick(m_wall, 28, 0) + pick(m_other, 5, 99) + pick(m_other, 8, 99) + "\n");
  EXPECT_THAT(listsOf(m_other), ElementsAre(ElementLists{{0, 0}, {0, 0}}, ElementLists{{-1, 0}, {-1, 0}}));
  // As the very first pick it is the origin on element 0.
  m_drawing.run("CS\n" + pick(m_wall, 5, 99) + pick(m_wall, 4, 0) + "\n");
  EXPECT_THAT(listsOf(m_wall)[0], ElementsAre(ElementsAre(0, 4), ElementsAre(0, 0, 5, 8), ElementsAre(0, 0)));
}

TEST_F(ToolRunTest, AMultilineMayCrossItself) {
  // A loop whose last segment runs down across its first one, at x = 50. On the first segment element 0 lies at y = 1,
  // on the last at x = 51.
  const MlineSketch sketch = {{{0, 0, 0}, {100, 0, 0}, {100, 50, 0}, {50, 50, 0}, {50, -50, 0}}, {1, -1}};
  for (const auto& [tool, lastSize] : {std::pair("CC", 2u), {"OC", 4u}, {"MC", 4u}}) {
    const auto loop = m_drawing.addMline(sketch);
    const std::string cross = std::string(tool) + "\n" + pick(loop, 20, 1) + pick(loop, 51, 30);
    const auto whole = listsOf(loop);
    m_drawing.run(cross + "undo\n\n");
    EXPECT_EQ(listsOf(loop), whole) << tool;
    m_drawing.run(cross + "\n");
    const auto lists = listsOf(loop);
    for (const std::size_t e : {0, 1}) {
      const std::vector<double> opened = {sketch.distances[e], 0, 49, 51};
      EXPECT_THAT(lists[e][0], ::testing::Pointwise(::testing::DoubleNear(1e-9), opened)) << tool;
      EXPECT_EQ(lists[e][3].size(), lastSize) << tool;
    }
  }
}

TEST_F(ToolRunTest, NoScriptLeavesAnObjectOpen) {
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
  const torva::dxf::Handle targets[] = {m_wall, m_wall, m_wall, odd, odd, oddOpen, m_line, m_other};
  std::mt19937 random(kSeed);
  std::uniform_int_distribution<int> choice(0, 9);
  std::uniform_int_distribution<int> x(-2, 42), y(-3, 32);
  for (int round = 0; round < 300; ++round) {
    constexpr const char* kTools[] = {"CS\n", "CA\n", "WA\n", "AV\n", "DV\n", "CT\n", "OT\n", "MT\n", "CJ\n", "CJ\n"};
    std::string script = kTools[choice(random)];
    for (int i = 0; i < 12; ++i) {
      const int answer = choice(random);
      script += answer == 9 ? "undo\n" : answer == 8 ? "\n" : pick(targets[answer], x(random), y(random));
    }
    m_drawing.run(script + "^C\n");
    ASSERT_THAT(m_drawing.faults(), ::testing::Not(::testing::HasSubstr("left an object open"))) << script;
  }
}

}  // namespace

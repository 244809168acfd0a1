#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mledit/bars.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CrossTools : public Bars {
 protected:
  CrossTools() {
    addTool(L"CC", &CMlineEdit::cmd_mledit_ClosedCross);
    addTool(L"OC", &CMlineEdit::cmd_mledit_OpenCross);
    addTool(L"MC", &CMlineEdit::cmd_mledit_MergedCross);
  }
};

TEST_F(CrossTools, AClosedCrossOpensTheFirstUpToTheOuterLinesOfTheSecond) {
  forAllBars([&](int m, int n, double angle, const KdGePoint3d& center, double tolerance) {
    const auto first = addBar(m, 0, center), second = addBar(n, angle, center);
    run("CC", pickBar(first, m, 0, center) + pickBar(second, n, angle, center));
    EXPECT_THAT(gapEnds(second), IsEmpty());
    for (int i = 0; i < m; ++i) {
      const std::vector<KdGePoint3d> ends = gapEnds(first, i);
      // Across a single line there is no width to open.
      ASSERT_EQ(ends.size(), n == 1 ? 0u : 2u);
      for (const KdGePoint3d& end : ends) EXPECT_NEAR(std::abs(leftOf(end, center, angle)), (n - 1) / 2.0, tolerance);
    }
  });
}

TEST_F(CrossTools, AnOpenCrossJoinsTheOuterLinesAndLetsTheInnerOnesRunThrough) {
  forAllBars([&](int m, int n, double angle, const KdGePoint3d& center, double tolerance) {
    const auto first = addBar(m, 0, center), second = addBar(n, angle, center);
    run("OC", pickBar(first, m, 0, center) + pickBar(second, n, angle, center));
    for (int i = 0; i < m; ++i) {
      const std::vector<KdGePoint3d> ends = gapEnds(first, i);
      ASSERT_EQ(ends.size(), n == 1 ? 0u : 2u);
      for (const KdGePoint3d& end : ends) EXPECT_NEAR(std::abs(leftOf(end, center, angle)), (n - 1) / 2.0, tolerance);
    }
    for (int j = 0; j < n; ++j) {
      const std::vector<KdGePoint3d> ends = gapEnds(second, j);
      ASSERT_EQ(ends.size(), m == 1 || (j > 0 && j < n - 1) ? 0u : 2u);
      for (const KdGePoint3d& end : ends) EXPECT_NEAR(std::abs(leftOf(end, center, 0)), (m - 1) / 2.0, tolerance);
      if (n == 1) continue;
      for (const KdGePoint3d& end : ends) EXPECT_TRUE(isIn(gapEnds(first), end, tolerance));
    }
  });
}

TEST_F(CrossTools, AMergedCrossJoinsLinesOfEqualDepth) {
  forAllBars([&](int m, int n, double angle, const KdGePoint3d& center, double tolerance) {
    const auto first = addBar(m, 0, center), second = addBar(n, angle, center);
    run("MC", pickBar(first, m, 0, center) + pickBar(second, n, angle, center));
    const auto gapsWanted = [](int count, int otherCount, int element) {
      const bool isOuter = element == 0 || element == count - 1;
      const int k = isOuter ? 0 : std::min({element, count - 1 - element, (otherCount - 1) / 2});
      return 2 * k == otherCount - 1 ? 0u : 2u;  // the middle one of the other has no width
    };
    const auto firstEnds = gapEnds(first), secondEnds = gapEnds(second);
    for (int i = 0; i < m; ++i) EXPECT_EQ(gapEnds(first, i).size(), gapsWanted(m, n, i)) << i;
    for (int j = 0; j < n; ++j) EXPECT_EQ(gapEnds(second, j).size(), gapsWanted(n, m, j)) << j;
    // With as many elements on both sides every end meets one of the other multiline: a corner of a ring.
    if (m != n) return;
    ASSERT_EQ(firstEnds.size(), secondEnds.size());
    for (const KdGePoint3d& end : firstEnds) EXPECT_TRUE(isIn(secondEnds, end, tolerance));
  });
}

TEST_F(CrossTools, AMergedCrossOfFiveOverThreeLeavesTheInnerLinesOfTheFive) {
  const auto first = addBar(5, 0), second = addBar(3, kAngles[0]);
  run("MC", pickBar(first, 5, 0) + pickBar(second, 3, kAngles[0]));
  EXPECT_THAT(m_drawing.listsOf(first)[0][0], ElementsAre(2, 0, 99, 101));
  EXPECT_THAT(gapEnds(first), ::testing::SizeIs(4));
  EXPECT_THAT(m_drawing.listsOf(second)[0][0], ElementsAre(1, 0, 98, 102));
  EXPECT_THAT(m_drawing.listsOf(second)[1][0], ElementsAre(0, 0, 99, 101));
  EXPECT_THAT(m_drawing.listsOf(second)[2][0], ElementsAre(-1, 0, 98, 102));
}

TEST_F(CrossTools, UndoBringsBackWhatTheLastCrossChanged) {
  for (const char* tool : {"CC", "OC", "MC"}) {
    const auto first = addBar(3, 0), second = addBar(4, 1), third = addBar(3, 2, {30, 0, 0});
    const auto firstWhole = m_drawing.listsOf(first), secondWhole = m_drawing.listsOf(second);
    const std::string cross = pickBar(first, 3, 0) + pickBar(second, 4, 1);
    run(tool, cross + "undo\n");
    EXPECT_EQ(m_drawing.listsOf(first), firstWhole) << tool;
    EXPECT_EQ(m_drawing.listsOf(second), secondWhole) << tool;
    run(tool, cross);
    const auto firstOnce = m_drawing.listsOf(first), secondOnce = m_drawing.listsOf(second);
    EXPECT_NE(firstOnce, firstWhole);
    run(tool, pickBar(third, 3, 2, {30, 0, 0}) + pickBar(first, 3, 0) + "undo\nundo\n");
    EXPECT_EQ(m_drawing.listsOf(first), firstOnce) << tool;
    EXPECT_EQ(m_drawing.listsOf(second), secondOnce) << tool;
    EXPECT_THAT(gapEnds(third), IsEmpty()) << tool;
  }
  EXPECT_EQ(m_drawing.faults(), "");
  EXPECT_EQ(m_drawing.openCount(), 0u);
}

TEST_F(CrossTools, APairThatDoesNotCrossIsLeftAloneAndEndsWhatCanBeUndone) {
  for (const char* tool : {"CC", "OC", "MC"}) {
    const auto first = addBar(3, 0), beside = addBar(3, 0, {0, 20, 0}), across = addBar(3, 1);
    const auto whole = m_drawing.listsOf(beside);
    const std::string refused = pickBar(first, 3, 0) + pickBar(beside, 3, 0, {0, 20, 0});
    run(tool, pickBar(across, 3, 1) + pickBar(first, 3, 0) + refused + "undo\n");
    EXPECT_THAT(gapEnds(across), ::testing::Not(IsEmpty())) << tool;
    EXPECT_EQ(m_drawing.listsOf(beside), whole) << tool;
  }
  EXPECT_EQ(m_drawing.openCount(), 0u);
}

TEST_F(CrossTools, AMultilineMayCrossItself) {
  struct Row {
    const char* tool;
    std::vector<double> onFirst0, onFirst1, onLast0, onLast1;
  };
  // A loop whose last segment runs down across its first one, at x = 50. On the first segment element 0 lies at y = 1,
  // on the last at x = 51.
  const Row rows[] = {
      {"CC", {1, 0, 49, 51}, {-1, 0, 49, 51}, {}, {}},
      {"OC", {1, 0, 49, 51}, {-1, 0, 49, 51}, {49, 51}, {49, 51}},
      {"MC", {1, 0, 49, 51}, {-1, 0, 49, 51}, {49, 51}, {49, 51}},
  };
  for (const Row& row : rows) {
    const auto loop = m_drawing.addMline({{{0, 0, 0}, {100, 0, 0}, {100, 50, 0}, {50, 50, 0}, {50, -50, 0}}, {1, -1}});
    const auto whole = m_drawing.listsOf(loop);
    const std::string cross = pick(loop, 20, 1) + pick(loop, 51, 30);
    run(row.tool, cross);
    const auto lists = m_drawing.listsOf(loop);
    EXPECT_THAT(lists[0][0], ::testing::Pointwise(::testing::DoubleNear(1e-9), row.onFirst0)) << row.tool;
    EXPECT_THAT(lists[1][0], ::testing::Pointwise(::testing::DoubleNear(1e-9), row.onFirst1)) << row.tool;
    EXPECT_EQ(lists[0][3].size(), 2 + row.onLast0.size()) << row.tool;
    EXPECT_EQ(lists[1][3].size(), 2 + row.onLast1.size()) << row.tool;

    const auto again = m_drawing.addMline({{{0, 0, 0}, {100, 0, 0}, {100, 50, 0}, {50, 50, 0}, {50, -50, 0}}, {1, -1}});
    run(row.tool, pick(again, 20, 1) + pick(again, 51, 30) + "undo\n");
    EXPECT_EQ(m_drawing.listsOf(again), whole) << row.tool;
  }
  EXPECT_EQ(m_drawing.faults(), "");
}

TEST_F(CrossTools, APairThatCannotBeWrittenIsNotEdited) {
  const auto first = addBar(3, 0), second = addBar(3, 1);
  const auto whole = m_drawing.listsOf(first);
  for (const char* tool : {"CC", "OC", "MC"}) {
    KdDbMline* reader = nullptr;  // which the command line closes after the command
    ASSERT_EQ(kddbOpenObject(reader, m_drawing.idOf(second), KdOpenMode::forRead), KdStatus::ok);
    run(tool, pickBar(first, 3, 0) + pickBar(second, 3, 1));
    EXPECT_EQ(m_drawing.listsOf(first), whole) << tool;
  }
}

}  // namespace

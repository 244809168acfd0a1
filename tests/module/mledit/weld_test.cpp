#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mledit/drawing.h"
#include "module/mledit/engine.h"
#include "module/mledit/tool_run.h"

namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;

constexpr double kTolerance = 0.5;

// Three segments of 20 units along x, one element 2 units to the left.
std::unique_ptr<KdDbMline> makeStraight(const ElementLists& lists) {
  auto mline = makeMline({{{0, 0, 0}, {20, 0, 0}, {40, 0, 0}, {60, 0, 0}}, {2}});
  for (std::size_t v = 0; v < lists.size(); ++v) setList(*mline, static_cast<int>(v), 0, lists[v]);
  return mline;
}

TEST(Weld, DrawsTheLineBetweenTwoPositions) {
  struct Row {
    const char* name;
    ElementLists before;  // of vertices 0 to 2
    int fromSegment;
    double from;
    int toSegment;
    double to;
    ElementLists after;
  };
  const std::vector<double> o = {2, 0};
  const Row rows[] = {
      {"one gap", {{2, 0, 5, 8, 12}, o, o}, 0, 3, 0, 10, {{2, 0, 12}, o, o}},
      {"positions in reverse order", {{2, 0, 5, 8, 12}, o, o}, 0, 10, 0, 3, {{2, 0, 12}, o, o}},
      {"two segments", {{2, 0, 5}, {2, 0, 5, 8, 12}, o}, 0, 3, 1, 10, {o, {2, 0, 12}, o}},
      {"segments in reverse order", {{2, 0, 5}, {2, 0, 5, 8, 12}, o}, 1, 10, 0, 3, {o, {2, 0, 12}, o}},
      {"a segment in between", {{2, 0, 3}, {2}, {2, 2}}, 0, 3, 2, 2, {o, o, o}},
      {"breaks in between", {{2, 0, 3}, {2, 4, 6, 9}, {2, 2}}, 0, 3, 2, 2, {o, o, o}},
      {"exactly at the breaks", {{2, 0, 3, 5}, o, o}, 0, 3, 0, 5, {o, o, o}},
      {"near the breaks", {{2, 0, 3, 5}, o, o}, 0, 3.3, 0, 4.7, {o, o, o}},
      {"from the very start", {{2, 3}, o, o}, 0, 0, 0, 3, {o, o, o}},
      {"to the end of the segment", {{2, 0, 3}, o, o}, 0, 3, 0, 20, {o, o, o}},
      {"into a gap of the same segment", {{2, 0, 5, 12, 15}, o, o}, 0, 3, 0, 8, {{2, 0, 12, 15}, o, o}},
      {"into a gap of another segment", {o, {2, 0, 5, 8, 12}, o}, 0, 3, 1, 6.5, {o, {2, 8, 12}, o}},
      {"starts where a segment ends", {{2, 0, 15}, {2, 5, 8}, o}, 0, 20, 1, 10, {{2, 0, 15}, o, o}},
      {"starts where one of the second half ends", {o, {2, 0, 15}, {2, 5}}, 1, 20, 2, 10, {o, {2, 0, 15}, o}},
      {"ends where a segment starts", {{2, 0, 5}, {2, 3}, o}, 0, 3, 1, 0, {o, {2, 3}, o}},
      {"one position", {{2, 0, 3, 5}, o, o}, 0, 4, 0, 4, {{2, 0, 3, 5}, o, o}},
      {"no parameters where it starts", {{}, {2, 5}, o}, 0, 4, 1, 7, {{}, {2, 5}, o}},
      {"no parameters in between", {{2, 0, 3}, {}, {2, 2}}, 0, 3, 2, 2, {o, {}, o}},
  };
  for (const Row& row : rows) {
    const auto mline = makeStraight(row.before);
    CMlineEdit engine;
    engine.spaceBetween = kTolerance;
    pick(engine, engine.segFirst, *mline, 1, row.fromSegment, 0, row.from);
    pick(engine, engine.segSecond, *mline, 1, row.toSegment, 0, row.to);
    engine.Weld_Mongline(&engine.segFirst, &engine.segSecond);
    for (int v = 0; v < 3; ++v) {
      EXPECT_THAT(listOf(*mline, v, 0), Pointwise(DoubleNear(1e-12), row.after[static_cast<std::size_t>(v)]))
          << row.name << ", vertex " << v;
    }
  }
}

TEST(Weld, TellsGapsFromDrawnStretches) {
  const auto mline = makeStraight({{2, 1, 5, 8}});
  CMlineEdit engine;
  struct Row {
    double along;
    bool isInGap;
  };
  for (const Row& row : {Row{0.2, true}, {3, false}, {6, true}, {9, false}, {4.8, true}, {7.8, false}}) {
    pick(engine, engine.segFirst, *mline, 1, 0, 0, row.along);
    EXPECT_EQ(IsPositionCutPt(&engine.segFirst, true, kTolerance), row.isInGap) << row.along;
    EXPECT_EQ(IsPositionCutPt(&engine.segFirst, false, kTolerance), !row.isInGap) << row.along;
  }
  EXPECT_FALSE(IsPositionCutPt(nullptr, true, kTolerance));
  engine.segFirst.mline = nullptr;
  EXPECT_FALSE(IsPositionCutPt(&engine.segFirst, false, kTolerance));
}

TEST(Weld, CarriesAPickOntoEveryElementFromWhereItWasMade) {
  // A corner to the left: the inner element ends 3 units before the outer one's vertex.
  const auto mline = makeMline({{{0, 0, 0}, {20, 0, 0}, {20, 20, 0}}, {0, 3}});
  CMlineEdit engine;
  CMlineSegment& seg = engine.segFirst;
  pick(engine, seg, *mline, 1, 0, 0, 19);
  seg.origSegment = 1;  // as a weld of another element leaves it
  ASSERT_TRUE(engine.mappingToSpecifyMonglineForWeldAll(&seg, 1, nullptr));
  EXPECT_EQ(seg.origSegment, 0);
  EXPECT_THAT(seg.origPoint, ElementsAre(DoubleNear(17, 1e-12), DoubleNear(3, 1e-12), 0));
  ASSERT_TRUE(engine.mappingToSpecifyMonglineForWeldAll(&seg, 0, nullptr));
  EXPECT_THAT(seg.origPoint, ElementsAre(19, 0, 0));
  EXPECT_FALSE(engine.mappingToSpecifyMonglineForWeldAll(&seg, 2, nullptr));
  seg.segment = -1;
  EXPECT_FALSE(engine.mappingToSpecifyMonglineForWeldAll(&seg, 0, nullptr));
}

class WeldRun : public ToolRun {
 protected:
  WeldRun() { addTool(L"WA", &CMlineEdit::cmd_mledit_WeldAll); }
};

TEST_F(WeldRun, TakesPicksInGapsAndBesideVertices) {
  struct Row {
    const char* name;
    ElementLists before;  // of a line along x with vertices at 0, 20 and 40
    KdGePoint3d first, second;
    ElementLists after;
  };
  const Row rows[] = {
      {"in a gap and past the end", {{0, 0}, {0, 0, 12}}, {32.3, 0, 0}, {40.2, 0, 0}, {{0, 0}, {0, 0}}},
      {"just behind a vertex: the end before it", {{0, 0, 12}, {0, 0.1}}, {11, 0, 0}, {20.2, 0, 0}, {{0, 0}, {0, 0.1}}},
      {"beside the line: nothing", {{0, 0, 5, 8}, {0, 0}}, {3, 30, 0}, {9, 0, 0}, {{0, 0, 5, 8}, {0, 0}}},
  };
  for (const Row& row : rows) {
    const auto wall = m_drawing.addMline({{{0, 0, 0}, {20, 0, 0}, {40, 0, 0}}, {0}});
    m_drawing.edit(wall, [&](KdDbMline& mline) {
      for (const int v : {0, 1}) setList(mline, v, 0, row.before[static_cast<std::size_t>(v)]);
    });
    m_drawing.run("WA\n" + pick(wall, row.first.x, row.first.y) + pick(wall, row.second.x, row.second.y) + "\n");
    const ElementLists lists = m_drawing.listsOf(wall)[0];
    EXPECT_THAT(lists, ElementsAre(row.after[0], row.after[1], ElementsAre(0, 0))) << row.name;
  }
}

}  // namespace

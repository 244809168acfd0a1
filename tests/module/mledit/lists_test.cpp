#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>

#include "module/mledit/engine.h"
#include "module/mledit/tool_run.h"

namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;

const std::vector<double> kWhole = {2, 0};  // an element drawn whole

// Three segments of 20 units along x, one element 2 units to the left.
std::unique_ptr<KdDbMline> makeStraight(const ElementLists& lists) {
  auto mline = makeMline({{{0, 0, 0}, {20, 0, 0}, {40, 0, 0}, {60, 0, 0}}, {2}});
  for (std::size_t v = 0; v < lists.size(); ++v) setList(*mline, static_cast<int>(v), 0, lists[v]);
  return mline;
}

// What an edit between two positions, each a distance along a segment, makes of the lists of vertices 0 to 2.
struct ListEdit {
  const char* name;
  ElementLists before;
  int fromSegment;
  double from;
  int toSegment;
  double to;
  ElementLists after;
};

template <class Edit>
void check(std::span<const ListEdit> rows, const Edit& edit) {
  for (const ListEdit& row : rows) {
    const auto mline = makeStraight(row.before);
    edit(*mline, row);
    for (int v = 0; v < 4; ++v) {
      const auto& expected = v < 3 ? row.after[static_cast<std::size_t>(v)] : kWhole;
      EXPECT_THAT(listOf(*mline, v, 0), Pointwise(DoubleNear(1e-12), expected)) << row.name << ", vertex " << v;
    }
  }
}

TEST(Cut, RewritesTheListsBetweenTwoPoints) {
  const ElementLists whole = {kWhole, kWhole, kWhole};
  const ListEdit rows[] = {
      {"starts at the end of a segment", whole, 0, 20, 1, 5, {kWhole, {2, 5}, kWhole}},
      {"ends at the start of a segment", whole, 0, 6, 1, 0, {{2, 0, 6, 20}, kWhole, kWhole}},
      {"inside a gap", {{2, 0, 3, 7}, kWhole, kWhole}, 0, 4, 0, 6, {{2, 0, 3, 7}, kWhole, kWhole}},
      {"from a break, by its digits", {{2, 0, 3, 5}, kWhole, kWhole}, 0, 5 + 5e-11, 0, 8, {{2, 0, 3, 8}, kWhole, kWhole}},
      {"breaks before the end go", {kWhole, {2, 0, 3, 5, 8}, kWhole}, 0, 4, 1, 6, {{2, 0, 4}, {2, 6, 8}, kWhole}},
      {"breaks between the segments go", {kWhole, {2, 0, 3, 5}, kWhole}, 0, 4, 2, 2, {{2, 0, 4}, {2}, {2, 2}}},
      {"all entries beyond the end", {kWhole, {2, 5, 8}, kWhole}, 0, 4, 1, 1, {{2, 0, 4}, {2, 1, 5, 8}, kWhole}},
      {"from the start of a longer line", {{2, -4}, kWhole, kWhole}, 0, 0, 0, 3, {{2, 3}, kWhole, kWhole}},
      {"starts before its segment", whole, 0, -3, 0, 5, whole},
      {"ends beyond its segment", whole, 0, 3, 0, 22, whole},
      {"at the end of the last segment", whole, 2, 20, 2, 20 + 1e-8, whole},
      {"no closing segment", whole, 0, 3, 3, 0, whole},
      {"a segment before the first", whole, -1, 23, 0, 5, whole},
      {"no parameters at its start", {{}, kWhole, kWhole}, 0, 3, 1, 5, {{}, kWhole, kWhole}},
      {"no parameters in between", {kWhole, {}, kWhole}, 0, 3, 2, 2, {{2, 0, 3}, {}, {2, 2}}},
  };
  check(rows, [](KdDbMline& mline, const ListEdit& row) {
    CMlineEdit engine;
    engine.segFirst.mline = &mline;
    double from[3] = {20.0 * row.fromSegment + row.from, 2, 0}, to[3] = {20.0 * row.toSegment + row.to, 2, 0};
    engine.Cut_Mongline(&engine.segFirst, 0, from, row.fromSegment, to, row.toSegment);
    for (const int noElement : {1, -1}) engine.Cut_Mongline(&engine.segFirst, noElement, from, 0, to, 0);
  });
}

TEST(Weld, DrawsTheLineBetweenTwoPositions) {
  const ListEdit rows[] = {
      {"in reverse order", {{2, 0, 5}, {2, 0, 5, 8, 12}, kWhole}, 1, 10, 0, 3, {kWhole, {2, 0, 12}, kWhole}},
      {"breaks in between", {{2, 0, 3}, {2, 4, 6, 9}, {2, 2}}, 0, 3, 2, 2, {kWhole, kWhole, kWhole}},
      {"near the breaks", {{2, 0, 3, 5}, kWhole, kWhole}, 0, 3.3, 0, 4.7, {kWhole, kWhole, kWhole}},
      {"exactly at the breaks", {{2, 0, 3, 5}, kWhole, kWhole}, 0, 3, 0, 5, {kWhole, kWhole, kWhole}},
      {"into a gap of the same segment", {{2, 0, 5, 12, 15}, kWhole, kWhole}, 0, 3, 0, 8, {{2, 0, 12, 15}, kWhole, kWhole}},
      {"into a gap of another segment", {kWhole, {2, 0, 5, 8, 12}, kWhole}, 0, 3, 1, 6.5, {kWhole, {2, 8, 12}, kWhole}},
      {"starts where a segment ends", {{2, 0, 15}, {2, 5, 8}, kWhole}, 0, 20, 1, 10, {{2, 0, 15}, kWhole, kWhole}},
      {"starts where one of the second half ends", {kWhole, {2, 0, 15}, {2, 5}}, 1, 20, 2, 10, {kWhole, {2, 0, 15}, kWhole}},
      {"ends where a segment starts", {{2, 0, 5}, {2, 0.3}, kWhole}, 0, 3, 1, 0, {kWhole, {2, 0.3}, kWhole}},
      {"one position", {{2, 0, 3, 5}, kWhole, kWhole}, 0, 4, 0, 4, {{2, 0, 3, 5}, kWhole, kWhole}},
      {"no parameters where it starts", {{}, {2, 5}, kWhole}, 0, 4, 1, 7, {{}, {2, 5}, kWhole}},
      {"no parameters in between", {{2, 0, 3}, {}, {2, 2}}, 0, 3, 2, 2, {kWhole, {}, kWhole}},
  };
  check(rows, [](KdDbMline& mline, const ListEdit& row) {
    CMlineEdit engine;
    engine.spaceBetween = 0.5;
    pick(engine, engine.segFirst, mline, 1, row.fromSegment, 0, row.from);
    pick(engine, engine.segSecond, mline, 1, row.toSegment, 0, row.to);
    engine.Weld_Mongline(&engine.segFirst, &engine.segSecond);
  });
}

TEST(ElementEnds, AreTrimmedAndExtended) {
  struct End {
    const char* name;
    std::vector<double> before;
    double x;
    bool keepBefore;
    std::vector<double> after;
  };
  const std::vector<double> broken = {2, 0, 3, 5};
  const End rows[] = {
      {"ends in a gap", broken, 4, true, {2, 0, 3}},
      {"ends on a drawn stretch", broken, 6, true, {2, 0, 3, 5, 6}},
      {"ends at a break, by its digits", broken, 3 + 5e-11, true, {2, 0, 3}},
      {"end before the start", broken, -4, true, {2, 0, 3, 5, 4}},
      {"starts in a gap", broken, 4, false, {2, 5}},
      {"start beyond the end", broken, 22, false, {2, 0, 3, 5, 22}},
      {"nothing drawn that starts", {2}, 4, false, {2}},
      {"no parameters", {}, 4, true, {}},
  };
  for (const End& row : rows) {
    const auto mline = makeStraight({row.before});
    CMlineEdit engine;
    pick(engine, engine.segFirst, *mline, 1, 1, 0, 0);
    const double x[3] = {row.x, 2, 0};
    engine.change41GroupNumber(&engine.segFirst, 0, 0, x, row.keepBefore);
    for (const auto& [element, vertex] : {std::pair(0, 3), {0, -1}, {1, 0}, {-1, 0}}) {
      engine.change41GroupNumber(&engine.segFirst, element, vertex, x, true);
    }
    EXPECT_THAT(listsOf(*mline, 0), ElementsAre(Pointwise(DoubleNear(1e-12), row.after), kWhole, kWhole, kWhole))
        << row.name;
  }
}

TEST(SignedDistance, TellsTheSide) {
  CMlineEdit engine;
  const double a[3] = {0, 0, 0}, b[3] = {1, 0, 0}, left[3] = {0, 1, 0}, up[3] = {0, 0, 1}, down[3] = {0, 0, -1};
  double fromAbove = 0, fromBelow = 0, towards = 0, distance = 0;
  engine.Distance_PointToLine(left, a, b, up, &fromAbove, nullptr);
  engine.Distance_PointToLine(left, a, b, down, &fromBelow, nullptr);
  engine.Distance_PointToPoint(b, a, &towards, left);
  engine.Distance_PointToPoint(b, a, &distance, nullptr);
  EXPECT_EQ((std::array{fromAbove, fromBelow, towards, distance}), (std::array{1.0, -1.0, -1.0, 1.0}));
}

class WeldRun : public ToolRun {
 protected:
  WeldRun() { addTool(L"WA", &CMlineEdit::cmd_mledit_WeldAll); }
};

TEST_F(WeldRun, TakesPicksInGapsAndBesideVertices) {
  struct Pair {
    const char* name;
    ElementLists before;  // of a line along x with vertices at 0, 20 and 40
    KdGePoint3d first, second;
    ElementLists after;
  };
  const Pair rows[] = {
      {"in a gap and past the end", {{0, 0}, {0, 0, 12}}, {32.3, 0, 0}, {40.2, 0, 0}, {{0, 0}, {0, 0}}},
      {"just behind a vertex: the end before it", {{0, 0, 12}, {0, 0.1}}, {11, 0, 0}, {20.2, 0, 0}, {{0, 0}, {0, 0.1}}},
      {"beside the line: nothing", {{0, 0, 5, 8}, {0, 0}}, {3, 30, 0}, {9, 0, 0}, {{0, 0, 5, 8}, {0, 0}}},
  };
  for (const Pair& row : rows) {
    const auto wall = m_drawing.addMline({{{0, 0, 0}, {20, 0, 0}, {40, 0, 0}}, {0}});
    m_drawing.edit(wall, [&](KdDbMline& mline) {
      for (const int v : {0, 1}) setList(mline, v, 0, row.before[static_cast<std::size_t>(v)]);
    });
    m_drawing.run("WA\n" + pick(wall, row.first.x, row.first.y) + pick(wall, row.second.x, row.second.y) + "\n");
    EXPECT_THAT(m_drawing.listsOf(wall)[0], ElementsAre(row.after[0], row.after[1], ElementsAre(0, 0))) << row.name;
  }
}

}  // namespace

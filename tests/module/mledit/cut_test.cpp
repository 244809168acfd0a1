#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "module/mledit/engine.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Three segments of 10 units along x, one element 2 units to the left: its line runs from (0, 2) to (30, 2).
std::unique_ptr<KdDbMline> makeStraight() {
  return makeMline({{{0, 0, 0}, {10, 0, 0}, {20, 0, 0}, {30, 0, 0}}, {2}});
}

void cut(KdDbMline& mline, int element, KdGePoint3d from, int segFrom, KdGePoint3d to, int segTo) {
  CMlineEdit engine;
  CMlineSegment seg;
  seg.mline = &mline;
  double p[3] = {from.x, from.y, from.z}, q[3] = {to.x, to.y, to.z};
  engine.Cut_Mongline(&seg, element, p, segFrom, q, segTo);
}

void expectNear(const ElementLists& found, const ElementLists& expected, const char* name) {
  ASSERT_EQ(found.size(), expected.size()) << name;
  for (std::size_t v = 0; v < found.size(); ++v) {
    EXPECT_THAT(found[v], ::testing::Pointwise(::testing::DoubleNear(1e-12), expected[v])) << name << ", vertex " << v;
  }
}

TEST(Cut, RewritesTheListsBetweenTwoPoints) {
  struct Row {
    const char* name;
    ElementLists before;  // of vertices 0 to 2; vertex 3 is the end
    double fromX;
    int fromSegment;
    double toX;
    int toSegment;
    ElementLists after;
  };
  const std::vector<double> o = {2, 0};
  const ElementLists whole = {o, o, o};
  const Row rows[] = {
      {"within a segment", whole, 3, 0, 5, 0, {{2, 0, 3, 5}, o, o}},
      {"points in reverse order", whole, 5, 0, 3, 0, {{2, 0, 3, 5}, o, o}},
      {"across a whole segment", whole, 3, 0, 22, 2, {{2, 0, 3}, {2}, {2, 2}}},
      {"segments in reverse order", whole, 22, 2, 3, 0, {{2, 0, 3}, {2}, {2, 2}}},
      {"starts at the end of a segment", whole, 10, 0, 15, 1, {o, {2, 5}, o}},
      {"ends at the start of a segment", whole, 6, 0, 10, 1, {{2, 0, 6, 10}, o, o}},
      {"starts at the very start", whole, 0, 0, 15, 1, {{2}, {2, 5}, o}},
      {"whole segments", whole, 0, 0, 20, 2, {{2}, {2}, o}},
      {"to the very end", whole, 12, 1, 30, 2, {o, {2, 0, 2}, {2}}},
      {"inside a gap", {{2, 0, 3, 7}, o, o}, 4, 0, 6, 0, {{2, 0, 3, 7}, o, o}},
      {"from gap to gap", {{2, 0, 3, 4, 5, 7}, o, o}, 3.5, 0, 6, 0, {{2, 0, 3, 7}, o, o}},
      {"from a drawn stretch into a gap", {{2, 0, 3, 7}, o, o}, 2, 0, 5, 0, {{2, 0, 2, 7}, o, o}},
      {"from a gap onto a drawn stretch", {{2, 0, 3, 7}, o, o}, 5, 0, 8, 0, {{2, 0, 3, 8}, o, o}},
      {"over a gap", {{2, 0, 3, 7}, o, o}, 2, 0, 8, 0, {{2, 0, 2, 8}, o, o}},
      {"from a break", {{2, 0, 3, 5}, o, o}, 5, 0, 8, 0, {{2, 0, 3, 8}, o, o}},
      {"from a break, by its digits", {{2, 0, 3, 5}, o, o}, 5 + 5e-11, 0, 8, 0, {{2, 0, 3, 8}, o, o}},
      {"up to a break", {{2, 0, 3, 5}, o, o}, 1, 0, 3, 0, {{2, 0, 1, 5}, o, o}},
      {"breaks after the start go", {{2, 0, 1, 5, 6, 8}, o, o}, 5.5, 0, 15, 1, {{2, 0, 1, 5, 5.5}, {2, 5}, o}},
      {"breaks before the end go", {o, {2, 0, 3, 5, 8}, o}, 4, 0, 16, 1, {{2, 0, 4}, {2, 6, 8}, o}},
      {"breaks between the segments go", {o, {2, 0, 3, 5}, o}, 4, 0, 22, 2, {{2, 0, 4}, {2}, {2, 2}}},
      {"all entries beyond the end", {o, {2, 5, 8}, o}, 4, 0, 11, 1, {{2, 0, 4}, {2, 1, 5, 8}, o}},
      {"from the start of a longer line", {{2, -4}, o, o}, 0, 0, 3, 0, {{2, 3}, o, o}},
      {"equal points", whole, 4, 0, 4, 0, whole},
      {"starts before its segment", whole, -3, 0, 5, 0, whole},
      {"ends beyond its segment", whole, 3, 0, 12, 0, whole},
      {"at the end of the last segment", whole, 30, 2, 30 + 1e-8, 2, whole},
      {"no closing segment", whole, 3, 0, 30, 3, whole},
      {"a segment before the first", whole, 3, -1, 5, 0, whole},
      {"no parameters at its start", {{}, o, o}, 3, 0, 15, 1, {{}, o, o}},
      {"no parameters in between", {o, {}, o}, 3, 0, 22, 2, {{2, 0, 3}, {}, {2, 2}}},
  };
  for (const Row& row : rows) {
    const auto mline = makeStraight();
    for (int v = 0; v < 3; ++v) setList(*mline, v, 0, row.before[static_cast<std::size_t>(v)]);
    ElementLists after = row.after;
    after.push_back({2, 0});
    cut(*mline, 0, {row.fromX, 2, 0}, row.fromSegment, {row.toX, 2, 0}, row.toSegment);
    expectNear(listsOf(*mline, 0), after, row.name);
  }
}

TEST(Cut, ReachesTheClosingSegment) {
  const auto makeSquare = [] { return makeMline({{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {0}, true}); };
  struct Row {
    const char* name;
    KdGePoint3d from;
    int fromSegment;
    KdGePoint3d to;
    int toSegment;
    ElementLists after;
  };
  const Row rows[] = {
      {"within it", {0, 7, 0}, 3, {0, 4, 0}, 3, {{0, 0}, {0, 0}, {0, 0}, {0, 0, 3, 6}}},
      {"around the last corner", {5, 10, 0}, 2, {0, 4, 0}, 3, {{0, 0}, {0, 0}, {0, 0, 5}, {0, 6}}},
      {"to its end", {5, 10, 0}, 2, {0, 0, 0}, 3, {{0, 0}, {0, 0}, {0, 0, 5}, {0}}},
  };
  for (const Row& row : rows) {
    const auto square = makeSquare();
    cut(*square, 0, row.from, row.fromSegment, row.to, row.toSegment);
    expectNear(listsOf(*square, 0), row.after, row.name);
  }
}

TEST(Cut, ChangesItsElementAloneAndNoFill) {
  const auto mline = makeMline({{{0, 0, 0}, {10, 0, 0}, {20, 0, 0}}, {1, 0, -1}});
  ASSERT_EQ(SetNumArea(mline.get(), 3, 0, 1), 1);
  cut(*mline, 1, {3, 0, 0}, 0, {5, 0, 0}, 0);
  cut(*mline, 3, {3, 0, 0}, 0, {5, 0, 0}, 0);
  cut(*mline, -1, {3, 0, 0}, 0, {5, 0, 0}, 0);
  expectNear(listsOf(*mline, 0), {{1, 0}, {1, 0}, {1, 0}}, "left");
  expectNear(listsOf(*mline, 1), {{0, 0, 3, 5}, {0, 0}, {0, 0}}, "cut");
  expectNear(listsOf(*mline, 2), {{-1, 0}, {-1, 0}, {-1, 0}}, "right");
  EXPECT_THAT(fillOf(*mline, 0, 1), ElementsAre(0, 0, 0));
}

// Whether the element is drawn at a distance along the whole straight line.
bool isDrawn(const KdDbMline& mline, double x) {
  const int segment = std::min(2, static_cast<int>(x / 10));
  const std::vector<double> list = listOf(mline, segment, 0);
  const auto passed = std::count_if(list.begin() + 1, list.end(), [&](double entry) { return entry <= x - 10 * segment; });
  return passed % 2 == 1;
}

TEST(Cut, BetweenDrawnPointsTakesAwayWhatIsBetweenThemAndNothingElse) {
  constexpr unsigned kSeed = 41;
  SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> place(0.001, 29.999);
  int cuts = 0;
  for (int round = 0; round < 200; ++round) {
    const auto mline = makeStraight();
    for (int i = 0; i < 12; ++i) {
      const double a = place(random), b = place(random);
      if (!isDrawn(*mline, a) || !isDrawn(*mline, b)) continue;
      std::vector<std::pair<double, bool>> samples;
      for (int k = 0; k < 100; ++k) {
        const double x = place(random);
        const bool isCut = std::min(a, b) < x && x < std::max(a, b);
        samples.emplace_back(x, !isCut && isDrawn(*mline, x));
      }
      cut(*mline, 0, {a, 2, 0}, static_cast<int>(a / 10), {b, 2, 0}, static_cast<int>(b / 10));
      for (const auto& [x, isExpected] : samples) {
        ASSERT_EQ(isDrawn(*mline, x), isExpected) << "round " << round << " from " << a << " to " << b << " at " << x;
      }
      ++cuts;
    }
  }
  EXPECT_GT(cuts, 400);
}

TEST(ElementEnds, AreTrimmedAndExtended) {
  struct Row {
    const char* name;
    std::vector<double> before;
    double x;
    bool keepBefore;
    std::vector<double> after;
  };
  const std::vector<double> broken = {2, 0, 3, 5};
  const Row rows[] = {
      {"ends in a gap", broken, 4, true, {2, 0, 3}},
      {"ends on a drawn stretch", broken, 6, true, {2, 0, 3, 5, 6}},
      {"ends within the first stretch", broken, 2, true, {2, 0, 2}},
      {"ends at a break", broken, 3, true, {2, 0, 3}},
      {"ends at a break, by its digits", broken, 3 + 5e-11, true, {2, 0, 3}},
      {"ends where a stretch starts", broken, 5, true, {2, 0, 3, 5}},
      {"end extended", {2, 0}, 12, true, {2, 0, 12}},
      {"end before the start", broken, -4, true, {2, 0, 3, 5, 4}},
      {"starts on a drawn stretch", broken, 2, false, {2, 2, 3, 5}},
      {"starts in a gap", broken, 4, false, {2, 5}},
      {"starts on the last stretch", broken, 6, false, {2, 6}},
      {"start extended", {2, 0}, -4, false, {2, -4}},
      {"start beyond the end", broken, 12, false, {2, 0, 3, 5, 12}},
      {"nothing drawn that starts", {2}, 4, false, {2}},
      {"nothing drawn that ends", {2}, 4, true, {2}},
      {"no parameters", {}, 4, true, {}},
  };
  for (const Row& row : rows) {
    const auto mline = makeStraight();
    setList(*mline, 0, 0, row.before);
    CMlineEdit engine;
    pick(engine, engine.segFirst, *mline, 1, 1, 0, 0);
    const double x[3] = {row.x, 2, 0};
    engine.change41GroupNumber(&engine.segFirst, 0, 0, x, row.keepBefore);
    EXPECT_THAT(listOf(*mline, 0, 0), ::testing::Pointwise(::testing::DoubleNear(1e-12), row.after)) << row.name;
  }
}

TEST(ElementEnds, LieAlongTheAxisEvenWhereTheNextVertexIsBehind) {
  for (const auto& [isEnd, after] : {std::pair(true, std::vector<double>{2, 0, 4}), {false, {2, -10}}}) {
    const auto mline = makeStraight();
    double points[4][3];
    GetVertices(mline.get(), points);
    points[1][0] = isEnd ? -3 : -6;
    SetVertices(mline.get(), points);
    CMlineEdit engine;
    pick(engine, engine.segFirst, *mline, 1, 1, 0, 0);
    const double x[3] = {isEnd ? 4.0 : -10.0, 2, 0};
    engine.change41GroupNumber(&engine.segFirst, 0, 0, x, isEnd);
    EXPECT_THAT(listOf(*mline, 0, 0), ::testing::Pointwise(::testing::DoubleNear(1e-12), after));
  }
}

TEST(ElementEnds, OutsideTheMultilineAreLeftAlone) {
  const auto mline = makeStraight();
  CMlineEdit engine;
  pick(engine, engine.segFirst, *mline, 1, 0, 0, 0);
  const double x[3] = {4, 2, 0};
  for (const auto& [element, vertex] : {std::pair(0, 3), {0, -1}, {1, 0}, {-1, 0}}) {
    engine.change41GroupNumber(&engine.segFirst, element, vertex, x, true);
  }
  expectNear(listsOf(*mline, 0), {{2, 0}, {2, 0}, {2, 0}, {2, 0}}, "whole");
}

TEST(FlagWord, ArgumentsSetClearOrLeaveTheirBits) {
  struct Row {
    int before, endCaps, startCaps, closed, hasVertex, after;
  };
  const Row rows[] = {
      {1, 1, -1, -1, 1, 9},   {1, -1, 1, -1, 1, 5},  {1, 1, 1, -1, 1, 13},    {13, 0, -1, -1, -1, 5},
      {13, -1, 0, -1, -1, 9}, {1, -1, -1, 1, -1, 3}, {15, -1, -1, 0, -1, 13}, {13, 2, -7, -1, -1, 13},
  };
  for (const Row& row : rows) {
    const auto mline = makeStraight();
    ASSERT_EQ(SetFlag(mline.get(), row.before), 1);
    CMlineEdit().change71GroupNumber(mline.get(), row.endCaps, row.startCaps, row.closed, row.hasVertex);
    int flags = 0;
    GetFlag(mline.get(), &flags);
    EXPECT_EQ(flags, row.after) << "from " << row.before << " by " << row.endCaps << row.startCaps << row.closed;
  }
}

TEST(SignedDistance, TellsTheSide) {
  CMlineEdit engine;
  const double a[3] = {0, 0, 0}, b[3] = {1, 0, 0}, up[3] = {0, 0, 1}, down[3] = {0, 0, -1};
  const double left[3] = {0, 1, 0}, right[3] = {0, -1, 0}, beyond[3] = {2, 3, 0};
  double distance = 0, foot[3] = {};
  engine.Distance_PointToLine(left, a, b, up, &distance, foot);
  EXPECT_EQ(distance, 1);
  engine.Distance_PointToLine(right, a, b, up, &distance, nullptr);
  EXPECT_EQ(distance, -1);
  engine.Distance_PointToLine(left, a, b, down, &distance, nullptr);
  EXPECT_EQ(distance, -1);
  engine.Distance_PointToLine(beyond, a, b, up, nullptr, foot);
  EXPECT_THAT(foot, ElementsAre(2, 0, 0));

  engine.Distance_PointToPoint(b, a, &distance, left);
  EXPECT_EQ(distance, -1);
  engine.Distance_PointToPoint(b, a, &distance, right);
  EXPECT_EQ(distance, 1);
  engine.Distance_PointToPoint(b, a, &distance, beyond);
  EXPECT_EQ(distance, -1);
  engine.Distance_PointToPoint(b, a, &distance, nullptr);
  EXPECT_EQ(distance, 1);
}

}  // namespace

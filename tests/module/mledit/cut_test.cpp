#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mledit/engine.h"

namespace {

using ::testing::ElementsAre;

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
      {"across a whole segment", whole, 3, 0, 22, 2, {{2, 0, 3}, {2}, {2, 2}}},
      {"starts at the end of a segment", whole, 10, 0, 15, 1, {o, {2, 5}, o}},
      {"ends at the start of a segment", whole, 6, 0, 10, 1, {{2, 0, 6, 10}, o, o}},
      {"starts at the very start", whole, 0, 0, 15, 1, {{2}, {2, 5}, o}},
      {"to the very end", whole, 12, 1, 30, 2, {o, {2, 0, 2}, {2}}},
      {"inside a gap", {{2, 0, 3, 7}, o, o}, 4, 0, 6, 0, {{2, 0, 3, 7}, o, o}},
      {"from gap to gap", {{2, 0, 3, 4, 5, 7}, o, o}, 3.5, 0, 6, 0, {{2, 0, 3, 7}, o, o}},
      {"from a drawn stretch into a gap", {{2, 0, 3, 7}, o, o}, 2, 0, 5, 0, {{2, 0, 2, 7}, o, o}},
      {"from a gap onto a drawn stretch", {{2, 0, 3, 7}, o, o}, 5, 0, 8, 0, {{2, 0, 3, 8}, o, o}},
      {"over a gap", {{2, 0, 3, 7}, o, o}, 2, 0, 8, 0, {{2, 0, 2, 8}, o, o}},
      {"from a break, by its digits", {{2, 0, 3, 5}, o, o}, 5 + 5e-11, 0, 8, 0, {{2, 0, 3, 8}, o, o}},
      {"breaks after the start go", {{2, 0, 1, 5, 6, 8}, o, o}, 5.5, 0, 15, 1, {{2, 0, 1, 5, 5.5}, {2, 5}, o}},
      {"breaks before the end go", {o, {2, 0, 3, 5, 8}, o}, 4, 0, 16, 1, {{2, 0, 4}, {2, 6, 8}, o}},
      {"breaks between the segments go", {o, {2, 0, 3, 5}, o}, 4, 0, 22, 2, {{2, 0, 4}, {2}, {2, 2}}},
      {"all entries beyond the end", {o, {2, 5, 8}, o}, 4, 0, 11, 1, {{2, 0, 4}, {2, 1, 5, 8}, o}},
      {"from the start of a longer line", {{2, -4}, o, o}, 0, 0, 3, 0, {{2, 3}, o, o}},
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
  const auto toLine = [&](const double* p, const double* normal) {
    double distance = 0;
    engine.Distance_PointToLine(p, a, b, normal, &distance, nullptr);
    return distance;
  };
  EXPECT_THAT((std::array{toLine(left, up), toLine(right, up), toLine(left, down)}), ElementsAre(1, -1, -1));
  double foot[3] = {};
  engine.Distance_PointToLine(beyond, a, b, up, nullptr, foot);
  EXPECT_THAT(foot, ElementsAre(2, 0, 0));

  const auto towards = [&](const double* direction) {
    double distance = 0;
    engine.Distance_PointToPoint(b, a, &distance, direction);
    return distance;
  };
  EXPECT_THAT((std::array{towards(left), towards(right), towards(beyond), towards(nullptr)}), ElementsAre(-1, 1, -1, 1));
}

}  // namespace

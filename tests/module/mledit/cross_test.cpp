#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <tuple>

#include "module/mledit/engine.h"

namespace {

using ::testing::ElementsAre;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Direction, HasOneCodeForEachOfEightDirections) {
  struct Row {
    double x, y;
    int code;
  };
  const Row rows[] = {{1, 0, 1},   {1, 1, 2}, {0, 1, 3},          {-1, 1, 4},    {-1, 0, -1},   {-1, -1, -2},    {0, -1, -3},
                      {1, -1, -4}, {0, 0, 0}, {5e-11, -5e-11, 0}, {1, 5e-11, 1}, {2e-10, 0, 1}, {kNan, 0, -5001}};
  const double from[3] = {0, 0, 0};
  for (const Row& row : rows) {
    const double to[3] = {row.x, row.y, 9};
    EXPECT_EQ(CMlineEdit::PositionConnection(from, to), row.code) << row.x << ' ' << row.y;
    if (row.code == -5001) continue;
    EXPECT_EQ(CMlineEdit::PositionConnection(to, from), -row.code) << row.x << ' ' << row.y;
  }
}

TEST(Collinear, MeansTheSameLine) {
  struct Row {
    const char* name;
    KdGePoint3d c, d;
    bool isCollinear;
  };
  const Row rows[] = {
      {"itself", {0, 0, 0}, {10, 0, 0}, true},      {"turned round", {10, 0, 0}, {0, 0, 0}, true},
      {"further on", {20, 0, 0}, {30, 0, 0}, true}, {"beside", {0, 1, 0}, {10, 1, 0}, false},
      {"across", {5, -5, 0}, {5, 5, 0}, false},     {"bent off at the end", {10, 0, 0}, {20, 1, 0}, false},
      {"above", {0, 0, 1}, {10, 0, 1}, false},
  };
  for (const Row& row : rows) EXPECT_EQ(isCollinear({0, 0, 0}, {10, 0, 0}, row.c, row.d), row.isCollinear) << row.name;
}

// An L: along x to (10, 0), then up, with elements 1 to the left, on the path and 1 to the right of it.
const MlineSketch kCorner = {{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, {1, 0, -1}};

TEST(Mapping, CarriesThePickSquareToTheSegment) {
  struct Row {
    const char* name;
    int segment, element;
    double along;
    int target;
    KdGePoint3d point;
    double distance;
  };
  const Row rows[] = {
      {"to the left", 0, 1, 4, 0, {4, 1, 0}, 4},
      {"to the right", 0, 1, 4, 2, {4, -1, 0}, 4},
      {"clamped to the inside of the corner", 0, 2, 10.5, 0, {9, 1, 0}, 9},
      {"upright", 1, 2, 6, 0, {9, 5, 0}, 4},
      {"upright, clamped to the start", 1, 2, 0.5, 0, {9, 1, 0}, 0},
      {"to itself", 0, 2, 3, 2, {3, -1, 0}, 3},
      {"at the very start of a level segment", 0, 1, 0, 0, {0, 1, 0}, 0},
      {"at the very start of an upright segment", 1, 1, 0, 2, {11, 0, 0}, 1},
  };
  for (const Row& row : rows) {
    const auto mline = makeMline(kCorner);
    CMlineEdit engine;
    CMlineSegment& seg = engine.segFirst;
    pick(engine, seg, *mline, 1, row.segment, row.element, row.along);
    EXPECT_TRUE(engine.mappingToSpecifyMongline(&seg, row.target)) << row.name;
    EXPECT_THAT(seg.origPoint, ::testing::Pointwise(::testing::DoubleNear(1e-12), {row.point.x, row.point.y, row.point.z}))
        << row.name;
    EXPECT_NEAR(seg.origDistance, row.distance, 1e-12) << row.name;
    EXPECT_EQ(seg.origElement, row.target) << row.name;
    EXPECT_EQ(seg.origSegment, row.segment) << row.name;
  }
}

TEST(Mapping, IsNotMisledByTheRoundingOfAnUprightLine) {
  for (int i = 1; i <= 100; ++i) {
    const auto mline = makeMline({{{i / 7.0, 0, 0}, {i / 7.0, 5 + i / 3.0, 0}}, {1, -1}});
    CMlineEdit engine;
    pick(engine, engine.segFirst, *mline, 1, 0, 1, 4);
    double& end = engine.segFirst.ptList[0][1][0];
    end = std::nextafter(end, 0);
    EXPECT_TRUE(engine.mappingToSpecifyMongline(&engine.segFirst, 0));
    EXPECT_NEAR(engine.segFirst.origPoint[1], 4, 1e-9) << i;
  }
}

TEST(Mapping, OntoTheAxisIsNotClamped) {
  const auto mline = makeMline(kCorner);
  CMlineEdit engine;
  pick(engine, engine.segFirst, *mline, 1, 0, 2, 10.5);
  double onAxis[3] = {};
  EXPECT_TRUE(engine.mappingToSpecifyMongline(&engine.segFirst, -1, onAxis));
  EXPECT_THAT(onAxis, ::testing::Pointwise(::testing::DoubleNear(1e-12), {10.5, 0.0, 0.0}));
  EXPECT_EQ(engine.segFirst.origElement, 2);
}

TEST(Mapping, RefusesAPickThatDoesNotFitTheMultiline) {
  struct Row {
    const char* name;
    int segment, element, target;
  };
  const Row rows[] = {{"beyond the open end", 2, 0, 1}, {"no such segment", 7, 0, 1}, {"negative", -1, 0, 1},
                      {"no such element", 0, 3, 1},     {"no such target", 0, 0, 3},  {"itself, beyond the end", 2, 1, 1}};
  for (const Row& row : rows) {
    const auto mline = makeMline(kCorner);
    CMlineEdit engine;
    CMlineSegment& seg = engine.segFirst;
    pick(engine, seg, *mline, 1, 0, 0, 5);
    seg.segment = row.segment;
    seg.element = row.element;
    EXPECT_FALSE(engine.mappingToSpecifyMongline(&seg, row.target)) << row.name;
    EXPECT_EQ(seg.origElement, 0) << row.name;
  }
}

struct PickSpec {
  int segment;
  double along;
};

TEST(SegmentSearch, PrefersThePickedSegmentsThenTheNearest) {
  struct Row {
    const char* name;
    MlineSketch a, b;
    PickSpec pickA, pickB;
    bool touching;
    int segA, segB;  // -1: none found
    double x, y;
  };
  const MlineSketch level = {{{0, 0, 0}, {100, 0, 0}}, {0}};
  const MlineSketch bracket = {{{10, -10, 0}, {10, 10, 0}, {20, 10, 0}, {20, -10, 0}}, {0}};
  const MlineSketch box = {{{40, -5, 0}, {60, -5, 0}, {60, 5, 0}, {40, 5, 0}}, {0}, true};
  const MlineSketch dash = {{{30, 0, 0}, {50, 0, 0}}, {0}};
  const MlineSketch bar = {{{-5, 10, 0}, {5, 10, 0}}, {0}};
  const MlineSketch shortStem = {{{0, 0, 0}, {0, 8, 0}}, {0}}, stem = {{{0, 0, 0}, {0, 10, 0}}, {0}};
  const MlineSketch longStem = {{{0, 0, 0}, {0, 20, 0}}, {0}};
  const MlineSketch hook = {{{10, 5, 0}, {10, 20, 0}, {50, 20, 0}, {50, -20, 0}}, {0}};
  const MlineSketch bent = {{{0, 0, 0}, {50, 0, 0}, {100, 0, 0}}, {0}};
  const Row rows[] = {
      {"picked pair, though another is nearer", level, bracket, {0, 10}, {2, 1}, true, 0, 2, 20, 0},
      {"nearest to the picks", level, bracket, {0, 30}, {1, 5}, true, 0, 2, 20, 0},
      {"equally near: the earlier", level, bracket, {0, 15}, {1, 5}, true, 0, 0, 10, 0},
      {"closing segment of the second", level, box, {0, 50}, {3, 2}, true, 0, 3, 40, 0},
      {"closing segment of the first is not searched", box, dash, {3, 2}, {0, 5}, false, -1, -1, 0, 0},
      {"on the first only", box, dash, {1, 2}, {0, 5}, true, 1, 0, 60, 0},
      {"stem ends on the bar", stem, bar, {0, 5}, {0, 2}, false, 0, 0, 0, 10},
      {"stem falls short", shortStem, bar, {0, 5}, {0, 2}, false, 0, 0, 0, 10},
      {"stem runs through", longStem, bar, {0, 5}, {0, 2}, false, 0, 0, 0, 10},
      {"picked pair that does not meet on both", level, hook, {0, 90}, {0, 1}, true, 0, 2, 50, 0},
      {"segment in line with the picked one", bent, bracket, {1, 40}, {0, 5}, true, 0, 0, 10, 0},
      {"parallel", level, {{{0, 5, 0}, {100, 5, 0}}, {0}}, {0, 10}, {0, 10}, true, -1, -1, 0, 0},
      {"apart", stem, {{{50, 0, 0}, {60, 1, 0}}, {0}}, {0, 5}, {0, 5}, true, -1, -1, 0, 0},
  };
  for (const Row& row : rows) {
    const auto a = makeMline(row.a), b = makeMline(row.b);
    CMlineEdit engine;
    pick(engine, engine.segFirst, *a, 1, row.pickA.segment, 0, row.pickA.along);
    pick(engine, engine.segSecond, *b, 2, row.pickB.segment, 0, row.pickB.along);
    int segA = -1, segB = -1;
    double x[3] = {-7, -7, -7};
    const bool isFound = engine.getSegmentNumbers(&engine.segFirst, &engine.segSecond, &segA, &segB, x, row.touching);
    EXPECT_EQ(std::tuple(isFound, segA, segB), std::tuple(row.segA >= 0, row.segA, row.segB)) << row.name;
    if (!isFound) continue;
    EXPECT_THAT(x, ::testing::Pointwise(::testing::DoubleNear(1e-9), {row.x, row.y, 0.0})) << row.name;
    EXPECT_EQ(engine.segFirst.segment, row.segA) << row.name;
    EXPECT_EQ(engine.segSecond.origSegment, row.segB) << row.name;
  }
}

TEST(SegmentSearch, RefusesPicksThatDoNotFit) {
  const auto a = makeMline({{{0, 0, 0}, {100, 0, 0}}, {0}}), b = makeMline({{{10, -10, 0}, {10, 10, 0}}, {0}});
  CMlineEdit engine;
  int segA = -1, segB = -1;
  pick(engine, engine.segFirst, *a, 1, 0, 0, 5);
  pick(engine, engine.segSecond, *b, 2, 0, 0, 5);
  engine.segSecond.segment = 1;
  EXPECT_FALSE(engine.getSegmentNumbers(&engine.segFirst, &engine.segSecond, &segA, &segB, nullptr, true));
  engine.segSecond.segment = 0;
  engine.segSecond.mline = nullptr;
  EXPECT_FALSE(engine.getSegmentNumbers(&engine.segFirst, &engine.segSecond, &segA, &segB, nullptr, true));
}

TEST(CrossingTable, IsNoneForLinesThatRunTheSameWay) {
  const auto level = makeMline({{{0, 0, 0}, {100, 0, 0}}, {1, -1}});
  const auto other = makeMline({{{0, 9, 0}, {50, 9, 0}, {50, 20, 0}, {0, 20, 0}}, {0}});
  CMlineEdit engine;
  pick(engine, engine.segFirst, *level, 1, 0, 0, 5);
  pick(engine, engine.segSecond, *other, 2, 0, 0, 5);
  const auto build = [&](int segA, int segB) {
    return engine.set_PTCrossing(&engine.segFirst, segA, &engine.segSecond, segB, &engine.ptCrossing,
                                 &engine.ptCrossingCount);
  };
  EXPECT_TRUE(build(0, 1));
  EXPECT_EQ(engine.ptCrossingCount, 2);
  EXPECT_FALSE(build(0, 0)) << "same direction";
  EXPECT_EQ(engine.ptCrossingCount, 0);
  EXPECT_EQ(engine.ptCrossing, nullptr);
  EXPECT_FALSE(build(0, 2)) << "opposite direction: no pair crosses";
  ASSERT_EQ(engine.ptCrossingCount, 2);
  EXPECT_TRUE(std::isnan(engine.ptCrossing[0][0][0]));
  EXPECT_FALSE(build(1, 1)) << "no such segment";
  EXPECT_FALSE(build(0, 3)) << "no closing segment";
  EXPECT_FALSE(build(-1, 0));
}

TEST(AxisCrossing, NeedsAFollowingVertex) {
  const auto a = makeMline({{{0, 0, 0}, {10, 0, 0}}, {0}}), b = makeMline({{{20, 5, 0}, {20, 9, 0}}, {0}});
  CMlineEdit engine;
  double x[3] = {-7, -7, -7};
  EXPECT_FALSE(engine.getXPoint(a.get(), 1, b.get(), 0, x));
  EXPECT_FALSE(engine.getXPoint(a.get(), 0, b.get(), 1, x));
  EXPECT_FALSE(engine.getXPoint(a.get(), -1, b.get(), 0, x));
  EXPECT_FALSE(engine.getXPoint(nullptr, 0, b.get(), 0, x));
  EXPECT_THAT(x, ElementsAre(-7, -7, -7));
  EXPECT_TRUE(engine.getXPoint(a.get(), 0, b.get(), 0, x));
  EXPECT_THAT(x, ::testing::Pointwise(::testing::DoubleNear(1e-9), {20.0, 0.0, 0.0}));
}

}  // namespace

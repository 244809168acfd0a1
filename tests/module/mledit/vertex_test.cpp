#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "module/mledit/engine.h"

namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;

constexpr double kRounding = 1e-12;
const double kTurned = std::sqrt(2.0) - 1;  // tangent of 22.5 degrees

void expectLists(const KdDbMline& mline, int element, const ElementLists& expected, const char* name) {
  const ElementLists found = listsOf(mline, element);
  ASSERT_EQ(found.size(), expected.size()) << name;
  for (std::size_t v = 0; v < found.size(); ++v) {
    EXPECT_THAT(found[v], Pointwise(DoubleNear(kRounding), expected[v]))
        << name << ", element " << element << ", vertex " << v;
  }
}

void expectNear(const KdGeVector3d& found, const KdGeVector3d& expected, const char* name) {
  EXPECT_NEAR((found - expected).length(), 0, kRounding) << name << ": " << found.x << ' ' << found.y << ' ' << found.z;
}

void addAt(KdDbMline& mline, int segment, int element, double along) {
  CMlineEdit engine;
  pick(engine, engine.segFirst, mline, 1, segment, element, along);
  engine.add_OneVertex(&engine.segFirst);
}

void remove(KdDbMline& mline, int vertex) {
  CMlineEdit engine;
  pick(engine, engine.segFirst, mline, 1, 0, 0, 0);
  engine.delete_OneVertex(&engine.segFirst, vertex);
}

TEST(AddVertex, KeepsGapsBeforeItAndDropsThoseBehind) {
  const auto mline = makeMline({{{8, 8, 0}, {28, 8, 0}, {28, 28, 0}}, {0.5, 0, -0.5}});
  const std::vector<double> behind = listOf(*mline, 1, 0);
  setList(*mline, 0, 0, {0.5, 0, 3, 5, 12, 15});
  setList(*mline, 0, 1, {0, 0, 6, 9});
  setList(*mline, 0, 2, {-0.5, 2, 4, 8, 9});
  ASSERT_EQ(SetNumArea(mline.get(), 2, 0, 1), 1);
  addAt(*mline, 0, 0, 8);
  const std::vector<double> end = {0.5, 0};
  expectLists(*mline, 0, {{0.5, 0, 3, 5}, {0.5, 0}, behind, end}, "a gap on either side");
  expectLists(*mline, 1, {{0, 0, 6}, {0, 0}, {0, 0}, {0, 0}}, "within a gap");
  EXPECT_THAT(listOf(*mline, 0, 2), ElementsAre(-0.5, 2, 4)) << "a break at the vertex goes";
  for (const int vertex : {0, 1}) EXPECT_THAT(fillOf(*mline, vertex, 1), ElementsAre(0, 0));
}

// A peak on a straight line: without it the line is straight, and the element below ends its bends.
const MlineSketch kPeak = {{{-20, 0, 0}, {0, 0, 0}, {10, 10, 0}, {20, 0, 0}, {40, 0, 0}, {60, 0, 0}}, {0, -1}};

TEST(DeleteVertex, DrawsTheJoinedSegmentWholeAndKeepsBreaksInPlace) {
  struct Row {
    const char* name;
    std::vector<double> before, after;  // behind the offset, of the element below on the segment behind the joined one
    double offset;
  };
  const Row rows[] = {
      {"whole", {0}, {0}, -1},
      {"a gap", {0, 5, 8}, {0, 5 - kTurned, 8 - kTurned}, -1},
      {"nothing drawn", {}, {}, -1},
      {"starts later, so its offset shifts", {2, 5}, {2, 5 - kTurned}, -1 - kTurned},
  };
  for (const Row& row : rows) {
    const auto mline = makeMline(kPeak);
    setList(*mline, 1, 1, {listOf(*mline, 1, 1)[0], 0, 3, 5});
    setList(*mline, 2, 1, {listOf(*mline, 2, 1)[0]});
    std::vector<double> behind = {listOf(*mline, 3, 1)[0]};
    behind.insert(behind.end(), row.before.begin(), row.before.end());
    setList(*mline, 3, 1, behind);
    remove(*mline, 2);
    ASSERT_EQ(mline->numVertices(), 5);
    std::vector<double> after = {row.offset};
    after.insert(after.end(), row.after.begin(), row.after.end());
    expectLists(*mline, 1, {{-1, 0}, {-1, 0}, after, {-1, 0}, {-1, 0}}, row.name);
    for (int v = 0; v < 5; ++v) {
      expectNear(mline->axisAt(v), {1, 0, 0}, row.name);
      expectNear(mline->miterAt(v), {0, 1, 0}, row.name);
    }
  }
}

TEST(DeleteVertex, DoesTheSameFarFromTheOrigin) {
  constexpr unsigned kSeed = 5;
  SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<> stray(-3, 3);
  for (int run = 0; run < 50; ++run) {
    MlineSketch sketch = {{}, {0, -0.3}};
    for (int v = 0; v < 5; ++v) sketch.path.push_back({10.0 * v, stray(random), 0});
    ElementLists lists[2];
    for (const int isFar : {0, 1}) {
      for (KdGePoint3d& point : sketch.path) point = point + KdGeVector3d{1e6, 2e6, 0} * isFar;
      const auto mline = makeMline(sketch);
      setList(*mline, 3, 1, {listOf(*mline, 3, 1)[0], 0, 3, 5});
      remove(*mline, 2);
      lists[isFar] = listsOf(*mline, 1);
    }
    ASSERT_EQ(lists[0].size(), 4u);
    for (const std::size_t v : {0, 1, 2, 3}) ASSERT_THAT(lists[1][v], Pointwise(DoubleNear(1e-7), lists[0][v])) << run;
  }
}

TEST(DeleteVertex, KeepsTheLeastNumberOfVertices) {
  const auto line = makeMline({{{0, 0, 0}, {10, 0, 0}, {20, 5, 0}}, {0}});
  addAt(*line, 1, 0, 0);  // where there is one already
  for (const int outside : {-1, 3, 99}) remove(*line, outside);
  EXPECT_EQ(line->numVertices(), 3);
  for (int i = 0; i < 3; ++i) remove(*line, 1);
  EXPECT_EQ(line->numVertices(), 2);
  const auto square = makeMline({{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {0, 1}, true});
  for (int i = 0; i < 3; ++i) remove(*square, 0);
  EXPECT_EQ(square->numVertices(), 3);
}

}  // namespace

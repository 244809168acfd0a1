#include "mlaccess/mline_access.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mline_sketch.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Three vertices, three elements, with lists of different lengths: at vertex v and element e the list has 1 + v + e entries.
std::unique_ptr<KdDbMline> makeSteps() {
  auto mline = makeMline({{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, {1, 0, -1}});
  for (int v = 0; v < 3; ++v) {
    for (int e = 0; e < 3; ++e)
      setList(*mline, v, e, std::vector<double>(static_cast<std::size_t>(1 + v + e), v * 10.0 + e));
  }
  return mline;
}

int countAt(const KdDbMline& mline, int vertex, int element) {
  int count = -1;
  EXPECT_EQ(GetNumLine(&mline, &count, vertex, element), 1);
  return count;
}

TEST(MlineAccess, ReadingClampsItsIndices) {
  const auto mline = makeSteps();
  struct Row {
    int vertex, element, count;
    double value;
  };
  const Row rows[] = {{-5, 0, 1, 0}, {0, 3, 3, 2}, {2, -1, 3, 20}, {99, 99, 5, 22}, {1, 1, 3, 11}};
  for (const Row& row : rows) {
    EXPECT_EQ(countAt(*mline, row.vertex, row.element), row.count) << row.vertex << ' ' << row.element;
    double values[5] = {-1, -1, -1, -1, -1};
    EXPECT_EQ(GetLineArray(mline.get(), values, 5, row.vertex, row.element), 1);
    EXPECT_EQ(values[row.count - 1], row.value);
    EXPECT_EQ(std::count(values + row.count, values + 5, -1), 5 - row.count);
  }
}

TEST(MlineAccess, WritingChecksItsIndices) {
  const auto mline = makeSteps();
  const double values[5] = {7, 7, 7, 7, 7};
  const std::pair<int, int> outside[] = {{-5, 0}, {0, 3}, {3, 0}, {0, -1}};
  for (const auto& [vertex, element] : outside) {
    EXPECT_EQ(SetNumLine(mline.get(), 2, vertex, element), 0);
    EXPECT_EQ(SetLineArray(mline.get(), values, vertex, element), 0);
    EXPECT_EQ(SetNumArea(mline.get(), 2, vertex, element), 0);
    EXPECT_EQ(SetAreaArray(mline.get(), values, vertex, element), 0);
  }
  EXPECT_EQ(SetNumLine(mline.get(), -1, 0, 0), 0);
  const auto untouched = makeSteps();
  for (int e = 0; e < 3; ++e) EXPECT_EQ(listsOf(*mline, e), listsOf(*untouched, e));
}

TEST(MlineAccess, ListsAreSizedBeforeTheyAreFilled) {
  const auto mline = makeSteps();
  const double values[3] = {4, 5, 6};
  EXPECT_EQ(SetNumLine(mline.get(), 3, 1, 2), 1);
  EXPECT_THAT(listOf(*mline, 1, 2), ElementsAre(0, 0, 0));
  EXPECT_EQ(SetLineArray(mline.get(), values, 1, 2), 1);
  EXPECT_THAT(listOf(*mline, 1, 2), ElementsAre(4, 5, 6));
  EXPECT_THAT(listOf(*mline, 1, 1), ElementsAre(11, 11, 11)) << "the neighbour stays";

  double untouched[2] = {-1, -1};
  for (const int capacity : {2, -1}) EXPECT_EQ(GetLineArray(mline.get(), untouched, capacity, 1, 2), 0) << "too few";
  EXPECT_EQ(SetNumLine(mline.get(), 0, 1, 2), 1);
  EXPECT_EQ(SetLineArray(mline.get(), values, 1, 2), 0);
  EXPECT_THAT(listOf(*mline, 1, 2), IsEmpty());
  EXPECT_EQ(GetLineArray(mline.get(), untouched, 1, 1, 2), 1);
  EXPECT_THAT(untouched, ElementsAre(-1, -1));
}

TEST(MlineAccess, FillListsTakeTheLengthOfTheElementList) {
  const auto mline = makeSteps();
  const double values[3] = {1, 2, 3};
  ASSERT_EQ(SetNumArea(mline.get(), 2, 0, 2), 1);
  int count = 0;
  EXPECT_EQ(GetNumArea(mline.get(), &count, 0, 2), 1);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(SetAreaArray(mline.get(), values, 0, 2), 1) << "the element list has 3 entries";
  EXPECT_THAT(fillOf(*mline, 0, 2), ElementsAre(1, 2, 3));
  EXPECT_THAT(listOf(*mline, 0, 2), ElementsAre(2, 2, 2));
  double read[3] = {};
  EXPECT_EQ(GetAreaArray(mline.get(), read, 3, 0, 2), 1);
  EXPECT_THAT(read, ElementsAre(1, 2, 3));
  ASSERT_EQ(SetNumLine(mline.get(), 0, 0, 2), 1);
  EXPECT_EQ(SetAreaArray(mline.get(), values, 0, 2), 0);
}

TEST(MlineAccess, OnlyTheElementsOfTheFirstVertexCount) {
  const auto mline = makeSteps();
  std::vector<std::vector<KdMLSegment>> parameters;
  ASSERT_EQ(mline->getParametersAt(1, parameters), KdStatus::ok);
  parameters.front().resize(2);
  ASSERT_EQ(mline->setParametersAt(1, parameters), KdStatus::ok);
  EXPECT_EQ(countAt(*mline, 1, 2), 0);
  EXPECT_EQ(countAt(*mline, 1, 1), 3);
  EXPECT_EQ(SetNumLine(mline.get(), 2, 1, 2), 0);

  parameters.front().resize(4);
  ASSERT_EQ(mline->setParametersAt(1, parameters), KdStatus::ok);
  EXPECT_EQ(SetNumLine(mline.get(), 2, 1, 3), 0);
}

TEST(MlineAccess, NumberOfVerticesGrowsAndShrinksAtTheEnd) {
  const auto mline = makeSteps();
  EXPECT_EQ(SetNumVertices(mline.get(), 1), 0);
  EXPECT_EQ(SetNumVertices(mline.get(), 3), 1);
  EXPECT_EQ(mline->numVertices(), 3);
  EXPECT_EQ(SetNumVertices(mline.get(), 5), 1);
  ASSERT_EQ(mline->numVertices(), 5);
  EXPECT_TRUE(mline->vertexAt(2).isEqualTo({10, 10, 0}));
  EXPECT_TRUE(mline->vertexAt(4).isEqualTo({0, 0, 0}));
  EXPECT_EQ(SetNumVertices(mline.get(), 2), 1);
  ASSERT_EQ(mline->numVertices(), 2);
  EXPECT_TRUE(mline->vertexAt(1).isEqualTo({10, 0, 0}));
}

TEST(MlineAccess, PositionsAxesMitersAndNormalAreRead) {
  const auto mline = makeSteps();
  const double vertices[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, axes[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const double miters[3][3] = {{0, 0, 1}, {0, 0, 2}, {0, 0, 3}};
  EXPECT_EQ(SetVertices(mline.get(), vertices) + SetAxis(mline.get(), axes) + SetMilters(mline.get(), miters), 3);
  ASSERT_EQ(mline->setNormal({0, 0, -1}), KdStatus::ok);
  EXPECT_TRUE(mline->vertexAt(1).isEqualTo({4, 5, 6}));
  EXPECT_TRUE(mline->axisAt(1).isEqualTo({0, 1, 0}));
  EXPECT_TRUE(mline->miterAt(1).isEqualTo({0, 0, 2}));
  double read[3][3][3] = {}, normal[3] = {};
  EXPECT_EQ(GetVertices(mline.get(), read[0]) + GetAxis(mline.get(), read[1]) + GetMilters(mline.get(), read[2]), 3);
  EXPECT_EQ(GetNormal(mline.get(), normal), 1);
  EXPECT_THAT(read[0][2], ElementsAre(7, 8, 9));
  EXPECT_THAT(read[1][2], ElementsAre(0, 0, 1));
  EXPECT_THAT(read[2][2], ElementsAre(0, 0, 3));
  EXPECT_THAT(normal, ElementsAre(0, 0, -1));
}

TEST(MlineAccess, ElementCountIsThatOfTheFirstVertex) {
  const auto mline = makeSteps();
  int size = -1;
  EXPECT_EQ(SetSegmentsSize(mline.get(), 0), 0);
  EXPECT_EQ(SetSegmentsSize(mline.get(), 4), 1);
  EXPECT_EQ(GetSegmentsSize(mline.get(), &size), 1);
  EXPECT_EQ(size, 4);
  EXPECT_EQ(countAt(*mline, 2, 3), 0);
  EXPECT_EQ(countAt(*mline, 2, 2), 5);
}

TEST(MlineAccess, FlagWordIsReadAndApplied) {
  struct Row {
    const char* name;
    int vertices, before, set, after;
  };
  const Row rows[] = {
      {"open", 3, 0, 1, 1},
      {"closed", 3, 0, 2, 3},
      {"two vertices stay open", 2, 0, 2, 1},
      {"opened again", 3, 2, 1, 1},
      {"caps on their own", 2, 0, 4, 5},
      {"end caps on their own", 2, 0, 8, 9},
      {"all", 3, 0, 14, 15},
      {"caps drawn again", 3, 14, 2, 3},
      {"bit for vertices and unknown bits count for nothing", 3, 2, 2 | 1 | 64, 3},
  };
  for (const Row& row : rows) {
    const auto mline = makeSteps();
    ASSERT_EQ(SetNumVertices(mline.get(), row.vertices), 1);
    int flags = -1;
    EXPECT_EQ(SetFlag(mline.get(), row.before), 1) << row.name;
    EXPECT_EQ(SetFlag(mline.get(), row.set), 1) << row.name;
    EXPECT_EQ(GetFlag(mline.get(), &flags), 1) << row.name;
    EXPECT_EQ(flags, row.after) << row.name;
  }
  const KdDbMline empty;
  int flags = -1;
  EXPECT_EQ(GetFlag(&empty, &flags), 1);
  EXPECT_EQ(flags, 0);
}

TEST(MlineAccess, NothingIsDoneWithoutAMultiline) {
  int count = 5;
  double values[3] = {5, 5, 5};
  double triples[1][3] = {{5, 5, 5}};
  KdDbMlineStyle* style = nullptr;
  const int results[] = {GetFlag(nullptr, &count),
                         SetFlag(nullptr, 2),
                         SetNumVertices(nullptr, 3),
                         GetVertices(nullptr, triples),
                         SetVertices(nullptr, triples),
                         GetAxis(nullptr, triples),
                         SetAxis(nullptr, triples),
                         GetMilters(nullptr, triples),
                         SetMilters(nullptr, triples),
                         GetSegmentsSize(nullptr, &count),
                         SetSegmentsSize(nullptr, 2),
                         GetNumLine(nullptr, &count, 0, 0),
                         SetNumLine(nullptr, 2, 0, 0),
                         GetLineArray(nullptr, values, 3, 0, 0),
                         SetLineArray(nullptr, values, 0, 0),
                         GetNumArea(nullptr, &count, 0, 0),
                         SetNumArea(nullptr, 2, 0, 0),
                         GetAreaArray(nullptr, values, 3, 0, 0),
                         SetAreaArray(nullptr, values, 0, 0),
                         GetMlStyle(nullptr, &style),
                         GetNormal(nullptr, values)};
  EXPECT_THAT(results, ::testing::Each(0));
  EXPECT_EQ(count, 5);
  EXPECT_THAT(values, ElementsAre(5, 5, 5));

  KdDbMline empty;
  EXPECT_EQ(countAt(empty, 0, 0), 0);
  EXPECT_EQ(SetNumLine(&empty, 1, 0, 0) + SetLineArray(&empty, values, 0, 0), 0);
}

}  // namespace

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

TEST(MlineAccess, ReadingClampsItsIndicesAndTheRoomThatItIsGiven) {
  const auto mline = makeSteps();
  struct Row {
    int vertex, element, count;
    double value;
  };
  for (const Row& row : {Row{-5, 0, 1, 0}, {0, 3, 3, 2}, {2, -1, 3, 20}, {99, 99, 5, 22}, {1, 1, 3, 11}}) {
    SCOPED_TRACE(testing::Message() << row.vertex << ' ' << row.element);
    EXPECT_EQ(countAt(*mline, row.vertex, row.element), row.count);
    for (const int capacity : {-1, row.count - 1, row.count}) {
      std::vector<double> expected(6, -1), values = expected;
      if (capacity == row.count) std::fill_n(expected.begin(), row.count, row.value);
      EXPECT_EQ(GetLineArray(mline.get(), values.data(), capacity, row.vertex, row.element), capacity == row.count);
      EXPECT_EQ(values, expected);
    }
  }
}

TEST(MlineAccess, WritingChecksItsIndices) {
  const auto mline = makeSteps(), untouched = makeSteps();
  const double values[5] = {7, 7, 7, 7, 7};
  for (const auto& [vertex, element] : {std::pair(-5, 0), {0, 3}, {3, 0}, {0, -1}}) {
    EXPECT_EQ(SetNumLine(mline.get(), 2, vertex, element) + SetLineArray(mline.get(), values, vertex, element), 0);
    EXPECT_EQ(SetNumArea(mline.get(), 2, vertex, element) + SetAreaArray(mline.get(), values, vertex, element), 0);
  }
  EXPECT_EQ(SetNumLine(mline.get(), -1, 0, 0), 0);
  for (int e = 0; e < 3; ++e) EXPECT_EQ(listsOf(*mline, e), listsOf(*untouched, e));
}

TEST(MlineAccess, ListsAreSizedBeforeTheyAreFilled) {
  const auto mline = makeSteps();
  const double values[3] = {4, 5, 6};
  EXPECT_EQ(SetNumLine(mline.get(), 3, 1, 2), 1);
  EXPECT_THAT(listOf(*mline, 1, 2), ElementsAre(0, 0, 0));
  EXPECT_EQ(SetLineArray(mline.get(), values, 1, 2), 1);
  EXPECT_EQ(listsOf(*mline, 2), (ElementLists{{2, 2, 2}, {4, 5, 6}, {22, 22, 22, 22, 22}}));
  // A fill list takes the length of the element's list.
  EXPECT_EQ(SetNumArea(mline.get(), 2, 1, 2) + SetAreaArray(mline.get(), values, 1, 2), 2);
  double read[3] = {};
  int count = 0;
  EXPECT_EQ(GetAreaArray(mline.get(), read, 3, 1, 2) + GetNumArea(mline.get(), &count, 1, 2), 2);
  EXPECT_THAT(read, ElementsAre(4, 5, 6));
  EXPECT_EQ(count, 3);
  EXPECT_EQ(SetNumLine(mline.get(), 0, 1, 2), 1);
  EXPECT_EQ(SetLineArray(mline.get(), values, 1, 2) + SetAreaArray(mline.get(), values, 1, 2), 0);
  EXPECT_THAT(listOf(*mline, 1, 2), IsEmpty());
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
  EXPECT_EQ(SetNumVertices(mline.get(), 1) + SetNumVertices(nullptr, 3), 0);
  EXPECT_EQ(SetNumVertices(mline.get(), 5) + SetNumVertices(mline.get(), 2), 2);
  ASSERT_EQ(mline->numVertices(), 2);
  EXPECT_TRUE(mline->vertexAt(1).isEqualTo({10, 0, 0}));
}

}  // namespace

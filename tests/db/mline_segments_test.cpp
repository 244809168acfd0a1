#include <gtest/gtest.h>

#include <kdrx/db_mline_segments.h>

namespace torva::test {
namespace {

const std::vector<KdMLSegment> kLists = {{{1, 2}, {0.5, 0}}, {{}, {}}, {{3}, {-0.5, 0, 7}}};

TEST(MlineSegments, OutsideAreEmptyLists) {
  for (const std::size_t outside : {std::size_t{3}, ~std::size_t{0}}) {
    EXPECT_TRUE(KdMLSegments(kLists)[outside].elementParameters.empty());
    EXPECT_TRUE(KdMLSegments()[outside].areaFillParameters.empty());
  }
}

TEST(MlineSegments, AChangeLeavesTheOtherListsAndTheCopiesAlone) {
  const std::vector<KdMLSegment> changes = {{{}, {}}, {{4, 5}, {6, 7}}, {{8, 9, 10}, {}}, {{1}, {2, 3, 4}}};
  const KdMLSegments original = kLists;
  for (std::size_t element = 0; element < kLists.size(); ++element) {
    for (const KdMLSegment& change : changes) {
      KdMLSegments copy = original;
      EXPECT_EQ(copy, original);
      copy.set(element, {change.areaFillParameters, change.elementParameters});
      std::vector<KdMLSegment> expected = kLists;
      expected[element] = change;
      EXPECT_EQ(copy.toVector(), expected);
      EXPECT_EQ(copy, KdMLSegments(expected));
      EXPECT_EQ(copy == original, expected == kLists);
      EXPECT_EQ(original.toVector(), kLists);
      // And again, now that no copy shares the memory, one list after the other.
      for (const KdMLSegment& next : changes) {
        const KdMLSegments before = copy;
        copy.set(element, {copy[element].areaFillParameters, next.elementParameters});
        copy.set(element, {next.areaFillParameters, copy[element].elementParameters});
        expected[element] = next;
        for (double& value : expected[element].elementParameters) value = -value;
        copy.set(element, {next.areaFillParameters, expected[element].elementParameters});
        EXPECT_EQ(copy.toVector(), expected);
        EXPECT_EQ(before == copy, before.toVector() == expected);
      }
    }
  }
}

}  // namespace
}  // namespace torva::test

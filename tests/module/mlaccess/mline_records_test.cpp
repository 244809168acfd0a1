#include "mlaccess/mline_records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mline_sketch.h"

namespace {

using ::testing::ElementsAre;

TEST(MlineRecords, HoldAllOfAMultiline) {
  const auto mline = makeMline({{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, {1, -1}});
  setList(*mline, 1, 1, {-1.5, 0, 3, 5});
  ASSERT_EQ(SetNumLine(mline.get(), 0, 2, 0), 1);
  ASSERT_EQ(SetNumArea(mline.get(), 2, 0, 1), 1);

  const CMlineRecords records(mline.get());
  ASSERT_EQ(records.numVertices(), 3);
  ASSERT_EQ(records.numElements(), 2);
  EXPECT_THAT(records[1].position, ElementsAre(10, 0, 0));
  EXPECT_THAT(records[1].axis, ElementsAre(0, 1, 0));
  EXPECT_THAT(records[2].miter, ElementsAre(-1, 0, 0));
  const db_mlelemlink& broken = records[1].elements[1];
  ASSERT_EQ(broken.lineCount, 4);
  EXPECT_EQ(std::vector<double>(broken.lineParameters, broken.lineParameters + 4), (std::vector<double>{-1.5, 0, 3, 5}));
  EXPECT_EQ(broken.areaParameters, nullptr);
  const db_mlelemlink& undrawn = records[2].elements[0];
  EXPECT_EQ(undrawn.lineCount, 0);
  EXPECT_EQ(undrawn.lineParameters, nullptr);
  const db_mlelemlink& filled = records[0].elements[1];
  ASSERT_EQ(filled.areaCount, 2);
  EXPECT_EQ(filled.areaParameters[1], 0);
}

TEST(MlineRecords, AreNoneForNoVertexAndWithoutElementsForNone) {
  const KdDbMline empty;
  EXPECT_EQ(ret_vert(&empty), nullptr);
  EXPECT_EQ(ret_vert(nullptr), nullptr);
  EXPECT_EQ(CMlineRecords(&empty).numVertices(), 0);

  KdDbMline bare;
  ASSERT_EQ(bare.appendSeg({1, 2, 3}), KdStatus::ok);
  std::vector<std::vector<KdMLSegment>> none(1);
  ASSERT_EQ(bare.setParametersAt(0, none), KdStatus::ok);
  db_mlvertlink* records = ret_vert(&bare);
  ASSERT_NE(records, nullptr);
  EXPECT_EQ(records[0].elements, nullptr);
  free_vert(records, 1, 0);
}

}  // namespace

#include "mlaccess/mline_records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mline_sketch.h"

namespace {

using ::testing::ElementsAre;

TEST(MlineRecords, HoldAllOfAMultiline) {
  const auto mline = makeMline({{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, {1, -1}});
  setList(*mline, 1, 1, {-1.5, 0, 3, 5});
  ASSERT_EQ(SetNumLine(mline.get(), 0, 2, 0) + SetNumArea(mline.get(), 2, 1, 1), 2);
  const CMlineRecords records(mline.get());
  ASSERT_EQ(records.numVertices(), 3);
  ASSERT_EQ(records.numElements(), 2);
  EXPECT_THAT(records[1].position, ElementsAre(10, 0, 0));
  EXPECT_THAT(records[1].axis, ElementsAre(0, 1, 0));
  EXPECT_THAT(records[2].miter, ElementsAre(-1, 0, 0));
  const db_mlelemlink &broken = records[1].elements[1], &undrawn = records[2].elements[0];
  EXPECT_THAT(std::vector(broken.lineParameters, broken.lineParameters + broken.lineCount), ElementsAre(-1.5, 0, 3, 5));
  EXPECT_THAT(std::vector(broken.areaParameters, broken.areaParameters + broken.areaCount), ElementsAre(0, 0));
  EXPECT_EQ(undrawn.lineParameters, nullptr);
  const KdDbMline empty;
  EXPECT_EQ(CMlineRecords(&empty).numVertices(), 0);
}

}  // namespace

#include "db/database.h"

#include <gmock/gmock.h>

#include "db/layers.h"
#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_tables.h>

namespace torva::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DatabaseTest : public PlanTest {
 protected:
  KdStatus tryOpen(KdDbObjectId id, KdOpenMode mode, bool openErased = false) {
    KdDbObject* object = nullptr;
    return kddbOpenObject(object, id, mode, openErased);
  }
};

TEST_F(DatabaseTest, ManyReadersOrOneWriterMayHoldAnObject) {
  auto* first = open<KdDbMline>(0xA0);
  auto* second = open<KdDbMline>(0xA0);
  EXPECT_EQ(first, second);
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forWrite), KdStatus::wasOpenForRead);
  EXPECT_EQ(first->close(), KdStatus::ok);
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forWrite), KdStatus::wasOpenForRead);
  EXPECT_EQ(second->close(), KdStatus::ok);
  EXPECT_EQ(second->close(), KdStatus::notOpen);

  auto* writer = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forRead), KdStatus::wasOpenForWrite);
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forWrite), KdStatus::wasOpenForWrite);
  EXPECT_EQ(writer->close(), KdStatus::ok);
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forWrite), KdStatus::ok);
}

TEST_F(DatabaseTest, RefusesIdsThatNameNothingOrAnotherClass) {
  const KdDbObjectId own = id(0xA0);
  const auto other = openText(planText());
  EXPECT_EQ(tryOpen({}, KdOpenMode::forRead), KdStatus::nullObjectId);
  const std::uint64_t pastTheEnd = own.word() | 0xFFFFFFFFu, noRecord = own.word() >> 32 << 32;
  for (const KdDbObjectId id : {KdDbObjectId(pastTheEnd), KdDbObjectId(noRecord), other->idOfHandle(0xA0)})
    EXPECT_EQ(tryOpen(id, KdOpenMode::forRead), KdStatus::unknownObjectId);
  KdDbMline* mline = nullptr;
  EXPECT_EQ(kddbOpenObject(mline, id(0xA1), KdOpenMode::forRead), KdStatus::wrongClass);
  EXPECT_EQ(mline, nullptr);
  EXPECT_TRUE(id(0).isNull() && id(0xBEEF).isNull());
  EXPECT_THAT(database().openObjects(), IsEmpty());
}

TEST_F(DatabaseTest, ErasedObjectsAreOpenedOnlyWhenAskedFor) {
  auto* line = open<KdDbEntity>(0xA1, KdOpenMode::forWrite);
  EXPECT_EQ(line->erase(), KdStatus::ok);
  EXPECT_TRUE(line->isErased());
  line->close();
  EXPECT_EQ(line->unerase(), KdStatus::notOpen);
  EXPECT_EQ(tryOpen(id(0xA1), KdOpenMode::forRead), KdStatus::wasErased);
  EXPECT_EQ(tryOpen(id(0xA1), KdOpenMode::forWrite, true), KdStatus::ok);
  EXPECT_EQ(line->unerase(), KdStatus::ok);
  line->close();
  EXPECT_THAT(changes(), IsEmpty());
}

}  // namespace
}  // namespace torva::test

#include <gmock/gmock.h>

#include "db/plan.h"

#include <kdrx/db_database.h>
#include <kdrx/ut.h>

namespace torva::test {
namespace {

class EntryPointsTest : public PlanTest {};

TEST_F(EntryPointsTest, NamesAndIdsConvertBothWays) {
  KdName name = {0, 0};
  KdDbObjectId back;
  EXPECT_EQ(kddbGetObjectId(back, name), KdStatus::nullObjectId);
  EXPECT_EQ(kddbGetName(name, {}), KdStatus::nullObjectId);
  ASSERT_EQ(kddbGetName(name, id(0xA0)), KdStatus::ok);
  ASSERT_EQ(kddbGetObjectId(back, name), KdStatus::ok);
  EXPECT_EQ(back, id(0xA0));
  const KdName unknown = {name[0], 1'000'000};
  EXPECT_EQ(kddbGetObjectId(back, unknown), KdStatus::unknownObjectId);
  EXPECT_EQ(back, id(0xA0));
}

TEST_F(EntryPointsTest, DictionariesAreSearchedByEntityNames) {
  KdName root = {0, 0}, line = {0, 0};
  ASSERT_EQ(kddbNamedObjDict(root), kKdInputNormal);
  ASSERT_EQ(kddbGetName(line, id(0xA1)), KdStatus::ok);
  KdResbuf* entry = nullptr;
  EXPECT_EQ(kddbDictSearch(root, L"NOTHING", &entry), kKdInputError);
  EXPECT_EQ(kddbDictSearch(line, L"STANDARD", &entry), kKdInputError);
  EXPECT_EQ(entry, nullptr);
  ASSERT_EQ(kddbDictSearch(root, L"ACAD_MLINESTYLE", &entry), kKdInputNormal);
  EXPECT_EQ(entry->restype, kKdResultName);
  KdDbObjectId found;
  EXPECT_EQ(kddbGetObjectId(found, entry->value.name), KdStatus::ok);
  EXPECT_EQ(found, id(0x17));
  kdutRelRb(entry);
  EXPECT_TRUE(database().openObjects().empty());
}

}  // namespace
}  // namespace torva::test

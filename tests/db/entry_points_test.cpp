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
  const auto other = openText(planText());
  EXPECT_EQ(kddbGetName(name, other->idOfHandle(0xA0)), KdStatus::unknownObjectId);
}

TEST_F(EntryPointsTest, DictionariesAreSearchedByEntityNames) {
  KdName root = {0, 0};
  ASSERT_EQ(kddbNamedObjDict(root), kKdInputNormal);
  KdResbuf* entry = nullptr;
  ASSERT_EQ(kddbDictSearch(root, L"ACAD_MLINESTYLE", &entry), kKdInputNormal);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->restype, kKdResultName);
  KdDbObjectId found;
  EXPECT_EQ(kddbGetObjectId(found, entry->value.name), KdStatus::ok);
  EXPECT_EQ(found, id(0x17));
  kdutRelRb(entry);

  KdResbuf* untouched = nullptr;
  KdName line = {0, 0};
  ASSERT_EQ(kddbGetName(line, id(0xA1)), KdStatus::ok);
  EXPECT_EQ(kddbDictSearch(root, L"NOTHING", &untouched), kKdInputError);
  EXPECT_EQ(kddbDictSearch(line, L"STANDARD", &untouched), kKdInputError);
  EXPECT_EQ(kddbDictSearch(root, nullptr, &untouched), kKdInputError);
  EXPECT_EQ(untouched, nullptr);
  EXPECT_TRUE(database().openObjects().empty());
}

TEST(WithoutDrawing, NothingIsFound) {
  EXPECT_EQ(kddbWorkingDatabase(), nullptr);
  KdDbObject* object = nullptr;
  KdName name = {1, 1};
  KdDbObjectId id;
  EXPECT_EQ(kddbOpenObject(object, KdDbObjectId(1), KdOpenMode::forRead), KdStatus::unknownObjectId);
  EXPECT_EQ(kddbGetObjectId(id, name), KdStatus::unknownObjectId);
  EXPECT_EQ(kddbNamedObjDict(name), kKdInputError);
}

TEST(Utilities, StringsAreCopied) {
  const wchar_t text[] = L"\u00e9t\u00e9";
  wchar_t* copy = nullptr;
  ASSERT_EQ(kdutNewString(text, &copy), kKdInputNormal);
  EXPECT_NE(copy, text);
  EXPECT_STREQ(copy, text);
  kdutDelString(copy);
  EXPECT_EQ(kdutNewString(nullptr, &copy), kKdInputNormal);
  EXPECT_EQ(copy, nullptr);
  EXPECT_EQ(kdutNewString(text, nullptr), kKdInputError);
  kdutDelString(nullptr);
  kdutRelRb(nullptr);
}

TEST(Utilities, DistanceIsMeasuredInSpace) {
  const double p[3] = {1, 2, 3}, q[3] = {3, 5, 9};
  EXPECT_EQ(kdutDistance(p, q), 7.0);
  EXPECT_EQ(kdutDistance(nullptr, q), 0.0);
  EXPECT_EQ(kdutDistance(p, nullptr), 0.0);
}

}  // namespace
}  // namespace torva::test

#include "mlstyle/usage.h"

#include "module/mlstyle/style_host.h"

#include <kdrx/db_mline.h>

namespace {

class UsageTest : public StyleHost {
 protected:
  UsageTest() { put(L"WALL", L"", 0, {{1}, {-1}}); }
  bool isUsed(const wchar_t* name) { return isStyleUsed(&drawing(), name); }
};

TEST_F(UsageTest, FollowsEveryEditOfTheMultilines) {
  EXPECT_FALSE(isUsed(L"STANDARD") || isUsed(L"WALL"));
  run("CMLSTYLE WALL\nMLINE 0,0 5,0 \"\"\n");
  EXPECT_TRUE(isUsed(L"wall"));
  EXPECT_FALSE(isUsed(L"WAL"));
  run("ERASE ALL \"\"\n");
  EXPECT_FALSE(isUsed(L"WALL"));
  run("U\n");
  EXPECT_TRUE(isUsed(L"WALL"));
  EXPECT_FALSE(isStyleUsed(nullptr, L"WALL"));
}

TEST_F(UsageTest, SeesEverySpaceAndBlock) {
  run("OPEN Y \"" TORVA_SOURCE_DIR "/samples/floor-plan.dxf\"\n");
  put(L"WALL", L"", 0, {{1}, {-1}});
  const auto blocks = COpenedObject<KdDbBlockTable>(drawing().blockTableId(), KdOpenMode::forRead)->newIterator();
  int count = 0;
  for (; !blocks->done(); blocks->step(), ++count) {
    EXPECT_FALSE(isUsed(L"WALL"));
    auto* mline = new KdDbMline;
    KdDbObjectId id;
    mline->setStyle(find(L"WALL"));
    ASSERT_EQ(COpenedObject<KdDbBlockTableRecord>(blocks->recordId(), KdOpenMode::forWrite)->appendEntity(mline, id),
              KdStatus::ok);
    mline->close();
    EXPECT_TRUE(isUsed(L"WALL")) << count;
    EXPECT_EQ(COpenedObject<KdDbMline>(id, KdOpenMode::forWrite)->erase(), KdStatus::ok);
  }
  EXPECT_GE(count, 3);
}

}  // namespace

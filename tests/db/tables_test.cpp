#include <gmock/gmock.h>

#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_tables.h>

namespace torva::test {
namespace {

using testing::ElementsAre;

class TablesTest : public PlanTest {};

TEST_F(TablesTest, FindSymbolsIgnoringCaseAndErasedOnesWhenAskedFor) {
  const auto* layers = open<KdDbLayerTable>(2);
  EXPECT_TRUE(open<KdDbLinetypeTable>(5)->has(L"dashed"));
  EXPECT_FALSE(layers->has(L"DASHED")) << "that is a linetype";
  KdDbObjectId found;
  EXPECT_EQ(layers->getAt(L"WALLS", found), KdStatus::ok);
  EXPECT_EQ(open<KdDbLayerTableRecord>(0x11, KdOpenMode::forWrite)->erase(), KdStatus::ok);
  EXPECT_EQ(layers->getAt(L"Walls", found), KdStatus::keyNotFound);
  EXPECT_EQ(found, id(0x11));
  EXPECT_EQ(layers->getAt(L"Walls", found, true), KdStatus::ok);
  EXPECT_EQ(database().symbols(dxf::RecordType::layer).size(), 1u);
}

/// The blocks of the working drawing, each with the classes of its entities.
std::vector<std::wstring> blocksOf(db::Database& database) {
  std::vector<std::wstring> found;
  KdDbBlockTable* table = nullptr;
  EXPECT_EQ(database.getBlockTable(table, KdOpenMode::forRead), KdStatus::ok);
  EXPECT_TRUE(table->has(L"*MODEL_SPACE"));
  for (auto blocks = table->newIterator(); !blocks->done(); blocks->step()) {
    KdDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(blocks->getRecord(block, KdOpenMode::forRead), KdStatus::ok);
    found.push_back(block->name() + L':');
    for (auto walk = block->newIterator(); !walk->done(); walk->step()) {
      KdDbEntity* entity = nullptr;
      EXPECT_EQ(walk->getEntity(entity, KdOpenMode::forRead), KdStatus::ok);
      EXPECT_EQ(entity->isA(), walk->entityClass());
      found.back() += walk->entityClass() == KdDbMline::desc() ? L" multiline" : L" entity";
      entity->close();
    }
    block->close();
  }
  return found;
}

TEST_F(TablesTest, RecordsTellTheirProperties) {
  const auto* walls = open<KdDbLayerTableRecord>(0x11);
  EXPECT_TRUE(walls->isOff() && walls->isFrozen() && !walls->isLocked());
  EXPECT_EQ(walls->color(), KdCmColor::byIndex(3));
  EXPECT_EQ(walls->linetypeId(), id(0x14));
  const auto* dashed = open<KdDbLinetypeTableRecord>(0x14);
  EXPECT_EQ(dashed->dashLengthAt(1), -0.25);
  for (const int outside : {-1, 2}) EXPECT_EQ(dashed->dashLengthAt(outside), 0);
}

TEST_F(TablesTest, IteratorsWalkBlocksAndTheirEntities) {
  EXPECT_THAT(blocksOf(database()),
              ElementsAre(L"*Model_Space: multiline entity entity", L"*Paper_Space: entity", L"Door: entity"));
  const auto old = openText(groupsFrom(R"(
    0 SECTION | 2 BLOCKS
    0 BLOCK | 8 0 | 2 $MODEL_SPACE | 70 0 | 0 ENDBLK
    0 BLOCK | 8 0 | 2 DOOR | 70 0 | 0 ARC | 8 0 | 0 ENDBLK
    0 ENDSEC
    0 SECTION | 2 ENTITIES | 0 LINE | 8 0 | 10 0.0 | 0 CIRCLE | 67 1 | 8 0 | 0 ENDSEC
    0 EOF
  )"));
  const Current<db::Database> current(*old);
  EXPECT_THAT(blocksOf(*old), ElementsAre(L"*Model_Space: entity", L"DOOR: entity")) << "without block records";
  const auto alone = openText(groupsFrom("0 SECTION | 2 ENTITIES | 0 LINE | 8 0 | 10 0.0 | 0 ENDSEC | 0 EOF"));
  const Current<db::Database> currentAlone(*alone);
  EXPECT_THAT(blocksOf(*alone), ElementsAre(L"*Model_Space: entity"));
}

TEST_F(TablesTest, AppendedMultilinesGoWhereTheirBlockIs) {
  const std::pair<dxf::Handle, std::vector<std::string>> cases[] = {
      {0x1F, {"+0 MLINE", "+5 FFFF", "+330 1F", "+100 AcDbEntity", "+8 0", "+100 AcDbMline", "+2 STANDARD"}},
      {0x1B, {"+0 MLINE", "+5 10000", "+330 1B", "+100 AcDbEntity", "+67      1", "+8 0", "+100 AcDbMline"}},
      {0x1C, {"+0 MLINE", "+5 10001", "+330 1C", "+100 AcDbEntity", "+8 0", "+100 AcDbMline", "+2 STANDARD"}},
  };
  for (const auto& [block, head] : cases) {
    database().beginUndoStep(L"");
    auto* mline = new KdDbMline;
    EXPECT_EQ(mline->appendSeg({0, 0, 0}), KdStatus::ok);
    const KdDbObjectId made = append(mline, id(block));
    std::vector<dxf::RecordId> entities;
    database().forEachBlockEntity(database().recordOf(id(block)), [&](dxf::RecordId r) { entities.push_back(r); });
    EXPECT_EQ(entities.at(entities.size() - 1), database().recordOf(made));
    auto groups = changes();
    ASSERT_GT(groups.size(), head.size());
    groups.resize(head.size());
    EXPECT_EQ(groups, head);
    database().undo();
  }
}

}  // namespace
}  // namespace torva::test

#include <gmock/gmock.h>

#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_tables.h>

namespace torva::test {
namespace {

using testing::ElementsAre;

class TablesTest : public PlanTest {};

TEST_F(TablesTest, FindSymbolsIgnoringCase) {
  const auto* layers = open<KdDbLayerTable>(2);
  KdDbObjectId found;
  EXPECT_EQ(layers->getAt(L"WALLS", found), KdStatus::ok);
  EXPECT_EQ(found, id(0x11));
  EXPECT_FALSE(layers->has(L"DASHED")) << "that is a linetype";
  EXPECT_EQ(layers->getAt(L"nothing", found), KdStatus::keyNotFound);
  EXPECT_EQ(found, id(0x11));
  EXPECT_EQ(database().layerTableId(), id(2));
  EXPECT_EQ(database().linetypeTableId(), id(5));
  EXPECT_TRUE(open<KdDbLinetypeTable>(5)->has(L"dashed"));
}

TEST_F(TablesTest, FindErasedSymbolsOnlyWhenAskedFor) {
  auto* layer = open<KdDbLayerTableRecord>(0x11, KdOpenMode::forWrite);
  const auto* layers = open<KdDbLayerTable>(2);
  EXPECT_TRUE(layers->has(L"Walls"));
  EXPECT_EQ(layer->erase(), KdStatus::ok);
  EXPECT_FALSE(layers->has(L"Walls"));
  KdDbObjectId found;
  EXPECT_EQ(layers->getAt(L"Walls", found, true), KdStatus::ok);
  EXPECT_EQ(found, id(0x11));
  EXPECT_EQ(database().symbols(dxf::RecordType::layer).size(), 1u);
}

TEST_F(TablesTest, RecordsTellTheirProperties) {
  const auto* walls = open<KdDbLayerTableRecord>(0x11);
  EXPECT_EQ(walls->name(), L"Walls");
  EXPECT_TRUE(walls->isOff());
  EXPECT_TRUE(walls->isFrozen());
  EXPECT_FALSE(walls->isLocked());
  EXPECT_EQ(walls->color(), KdCmColor::byIndex(3));
  EXPECT_EQ(walls->linetypeId(), id(0x14));
  const auto* zero = open<KdDbLayerTableRecord>(0x10);
  EXPECT_FALSE(zero->isOff() || zero->isFrozen() || zero->isLocked());
  EXPECT_TRUE(zero->linetypeId().isNull());
  const auto* dashed = open<KdDbLinetypeTableRecord>(0x14);
  EXPECT_EQ(dashed->numDashes(), 2);
  EXPECT_EQ(dashed->dashLengthAt(0), 0.5);
  EXPECT_EQ(dashed->dashLengthAt(1), -0.25);
  EXPECT_EQ(dashed->dashLengthAt(2), 0);
}

TEST_F(TablesTest, IteratorsWalkBlocksAndTheirEntities) {
  KdDbBlockTable* table = nullptr;
  ASSERT_EQ(database().getBlockTable(table, KdOpenMode::forRead), KdStatus::ok);
  EXPECT_TRUE(table->has(L"*MODEL_SPACE"));
  std::vector<std::wstring> names;
  std::vector<dxf::Handle> entities, mlines;
  for (auto blocks = table->newIterator(); !blocks->done(); blocks->step()) {
    KdDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(blocks->getRecord(block, KdOpenMode::forRead), KdStatus::ok);
    names.push_back(block->name());
    for (auto walk = block->newIterator(); !walk->done(); walk->step()) {
      KdDbEntity* entity = nullptr;
      ASSERT_EQ(walk->getEntity(entity, KdOpenMode::forRead), KdStatus::ok);
      EXPECT_EQ(entity->isA(), walk->entityClass());
      entities.push_back(entity->handle());
      if (walk->entityClass() == KdDbMline::desc()) mlines.push_back(entity->handle());
      entity->close();
    }
    block->close();
  }
  EXPECT_THAT(names, ElementsAre(L"*Model_Space", L"*Paper_Space", L"Door"));
  EXPECT_THAT(entities, ElementsAre(0xA0, 0xA1, 0xA2, 0xA5, 0x31));
  EXPECT_THAT(mlines, ElementsAre(0xA0));
  std::vector<dxf::RecordId> ofBlock;
  for (const dxf::Handle block : {0x1C, 0x30, 0xA1})
    database().forEachBlockEntity(database().file().find(block), [&](dxf::RecordId r) { ofBlock.push_back(r); });
  EXPECT_EQ(ofBlock, std::vector<dxf::RecordId>(2, database().file().find(0x31))) << "by its record and by its beginning";
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
    EXPECT_EQ(mline->setStyle(id(0x18)), KdStatus::ok);
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

#include "db/database.h"

#include <gmock/gmock.h>

#include "db/layers.h"
#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>
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

TEST_F(DatabaseTest, EntitiesOnLockedLayersAreRefusedToWritersFromOutside) {
  const dxf::RecordId walls = database().recordOf(id(0x11)), mline = database().recordOf(id(0xA0));
  open<KdDbMline>(0xA0, KdOpenMode::forWrite)->close();
  db::LayerData layer = db::readLayer(database().file(), walls);
  layer.isLocked = true;
  db::changeLayer(database(), walls, layer);
  EXPECT_TRUE(open<KdDbLayerTableRecord>(0x11, KdOpenMode::forWrite)->isLocked()) << "the layer itself can be changed";
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forWrite), KdStatus::onLockedLayer);
  KdDbEntity* entity = nullptr;
  const auto walk = open<KdDbBlockTableRecord>(0x1F)->newIterator();
  EXPECT_EQ(walk->entityId(), id(0xA0));
  EXPECT_EQ(walk->getEntity(entity, KdOpenMode::forWrite), KdStatus::onLockedLayer);
  EXPECT_EQ(entity, nullptr);
  EXPECT_EQ(tryOpen(id(0xA1), KdOpenMode::forWrite), KdStatus::ok);
  EXPECT_THAT(database().takeLockedEntities(), ElementsAre(mline));
  EXPECT_THAT(database().takeLockedEntities(), IsEmpty());
  KdDbObject* object = nullptr;
  EXPECT_EQ(database().openObject(object, id(0xA0), KdOpenMode::forWrite, false), KdStatus::ok) << "to the host it is open";
  EXPECT_EQ(object->close(), KdStatus::ok);
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forRead), KdStatus::ok);
}

TEST_F(DatabaseTest, TellsWhichObjectsAreOpenAndClosesThem) {
  open<KdDbMline>(0xA0);
  open<KdDbMline>(0xA0);
  open<KdDbEntity>(0xA1, KdOpenMode::forWrite);
  std::vector<std::tuple<KdDbObjectId, int, bool>> left;
  for (const auto& object : database().openObjects()) left.emplace_back(object.id, object.readers, object.hasWriter);
  EXPECT_THAT(left, ElementsAre(std::tuple(id(0xA0), 2, false), std::tuple(id(0xA1), 0, true)));
  database().closeAll();
  EXPECT_THAT(database().openObjects(), IsEmpty());
  EXPECT_EQ(tryOpen(id(0xA0), KdOpenMode::forWrite), KdStatus::ok);
}

TEST_F(DatabaseTest, RefusesIdsThatNameNothingOrAnotherClass) {
  const KdDbObjectId own = id(0xA0);
  const KdDbObjectId pastTheEnd(own.word() | 0xFFFFFFFFu);
  const KdDbObjectId noRecord(own.word() >> 32 << 32);
  EXPECT_EQ(tryOpen({}, KdOpenMode::forRead), KdStatus::nullObjectId);
  EXPECT_EQ(tryOpen(pastTheEnd, KdOpenMode::forRead), KdStatus::unknownObjectId);
  EXPECT_EQ(tryOpen(noRecord, KdOpenMode::forRead), KdStatus::unknownObjectId);
  KdDbMline* mline = nullptr;
  EXPECT_EQ(kddbOpenObject(mline, id(0xA1), KdOpenMode::forRead), KdStatus::wrongClass);
  EXPECT_EQ(mline, nullptr);

  const auto other = openText(planText());
  EXPECT_EQ(tryOpen(other->idOfHandle(0xA0), KdOpenMode::forRead), KdStatus::unknownObjectId);
  {
    const Current<db::Database> current(*other);
    EXPECT_EQ(tryOpen(own, KdOpenMode::forRead), KdStatus::unknownObjectId);
  }
  EXPECT_TRUE(id(0).isNull());
  EXPECT_TRUE(id(0xBEEF).isNull());
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

TEST_F(DatabaseTest, ObjectsKnowWhoTheyAre) {
  const auto* line = open<KdDbEntity>(0xA1);
  EXPECT_EQ(line->handle(), 0xA1u);
  EXPECT_EQ(line->objectId(), id(0xA1));
  EXPECT_EQ(line->ownerId(), database().modelSpaceId());
  EXPECT_EQ(line->database(), &database());
  EXPECT_EQ(line->layerId(), id(0x10));
  EXPECT_EQ(open<KdDbMline>(0xA0)->layerId(), id(0x11));
  EXPECT_EQ(open<KdDbMlineStyle>(0x18)->ownerId(), id(0x17)) << "the owner is not the first 330, but the one outside of 102";
  EXPECT_TRUE(open<KdDbDictionary>(0xC)->ownerId().isNull());
}

TEST_F(DatabaseTest, AppendedEntitiesStandAtTheEndOfModelSpaceInOrder) {
  const std::string text = groupsFrom("0 POINT\n5 F0\n8 0\n10 1.0\n20 2.0");
  const dxf::RecordId first = database().appendToModelSpace(text);
  const dxf::RecordId second = database().appendToModelSpace(groupsFrom("0 POINT\n5 F1\n8 0"));
  std::vector<dxf::RecordId> entities;
  database().forEachModelSpaceEntity([&](dxf::RecordId record) { entities.push_back(record); });
  ASSERT_EQ(entities.size(), 5u);
  EXPECT_EQ(entities[3], first);
  EXPECT_EQ(entities[4], second);
  EXPECT_THAT(changes(), ElementsAre("+0 POINT", "+5 F0", "+8 0", "+10 1.0", "+20 2.0", "+0 POINT", "+5 F1", "+8 0"));
}

TEST_F(DatabaseTest, ReportsChangedRecordsWhenTheirWriterCloses) {
  const std::size_t before = database().changeCount();
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  mline->close();
  EXPECT_EQ(database().changeCount(), before);
  for (int pass = 1; pass <= 2; ++pass) {
    open<KdDbMline>(0xA0, KdOpenMode::forWrite);
    EXPECT_EQ(mline->setSupressEndCaps(pass == 1), KdStatus::ok);
    mline->close();
    const auto changed = database().changesSince(before);
    ASSERT_EQ(changed.size(), static_cast<std::size_t>(pass));
    EXPECT_EQ(changed.back(), database().file().find(0xA0));
  }
}

TEST_F(DatabaseTest, AMultilineIsSeenAsItStandsNowBeforeItIsWritten) {
  const dxf::RecordId record = database().file().find(0xA0);
  EXPECT_FALSE(database().mline(record).suppressesEndCaps);
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  EXPECT_EQ(mline->setSupressEndCaps(true), KdStatus::ok);
  EXPECT_TRUE(database().mline(record).suppressesEndCaps);
  EXPECT_FALSE(database().file().isChanged(record));
}

TEST(OldDrawing, HasBlocksAndModelSpaceWithoutBlockRecords) {
  const auto database = openText(groupsFrom(R"(
    0 SECTION | 2 HEADER
    9 $ACADVER | 1 AC1009
    0 ENDSEC
    0 SECTION | 2 BLOCKS
    0 BLOCK | 8 0 | 2 $MODEL_SPACE | 70 0
    0 ENDBLK
    0 BLOCK | 8 0 | 2 DOOR | 70 0
    0 ARC | 8 0
    0 ENDBLK
    0 ENDSEC
    0 SECTION | 2 ENTITIES
    0 LINE | 8 0 | 10 0.0
    0 CIRCLE | 67 1 | 8 0
    0 ENDSEC
    0 EOF
  )"));
  const Current<db::Database> current(*database);
  KdDbBlockTable* table = nullptr;
  ASSERT_EQ(database->getBlockTable(table, KdOpenMode::forRead), KdStatus::ok);
  std::vector<std::pair<std::wstring, int>> counts;
  for (auto blocks = table->newIterator(); !blocks->done(); blocks->step()) {
    KdDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(blocks->getRecord(block, KdOpenMode::forRead), KdStatus::ok);
    counts.emplace_back(block->name(), 0);
    for (auto entities = block->newIterator(); !entities->done(); entities->step()) ++counts.back().second;
    block->close();
  }
  EXPECT_THAT(counts, ElementsAre(std::pair(L"*Model_Space", 1), std::pair(L"DOOR", 1)));
  EXPECT_TRUE(database->namedObjectsDictionaryId().isNull());

  KdDbObjectId id;
  KdDbBlockTableRecord* space = nullptr;
  ASSERT_EQ(kddbOpenObject(space, database->modelSpaceId(), KdOpenMode::forWrite), KdStatus::ok);
  KdDbMline mline;
  EXPECT_EQ(space->appendEntity(&mline, id), KdStatus::notApplicable) << "old drawings know no multilines";
  EXPECT_EQ(mline.database(), nullptr);
}

TEST(OldDrawing, MayConsistOfEntitiesAlone) {
  const auto database = openText(groupsFrom("0 SECTION\n2 ENTITIES\n0 LINE\n8 0\n10 0.0\n0 ENDSEC\n0 EOF"));
  const Current<db::Database> current(*database);
  KdDbBlockTable* table = nullptr;
  ASSERT_EQ(database->getBlockTable(table, KdOpenMode::forRead), KdStatus::ok);
  const auto blocks = table->newIterator();
  ASSERT_FALSE(blocks->done());
  EXPECT_EQ(blocks->recordId(), database->modelSpaceId());
  EXPECT_TRUE(database->layerTableId().isNull());
  EXPECT_TRUE(database->symbols(dxf::RecordType::layer).empty());
}

TEST(NewDrawing, HasWhatMultilinesNeed) {
  const auto database = db::Database::create();
  const Current<db::Database> current(*database);
  auto* mline = new KdDbMline;
  EXPECT_FALSE(mline->style().isNull());
  EXPECT_EQ(mline->appendSeg({0, 0, 0}), KdStatus::ok);
  EXPECT_EQ(mline->appendSeg({10, 0, 0}), KdStatus::ok);
  const KdDbObjectId id = append(mline, database->modelSpaceId());
  EXPECT_EQ(mline->ownerId(), database->modelSpaceId());
  database->flush();
  const db::MlineData written = db::readMline(database->file(), database->recordOf(id));
  ASSERT_EQ(written.vertices.size(), 2u);
  EXPECT_EQ(written.vertices[1].position.x, 10);
  EXPECT_EQ(written.elementCount(), 2);
  auto* space = openIn<KdDbBlockTableRecord>(*database, database->file().handle(database->recordOf(mline->ownerId())),
                                             KdOpenMode::forWrite);
  KdDbObjectId again;
  EXPECT_EQ(space->appendEntity(mline, again), KdStatus::alreadyInDatabase);
}

}  // namespace
}  // namespace torva::test

#include <gmock/gmock.h>

#include "db/plan.h"
#include "db/system_variables.h"
#include "support/temporary_folder.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

namespace torva::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class UndoTest : public PlanTest {
 protected:
  void setScale(double scale) {
    auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
    EXPECT_EQ(mline->setScale(scale), KdStatus::ok);
    mline->close();
  }
  void step(const wchar_t* name, const std::function<void()>& change) {
    database().beginUndoStep(name);
    change();
    database().endUndoStep();
  }
};

TEST_F(UndoTest, TakesBackAndBringsAgainStepByStep) {
  step(L"TWO", [&] { setScale(2); });
  const auto afterTwo = changes();
  step(L"THREE", [&] { setScale(3); });
  const auto afterThree = changes();
  EXPECT_FALSE(afterTwo.empty());
  EXPECT_NE(afterTwo, afterThree);

  const auto* mline = open<KdDbMline>(0xA0);
  EXPECT_THAT(database().undo(), Optional(std::wstring(L"THREE")));
  EXPECT_EQ(changes(), afterTwo);
  EXPECT_EQ(mline->scale(), 2) << "the same object has the former content";
  EXPECT_THAT(database().undo(), Optional(std::wstring(L"TWO")));
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_FALSE(database().file().isModified());
  EXPECT_EQ(database().undo(), std::nullopt);

  EXPECT_THAT(database().redo(), Optional(std::wstring(L"TWO")));
  EXPECT_EQ(changes(), afterTwo);
  EXPECT_THAT(database().redo(), Optional(std::wstring(L"THREE")));
  EXPECT_EQ(changes(), afterThree);
  EXPECT_EQ(database().redo(), std::nullopt);
}

TEST_F(UndoTest, ANewChangeEndsWhatCanBeBroughtAgainAndAnEmptyStepDoesNot) {
  step(L"TWO", [&] { setScale(2); });
  EXPECT_TRUE(database().undo());
  step(L"NOTHING", [&] { setScale(1); });
  step(L"BACK AND FORTH", [&] {
    setScale(5);
    database().flush();
    setScale(1);
  });
  EXPECT_THAT(changes(), IsEmpty()) << "a record that is as it was has the bytes that it had";
  EXPECT_THAT(database().redo(), Optional(std::wstring(L"TWO")));
  EXPECT_TRUE(database().undo());
  step(L"THREE", [&] { setScale(3); });
  EXPECT_EQ(database().redo(), std::nullopt);
}

TEST_F(UndoTest, RestoresErasedAndMadeObjects) {
  KdDbObjectId styleId;
  EXPECT_EQ(open<KdDbDictionary>(0x17)->numEntries(), 2);
  database().closeAll();
  step(L"MAKE", [&] {
    auto* style = new KdDbMlineStyle;
    ASSERT_EQ(open<KdDbDictionary>(0x17, KdOpenMode::forWrite)->setAt(L"NEW", style, styleId), KdStatus::ok);
    EXPECT_EQ(open<KdDbEntity>(0xA1, KdOpenMode::forWrite)->erase(), KdStatus::ok);
    database().closeAll();
  });
  const auto made = changes();
  EXPECT_TRUE(database().undo());
  EXPECT_THAT(changes(), IsEmpty());
  KdDbObject* object = nullptr;
  EXPECT_EQ(kddbOpenObject(object, styleId, KdOpenMode::forRead), KdStatus::wasErased);
  EXPECT_FALSE(open<KdDbDictionary>(0x17)->has(L"NEW"));
  EXPECT_FALSE(open<KdDbEntity>(0xA1)->isErased());
  database().closeAll();

  EXPECT_TRUE(database().redo());
  EXPECT_EQ(changes(), made);
  EXPECT_EQ(kddbOpenObject(object, styleId, KdOpenMode::forRead), KdStatus::ok);
}

TEST_F(UndoTest, AVariableSetForAWhileLeavesNoTrace) {
  auto text = planText(), bare = text;
  text.erase(text.find("     8"), 5);
  bare.erase(bare.find("9\n$DIMZIN"), 20);
  const TemporaryFolder folder;
  for (const auto& [content, former] : {std::pair(text, 8), std::pair(bare, 0)}) {
    for (const bool isEdited : {false, true}) {  // the header before the step
      const auto plain = openText(content);
      db::SystemVariables variables(plain.get());
      EXPECT_TRUE(!isEdited || variables.set(L"LTSCALE", 3.0));
      EXPECT_TRUE(!isEdited || plain->save(folder.path("edited.dxf"), {}));
      const std::string before = textOf(*plain);
      plain->beginUndoStep(L"DIALOG");
      EXPECT_TRUE(variables.set(L"DIMZIN", 4));
      EXPECT_TRUE(plain->file().isModified());
      EXPECT_TRUE(variables.set(L"DIMZIN", former));
      plain->endUndoStep();
      EXPECT_EQ(textOf(*plain), before) << former << isEdited;
      EXPECT_FALSE(plain->file().isModified());
      EXPECT_EQ(plain->undo(), std::nullopt);
    }
  }
}

TEST_F(UndoTest, AStepBegunInsideAnotherBelongsToIt) {
  database().beginUndoStep(L"OUTER");
  setScale(2);
  database().beginUndoStep(L"INNER");
  setScale(3);
  EXPECT_THAT(database().undo(), Optional(std::wstring(L"OUTER")));
  EXPECT_THAT(changes(), IsEmpty());
}

}  // namespace
}  // namespace torva::test

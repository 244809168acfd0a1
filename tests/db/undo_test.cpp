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

TEST_F(UndoTest, RestoresHeaderVariables) {
  db::SystemVariables variables(&database());
  step(L"SETVAR", [&] {
    EXPECT_TRUE(variables.set(L"DIMZIN", 3));
    EXPECT_TRUE(variables.set(L"LTSCALE", 2.5));
  });
  EXPECT_THAT(changes(), ElementsAre("-70      8", "+70      3", "+9 $LTSCALE", "+40 2.5"));
  EXPECT_TRUE(database().undo());
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_EQ(std::get<int>(*variables.get(L"DIMZIN")), 8);
  EXPECT_TRUE(database().redo());
  EXPECT_EQ(std::get<double>(*variables.get(L"LTSCALE")), 2.5);
}

TEST_F(UndoTest, AVariableSetForAWhileLeavesNoTrace) {
  auto text = planText(), bare = text;
  text.erase(text.find("     8"), 5);
  bare.erase(bare.find("9\n$DIMZIN"), 20);
  const struct {
    std::string drawing;
    int former;
    bool isEdited;  // the header before the step
  } cases[] = {{text, 8, false}, {bare, 0, false}, {text, 8, true}, {bare, 0, true}};
  const TemporaryFolder folder;
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.former << c.isEdited);
    const auto plain = openText(c.drawing);
    db::SystemVariables variables(plain.get());
    EXPECT_TRUE(!c.isEdited || variables.set(L"LTSCALE", 3.0));
    EXPECT_TRUE(!c.isEdited || plain->save(folder.path("edited.dxf"), {}));
    const std::string before = textOf(*plain);
    EXPECT_EQ(before == c.drawing, !c.isEdited);
    plain->beginUndoStep(L"DIALOG");
    EXPECT_TRUE(variables.set(L"DIMZIN", 0));
    EXPECT_TRUE(variables.set(L"DIMZIN", 4));
    EXPECT_TRUE(plain->file().isModified());
    EXPECT_TRUE(variables.set(L"DIMZIN", c.former));
    plain->endUndoStep();
    EXPECT_EQ(textOf(*plain), before);
    EXPECT_FALSE(plain->file().isModified());
    EXPECT_EQ(plain->undo(), std::nullopt);
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

TEST_F(UndoTest, ReportsWhatItRestored) {
  step(L"TWO", [&] { setScale(2); });
  const std::size_t before = database().changeCount();
  EXPECT_TRUE(database().undo());
  EXPECT_THAT(database().changesSince(before), ElementsAre(database().file().find(0xA0)));
}

}  // namespace
}  // namespace torva::test

#include <algorithm>
#include <gmock/gmock.h>

#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

namespace torva::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Operations on the styles of a drawing, through its interface, each a step of undo.
class StyleEditsTest : public PlanTest {
 protected:
  /// Does something to the dictionary of styles, open for write.
  void inStep(const std::function<void(KdDbDictionary&)>& act) {
    database().beginUndoStep(L"MLSTYLE");
    auto* styles = open<KdDbDictionary>(0x17, KdOpenMode::forWrite);
    act(*styles);
    styles->close();
    database().endUndoStep();
  }
  static void add(KdDbDictionary& styles, const wchar_t* name) {
    auto* style = new KdDbMlineStyle;
    int index = 0;
    EXPECT_EQ(style->setName(name), KdStatus::ok);
    EXPECT_EQ(style->addElement(index, 1.5, KdCmColor::trueColor(0x102030), {}), KdStatus::ok);
    KdDbObjectId made;
    EXPECT_EQ(styles.setAt(name, style, made), KdStatus::ok);
    EXPECT_EQ(style->close(), KdStatus::ok);
  }
  void rename(KdDbDictionary& styles, dxf::Handle handle, const wchar_t* former, const wchar_t* name) {
    auto* style = open<KdDbMlineStyle>(handle, KdOpenMode::forWrite);
    EXPECT_EQ(style->setName(name), KdStatus::ok);
    EXPECT_EQ(style->close(), KdStatus::ok);
    EXPECT_EQ(styles.setName(former, name), KdStatus::ok);
  }
};

TEST_F(StyleEditsTest, AreTakenBackAndBroughtAgainWhole) {
  const struct {
    const char* name;
    std::function<void(KdDbDictionary&)> act;
    std::size_t records;  ///< that are touched
  } cases[] = {
      {"added", [](auto& d) { add(d, L"NEW"); }, 2},
      {"replaced", [](auto& d) { add(d, L"DOUBLE"); }, 3},
      {"renamed, used by a wall", [&](auto& d) { rename(d, 0x18, L"Standard", L"PLAIN"); }, 3},
      {"removed, used by a wall", [](auto& d) { d.remove(L"standard"); }, 1},
      {"removed, unused", [](auto& d) { d.remove(L"double"); }, 2},
  };
  const std::string before = textOf(database());
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const std::size_t changesSeen = database().changeCount();
    inStep(row.act);
    const auto touched = database().changesSince(changesSeen);
    EXPECT_EQ(std::set<dxf::RecordId>(touched.begin(), touched.end()).size(), row.records);
    const std::string after = textOf(database());
    EXPECT_EQ(database().undo(), L"MLSTYLE");
    EXPECT_EQ(textOf(database()), before);
    EXPECT_EQ(database().redo(), L"MLSTYLE");
    EXPECT_EQ(textOf(database()), after);
    database().undo();
    EXPECT_TRUE(database().openObjects().empty());
  }
}

TEST_F(StyleEditsTest, ARenamedStyleIsNamedSoByItsMultilines) {
  inStep([&](auto& styles) { rename(styles, 0x18, L"Standard", L"PLAIN"); });
  EXPECT_THAT(changes(), ElementsAre("-2 STANDARD", "+2 PLAIN", "-3 Standard", "+3 PLAIN", "-2 STANDARD", "+2 PLAIN"));
  EXPECT_EQ(open<KdDbMline>(0xA0)->style(), id(0x18));
}

TEST_F(StyleEditsTest, AStyleAddedAndTakenOutAgainLeavesNoTrace) {
  inStep([](auto& styles) {
    add(styles, L"NEW");
    EXPECT_EQ(styles.remove(L"NEW"), KdStatus::ok);
  });
  EXPECT_THAT(changes(), IsEmpty());
  EXPECT_EQ(database().undo(), std::nullopt);
}

TEST(StyleUse, IsKnownWhateverTheLineEnds) {
  std::string text = planText();
  std::ranges::replace(text, '\n', '\r');
  const auto database = openText(text);
  const Current<db::Database> current(*database);
  database->beginUndoStep(L"");
  auto* styles = openIn<KdDbDictionary>(*database, 0x17, KdOpenMode::forWrite);
  for (const wchar_t* name : {L"STANDARD", L"DOUBLE"}) EXPECT_EQ(styles->remove(name), KdStatus::ok);
  styles->close();
  database->endUndoStep();
  EXPECT_FALSE(database->file().isErased(database->file().find(0x18))) << "a wall has it";
  EXPECT_TRUE(database->file().isErased(database->file().find(0x19)));
}

TEST_F(StyleEditsTest, StepsCanBeSeparatedWithinACommand) {
  const std::string before = textOf(database());
  std::string between;
  inStep([&](auto& styles) {
    add(styles, L"ONE");
    kddbNextUndoStep();
    between = textOf(database());
    kddbNextUndoStep();
    add(styles, L"TWO");
  });
  EXPECT_EQ(database().undo(), L"MLSTYLE");
  EXPECT_EQ(textOf(database()), between);
  EXPECT_EQ(database().undo(), L"MLSTYLE");
  EXPECT_EQ(textOf(database()), before);
  kddbNextUndoStep();
  EXPECT_EQ(database().undo(), std::nullopt) << "outside of a step nothing is begun";
}

}  // namespace
}  // namespace torva::test

#include <gmock/gmock.h>
#include <limits>
#include <numbers>

#include "db/plan.h"

#include <kdrx/db_mline_style.h>

namespace torva::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class MlineStyleTest : public PlanTest {
 protected:
  struct Element {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId linetype;
  };
  static Element elementOf(const KdDbMlineStyle& style, int index) {
    Element element;
    EXPECT_EQ(style.getElementAt(index, element.offset, element.color, element.linetype), KdStatus::ok);
    return element;
  }
};

TEST_F(MlineStyleTest, ReadsAStyle) {
  EXPECT_EQ(open<KdDbMlineStyle>(0x18)->ownerId(), id(0x17)) << "the owner is not the first 330, but the one outside of 102";
  const auto* style = open<KdDbMlineStyle>(0x19);
  EXPECT_DOUBLE_EQ(style->startAngle(), std::numbers::pi / 4);
  EXPECT_DOUBLE_EQ(style->endAngle(), std::numbers::pi / 3);
  EXPECT_EQ(elementOf(*style, 0).linetype, id(0x14)) << "names of linetypes ignore case";
  EXPECT_TRUE(elementOf(*style, 1).linetype.isNull());
  std::wstring linetype;
  EXPECT_EQ(style->getLinetypeNameAt(1, linetype), KdStatus::ok);
  EXPECT_EQ(style->getLinetypeNameAt(3, linetype), KdStatus::invalidIndex);
  EXPECT_EQ(linetype, L"MISSING");
}

TEST_F(MlineStyleTest, ChangesTheGroupsOfTheChangedValuesAlone) {
  const KdCmColor red = KdCmColor::byIndex(1);
  KdCmColor book = KdCmColor::trueColor(0x0000FF);
  book.setNamesFromDictionaryKey(L"BOOK$SEA");
  int index = 0;
  const auto sets = [](int element, double offset, const KdCmColor& color, KdDbObjectId linetype) {
    return [=](KdDbMlineStyle& style) { return style.setElement(element, offset, color, linetype); };
  };
  const struct {
    const char* name;
    std::function<KdStatus(KdDbMlineStyle&)> change;
    std::vector<std::string> groups;
  } cases[] = {
      {"nothing", [](auto& s) { return s.setName(s.name()); }, {}},
      {"flag off", [](auto& s) { return s.setEndSquareCap(false); }, {"-70    272", "+70     16"}},
      {"angle", [](auto& s) { return s.setEndAngle(std::numbers::pi / 2); }, {"-52 60.0", "+52 90.0"}},
      {"same angle", [](auto& s) { return s.setStartAngle(s.startAngle()); }, {}},
      {"fill true color",
       [&](auto& s) { return s.setFillColor(book); },
       {"-62      1", "+62      5", "+420       255", "+430 BOOK$SEA"}},
      {"true color gone", sets(1, 1, red, {}), {"-420 16711680"}},
      {"linetype", sets(2, -1, KdCmColor::byIndex(4), id(0x14)), {"-6 BYLAYER", "+6 DASHED"}},
      {"missing linetype stays", sets(1, 1.5, KdCmColor::trueColor(0xFF0000), {}), {"-49 1.0", "+49 1.5"}},
      {"first element gone",
       [](auto& s) { return s.removeElementAt(0); },
       {"-71      3", "-49 2.0", "-62      2", "-6 Dashed", "+71      2"}},
      {"new element",
       [&](auto& s) { return s.addElement(index, 0.0, red, {}); },
       {"-71      3", "+71      4", "+49 0.0", "+62      1", "+6 BYLAYER"}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    database().beginUndoStep(L"");
    auto* style = open<KdDbMlineStyle>(0x19, KdOpenMode::forWrite);
    EXPECT_EQ(row.change(*style), KdStatus::ok);
    style->close();
    EXPECT_THAT(changes(), ElementsAreArray(row.groups));
    database().undo();
  }
}

TEST_F(MlineStyleTest, AreSortedWhenChangedElementsAreClosed) {
  auto* style = open<KdDbMlineStyle>(0x18, KdOpenMode::forWrite);
  int index = 0;
  EXPECT_EQ(style->addElement(index, 0.75, KdCmColor(), {}), KdStatus::ok);
  EXPECT_EQ(elementOf(*style, 2).offset, 0.75) << "indices hold while the style is being changed";
  style->close();
  EXPECT_THAT(changes(), ElementsAre("-71      2", "+71      3", "+49 0.75", "+62    256", "+6 BYLAYER"));
}

TEST_F(MlineStyleTest, KeepTheOrderOfTheirElementsWhenOnlyOtherThingsChange) {
  std::string text = planText();
  text.replace(text.find("49\n2.0"), 6, "49\n-9.0");
  const auto unsorted = openText(text);
  const Current<db::Database> current(*unsorted);
  auto* style = openIn<KdDbMlineStyle>(*unsorted, 0x19, KdOpenMode::forWrite);
  const std::string before(unsorted->file().bytes(unsorted->file().find(0x19)));
  EXPECT_EQ(style->setDescription(L"other"), KdStatus::ok);
  style->close();
  unsorted->flush();
  EXPECT_THAT(difference(before, unsorted->file().bytes(unsorted->file().find(0x19))),
              ElementsAre("-3 two leaves", "+3 other"));
}

TEST_F(MlineStyleTest, ANewStyleIsWrittenWhole) {
  auto* dictionary = open<KdDbDictionary>(0x17, KdOpenMode::forWrite);
  auto* style = new KdDbMlineStyle;
  ASSERT_EQ(style->copyFrom(open<KdDbMlineStyle>(0x19)), KdStatus::ok);
  EXPECT_EQ(style->setName(L"COPY"), KdStatus::ok);
  KdDbObjectId made;
  ASSERT_EQ(dictionary->setAt(L"COPY", style, made), KdStatus::ok);
  style->close();
  dictionary->close();
  EXPECT_THAT(changes(),
              ElementsAre("+3 COPY", "+350 FFFF", "+0 MLINESTYLE", "+5 FFFF", "+102 {ACAD_REACTORS", "+330 17", "+102 }",
                          "+330 17", "+100 AcDbMlineStyle", "+2 COPY", "+70    272", "+3 two leaves", "+62      1",
                          "+51 45.0", "+52 60.0", "+71      3", "+49 2.0", "+62      2", "+6 Dashed", "+49 1.0",
                          "+62      1", "+420  16711680", "+6 MISSING", "+49 -1.0", "+62      4", "+6 BYLAYER"));
}

TEST_F(MlineStyleTest, RefuseWhatTheyCannotHold) {
  auto* style = open<KdDbMlineStyle>(0x18, KdOpenMode::forWrite);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  int index = 7;
  const std::pair<KdStatus, KdStatus> refused[] = {
      {style->setElement(2, 0, {}, {}), KdStatus::invalidIndex},
      {style->removeElementAt(2), KdStatus::invalidIndex},
      {style->addElement(index, nan, {}, {}), KdStatus::invalidInput},
      {style->setStartAngle(nan), KdStatus::invalidInput},
      {style->setElement(0, 0.5, KdCmColor(), id(0x10)), KdStatus::unknownObjectId},  // a layer is no linetype
  };
  for (const auto& [status, expected] : refused) EXPECT_EQ(status, expected);
  EXPECT_EQ(index, 7);
  style->close();
  EXPECT_EQ(style->setName(L"X"), KdStatus::notOpen);
  EXPECT_EQ(style->removeElementAt(0), KdStatus::notOpen);
  EXPECT_THAT(changes(), IsEmpty());
}

}  // namespace
}  // namespace torva::test

#include <gmock/gmock.h>

#include "db/plan.h"

#include <kdrx/db_dictionary.h>
#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

namespace torva::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DictionaryTest : public PlanTest {
 protected:
  std::string textOfRecord(dxf::Handle handle) {
    return std::string(database().file().bytes(database().file().find(handle)));
  }
};

TEST_F(DictionaryTest, FindsEntriesIgnoringCaseInTheOrderOfTheFile) {
  const auto* styles = open<KdDbDictionary>(0x17);
  EXPECT_FALSE(styles->has(L"STAND"));
  KdDbObjectId found;
  EXPECT_EQ(styles->getAt(L"double", found), KdStatus::ok);
  EXPECT_EQ(styles->getAt(L"nothing", found), KdStatus::keyNotFound);
  EXPECT_EQ(found, id(0x19));
  std::wstring name;
  EXPECT_EQ(styles->nameAt(id(0x18), name), KdStatus::ok);
  EXPECT_EQ(styles->nameAt(id(0xA0), name), KdStatus::keyNotFound);
  EXPECT_EQ(name, L"Standard");
  std::vector<KdDbObjectId> entries;
  for (auto entry = styles->newIterator(); !entry->done(); entry->next()) entries.push_back(entry->objectId());
  EXPECT_THAT(entries, ElementsAre(id(0x18), id(0x19)));
}

TEST_F(DictionaryTest, ChangesTheGroupsOfTheChangedEntriesAlone) {
  auto* styles = open<KdDbDictionary>(0x17, KdOpenMode::forWrite);
  auto* groups = open<KdDbDictionary>(0xD, KdOpenMode::forWrite);
  const std::string before = textOfRecord(0x17), beforeGroups = textOfRecord(0xD);
  KdDbObjectId made;
  const auto add = [&](KdDbDictionary& dictionary, const wchar_t* name) {
    auto* style = new KdDbMlineStyle;
    EXPECT_EQ(dictionary.setAt(name, style, made), KdStatus::ok);
    EXPECT_EQ(dictionary.setAt(L"twice", style, made), KdStatus::alreadyInDatabase);
    EXPECT_TRUE(style->isWriteEnabled());
  };
  EXPECT_EQ(styles->remove(L"DOUBLE"), KdStatus::ok);
  EXPECT_EQ(styles->setName(L"standard", L"STANDARD"), KdStatus::ok) << "another case";
  EXPECT_EQ(styles->setName(L"Standard", L"Double"), KdStatus::ok);
  add(*styles, L"NEW");
  add(*groups, L"FIRST");
  database().closeAll();
  EXPECT_FALSE(open<KdDbMlineStyle>(0x19)->isErased()) << "the named object stays as long as the command runs";
  database().flush();
  EXPECT_THAT(difference(before, textOfRecord(0x17)),
              ElementsAre("-3 Standard", "+3 Double", "-3 DOUBLE", "-350 019", "+3 NEW", "+350 FFFF"));
  EXPECT_THAT(difference(beforeGroups, textOfRecord(0xD)), ElementsAre("+3 FIRST", "+350 10000"));
}

TEST_F(DictionaryTest, RefusesWhatItCannotTake) {
  KdDbMline mline;
  KdDbMlineStyle style;
  KdDbObjectId made;
  auto* styles = open<KdDbDictionary>(0x17, KdOpenMode::forWrite);
  EXPECT_EQ(styles->setAt(L"X", nullptr, made), KdStatus::nullPointer);
  EXPECT_EQ(styles->setAt(L"", &style, made), KdStatus::invalidInput);
  EXPECT_EQ(styles->setAt(L"X", &mline, made), KdStatus::wrongClass);
  EXPECT_EQ(styles->setName(L"Standard", L"double"), KdStatus::duplicateKey);
  EXPECT_EQ(styles->setName(L"Standard", L""), KdStatus::invalidInput);
  EXPECT_EQ(styles->remove(L"X"), KdStatus::keyNotFound);
  styles->close();
  EXPECT_EQ(styles->setAt(L"X", &style, made), KdStatus::notOpen);
  EXPECT_EQ(styles->remove(L"DOUBLE"), KdStatus::notOpen);
  EXPECT_EQ(styles->setName(L"DOUBLE", L"X"), KdStatus::notOpen);
  EXPECT_TRUE(made.isNull());
  EXPECT_EQ(style.database(), nullptr);
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(DictionaryTest, PathsLeadFromTheRoot) {
  const auto find = [&](const std::vector<std::wstring_view>& path) { return database().findInDictionary(path); };
  EXPECT_EQ(find({L"acad_mlinestyle", L"standard"}), database().file().find(0x18));
  EXPECT_EQ(find({L"NONE", L"STANDARD"}), dxf::kNoRecord);
  EXPECT_EQ(find({L"ACAD_MLINESTYLE", L"STANDARD", L"DEEPER"}), dxf::kNoRecord);
  open<KdDbDictionary>(0x17, KdOpenMode::forWrite)->setName(L"Standard", L"PLAIN");
  EXPECT_EQ(find({L"ACAD_MLINESTYLE", L"PLAIN"}), database().file().find(0x18)) << "before the change is written";
}

}  // namespace
}  // namespace torva::test

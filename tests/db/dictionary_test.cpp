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

TEST_F(DictionaryTest, FindsEntriesIgnoringCase) {
  const auto* styles = open<KdDbDictionary>(0x17);
  EXPECT_EQ(styles->numEntries(), 2);
  EXPECT_TRUE(styles->has(L"STANDARD"));
  EXPECT_FALSE(styles->has(L"STAND"));
  KdDbObjectId found;
  EXPECT_EQ(styles->getAt(L"double", found), KdStatus::ok);
  EXPECT_EQ(found, id(0x19));
  EXPECT_EQ(styles->getAt(L"nothing", found), KdStatus::keyNotFound);
  EXPECT_EQ(found, id(0x19));
  std::wstring name = L"untouched";
  EXPECT_EQ(styles->nameAt(id(0xA0), name), KdStatus::keyNotFound);
  EXPECT_EQ(name, L"untouched");
  EXPECT_EQ(styles->nameAt(id(0x18), name), KdStatus::ok);
  EXPECT_EQ(name, L"Standard");
}

TEST_F(DictionaryTest, IteratesInTheOrderOfTheFile) {
  std::vector<std::pair<std::wstring, KdDbObjectId>> entries;
  for (auto entry = open<KdDbDictionary>(0x17)->newIterator(); !entry->done(); entry->next())
    entries.emplace_back(entry->name(), entry->objectId());
  EXPECT_THAT(entries, ElementsAre(std::pair(L"Standard", id(0x18)), std::pair(L"DOUBLE", id(0x19))));
}

using Change = std::function<KdStatus(KdDbDictionary&)>;

Change renames(const wchar_t* former, const wchar_t* name) {
  return [=](KdDbDictionary& dictionary) { return dictionary.setName(former, name); };
}

Change removes(const wchar_t* name) {
  return [=](KdDbDictionary& dictionary) { return dictionary.remove(name); };
}

TEST_F(DictionaryTest, ChangesTheGroupsOfTheChangedEntriesAlone) {
  const Change removesAndRenames = [](KdDbDictionary& dictionary) {
    dictionary.remove(L"STANDARD");
    return dictionary.setName(L"DOUBLE", L"Standard");
  };
  const struct {
    const char* name;
    Change change;
    KdStatus status;
    std::vector<std::string> groups;
  } cases[] = {
      {"rename", renames(L"standard", L"Plain"), KdStatus::ok, {"-3 Standard", "+3 Plain"}},
      {"another case", renames(L"STANDARD", L"STANDARD"), KdStatus::ok, {"-3 Standard", "+3 STANDARD"}},
      {"rename to a name there is", renames(L"Standard", L"double"), KdStatus::duplicateKey, {}},
      {"rename what is not there", renames(L"X", L"Y"), KdStatus::keyNotFound, {}},
      {"rename to nothing", renames(L"Standard", L""), KdStatus::invalidInput, {}},
      {"remove the first", removes(L"STANDARD"), KdStatus::ok, {"-3 Standard", "-350 18"}},
      {"remove the last", removes(L"DOUBLE"), KdStatus::ok, {"-3 DOUBLE", "-350 019"}},
      {"remove what is not there", removes(L"X"), KdStatus::keyNotFound, {}},
      {"remove and rename", removesAndRenames, KdStatus::ok, {"-350 18", "-3 DOUBLE", "-350 019", "+350 19"}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    database().beginUndoStep(L"");
    auto* styles = open<KdDbDictionary>(0x17, KdOpenMode::forWrite);
    const std::string before = textOfRecord(0x17);
    EXPECT_EQ(row.change(*styles), row.status);
    styles->close();
    EXPECT_FALSE(open<KdDbMlineStyle>(0x19)->isErased()) << "the named object stays as long as the command runs";
    database().closeAll();
    database().flush();
    EXPECT_EQ(difference(before, textOfRecord(0x17)), row.groups);
    database().undo();
  }
}

TEST_F(DictionaryTest, NewEntriesComeBehindTheLastOneOrReplaceTheirName) {
  const auto add = [&](dxf::Handle dictionary, const wchar_t* name) {
    auto* styles = open<KdDbDictionary>(dictionary, KdOpenMode::forWrite);
    auto* style = new KdDbMlineStyle;
    KdDbObjectId made;
    EXPECT_EQ(styles->setAt(name, style, made), KdStatus::ok);
    EXPECT_EQ(styles->setAt(L"twice", style, made), KdStatus::alreadyInDatabase);
    EXPECT_TRUE(style->isWriteEnabled());
    style->close();
    styles->close();
  };
  const std::string styles = textOfRecord(0x17), groups = textOfRecord(0xD);
  add(0x17, L"STANDARD");
  add(0x17, L"NEW");
  add(0xD, L"FIRST");
  database().flush();
  EXPECT_THAT(difference(styles, textOfRecord(0x17)), ElementsAre("-350 18", "+350 FFFF", "+3 NEW", "+350 10000"));
  EXPECT_THAT(difference(groups, textOfRecord(0xD)), ElementsAre("+3 FIRST", "+350 10001"));
}

TEST_F(DictionaryTest, RefusesWhatItCannotTake) {
  KdDbMline mline;
  KdDbMlineStyle style;
  KdDbObjectId made;
  auto* styles = open<KdDbDictionary>(0x17, KdOpenMode::forWrite);
  EXPECT_EQ(styles->setAt(L"X", nullptr, made), KdStatus::nullPointer);
  EXPECT_EQ(styles->setAt(L"", &style, made), KdStatus::invalidInput);
  EXPECT_EQ(styles->setAt(L"X", &mline, made), KdStatus::wrongClass);
  styles->close();
  EXPECT_EQ(styles->setAt(L"X", &style, made), KdStatus::notOpen);
  EXPECT_EQ(styles->remove(L"DOUBLE"), KdStatus::notOpen);
  EXPECT_EQ(styles->setName(L"DOUBLE", L"X"), KdStatus::notOpen);
  EXPECT_TRUE(made.isNull());
  EXPECT_EQ(style.database(), nullptr);
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(DictionaryTest, PathsLeadFromTheRoot) {
  using Path = std::vector<std::wstring_view>;
  const auto find = [&](const Path& path) { return database().findInDictionary(path); };
  const dxf::DrawingFile& file = database().file();
  EXPECT_EQ(find({}), file.find(0xC));
  EXPECT_EQ(find({L"acad_mlinestyle", L"standard"}), file.find(0x18));
  EXPECT_EQ(find({L"ACAD_MLINESTYLE", L"NONE"}), dxf::kNoRecord);
  EXPECT_EQ(find({L"NONE", L"STANDARD"}), dxf::kNoRecord);
  EXPECT_EQ(find({L"ACAD_MLINESTYLE", L"STANDARD", L"DEEPER"}), dxf::kNoRecord);
  open<KdDbDictionary>(0x17, KdOpenMode::forWrite)->setName(L"Standard", L"PLAIN");
  EXPECT_EQ(find({L"ACAD_MLINESTYLE", L"PLAIN"}), file.find(0x18)) << "before the change is written";
}

}  // namespace
}  // namespace torva::test

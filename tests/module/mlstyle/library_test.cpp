#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/text.h"
#include "mlstyle/library/record_reader.h"
#include "mlstyle/library/style_library.h"
#include "module/mlstyle/style_host.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A record in short: its lines with blanks between, "_" for the blank in front of a value.
std::string lines(std::string shortForm) {
  for (char& c : shortForm) c = c == ' ' ? '\n' : c == '_' ? ' ' : c;
  return shortForm + "\n";
}

const std::string kTwo = lines(
    "MLSTYLE 2 _TWO 70 _16 3 _two 62 _1 420 _9 51 _45.0 52 _60 71 _2 49 _1.5 62 _3 6 _BYLAYER 49 _-1 62 _4 6 _BYBLOCK 0");
const std::string kOneInShort = "MLSTYLE 2 _ONE 70 _1 3 _one 62 _2 71 _1 49 _7 62 _5 6 _BYLAYER 0",
                  kOne = lines(kOneInShort);

class LibraryTest : public StyleHost {
 protected:
  bool load(const std::string& content, const wchar_t* name = L"TWO") {
    folder.write("test.mln", content);
    return loadFromLibrary(path("test.mln"), name, addStyle(name, dictionaryId()));
  }
  static KdCmColor colorOf(const KdDbMlineStyle& style, int element) {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId linetype;
    style.getElementAt(element, offset, color, linetype);
    return color;
  }
  std::string savedRecord(const wchar_t* name) {
    std::filesystem::remove(folder.path("one.mln"));
    EXPECT_TRUE(saveToLibrary(path("one.mln"), name, dictionaryId()));
    return folder.read("one.mln");
  }
};

TEST_F(LibraryTest, RecordsAreWrittenLineByLine) {
  run("DIMZIN 8\n");
  KdCmColor book = KdCmColor::trueColor(0x0000FF);
  book.setNamesFromDictionaryKey(L"BOOK$SEA");
  put(L"Ä 100%d", L"two\nlines", kStyleStartRoundCap | kStyleFilled, {{1, 0, L"DASHED"}, {-0.25, 7}},
      [&](KdDbMlineStyle& style) {
        style.setElement(1, -0.25, book, {});
        style.setFillColor(book);
        style.setStartAngle(22.5 * std::numbers::pi / 180);
      });
  const std::string before = drawing().file().toBytes();
  EXPECT_EQ(savedRecord(L"Ä 100%d"),
            "MLSTYLE\n2\n Ä 100%d\n70\n 1\n3\n two lines\n62\n 5\n420\n 3254780159\n430\n BOOK$SEA\n51\n 22.50000000000000\n"
            "52\n 90.00000000000000\n71\n 2\n49\n 1.00000000000000\n62\n 0\n6\n DASHED\n49\n -0.25000000000000\n62\n 5\n"
            "420\n -1040187137\n430\n BOOK$SEA\n6\n ByLayer\n0\n");
  EXPECT_EQ(drawing().file().toBytes(), before) << "DIMZIN is as it was";
}

TEST_F(LibraryTest, AnElementHasAColorBookLineWhereTheFillHas) {
  struct Row {
    std::wstring key;
    bool isWritten;
  };
  const std::wstring longest(2048 - 2, L'k');
  for (const Row& row : {Row{L"", false}, Row{L"B$" + longest, true}, Row{L"BO$" + longest, false}}) {
    put(L"TWO", L"", 0, {{1}}, [&](KdDbMlineStyle& style) {
      KdCmColor fill, color = KdCmColor::byIndex(3);
      fill.setNamesFromDictionaryKey(row.key);
      color.setNamesFromDictionaryKey(L"BOOK$SEA");
      style.setFillColor(fill);
      style.setElement(0, 1, color, {});
    });
    const std::string line = "\n430\n " + kdutUtf8FromWide(row.key), record = savedRecord(L"TWO");
    EXPECT_EQ(record.find("\n430\n") != record.npos, row.isWritten);
    EXPECT_EQ(record.find(line + "\n6\n") != record.npos, row.isWritten);
    EXPECT_EQ(record.find(line + "\n51\n") != record.npos, row.isWritten);
  }
}

TEST_F(LibraryTest, ColorsAreReadLineByLine) {
  struct Case {
    const char* lines;
    int fill;
    const wchar_t *fillKey, *elementKey;  // the blank of an element's is part of it
  };
  for (const Case& row : {Case{"62 _3 71 _1 49 _1 62 _1 6", 3, L"", L""},
                          {"430 _BOOK$SEA 71 _1 49 _1 62 _1 430 _B$RED 6", 5, L"BOOK$SEA", L" B$RED"},
                          {"99 _3 71 _1 49 _1 62 _1 420 _7 430 _B$R$D 6", 5, L"", L""}}) {
    SCOPED_TRACE(row.lines);
    put(L"TWO", L"", 0, {{2}}, [&](KdDbMlineStyle& style) { style.setFillColor(KdCmColor::byIndex(5)); });
    ASSERT_TRUE(load(lines(std::string("MLSTYLE 2 _TWO ") + row.lines + " _BYLAYER 0")));
    const COpenedObject<KdDbMlineStyle> style(find(L"TWO"), KdOpenMode::forRead);
    EXPECT_EQ(style->fillColor().color(), KdCmColor::byIndex(row.fill).color());
    EXPECT_EQ(style->fillColor().dictionaryKey(), row.fillKey);
    EXPECT_EQ(colorOf(*style.Get(), 0).dictionaryKey(), row.elementKey);
  }
}

TEST_F(LibraryTest, TheFirstFlagAloneIsWritten) {
  const int flags[] = {1, 2, 16, 32, 64, 256, 512, 1024};
  int all = 0;
  for (int i = 7; i >= 0; --i) {
    all |= flags[i];
    put(L"F", L"", all, {{1}});
    EXPECT_THAT(savedRecord(L"F"), HasSubstr("70\n " + std::to_string(flags[i]) + "\n3")) << all;
  }
}

TEST_F(LibraryTest, SavingReplacesTheRecordInItsPlace) {
  put(L"TWO", L"", 0, {{3}});
  const std::string record = savedRecord(L"TWO");
  const std::string two = lines("mlstyle 2 _two 3 _x 0");
  const struct {
    const char* name;
    std::string before, after;
  } cases[] = {
      {"new", "", record},
      {"between", kOne + two + two, kOne + record + two},
      {"without an end", kOne + lines("MLSTYLE 2 _TWO 3"), kOne + record},
      {"blanks around its name", kOne + lines("MLSTYLE 2 __two_ 0"), kOne + record},
      {"behind the begin of another", lines("MLSTYLE MLSTYLE 2 _two 0"), "MLSTYLE\n" + record},
      {"where a name should stand", lines("MLSTYLE 2 MLSTYLE 2 _two 0"), "MLSTYLE\n2\n" + record},
      {"first, behind a byte order mark", "\xEF\xBB\xBF" + two + kOne, "\xEF\xBB\xBF" + record + kOne},
      {"last line without its end", kOne + "\r\nend", kOne + "\r\nend\n" + record},
      {"carriage returns", "MLSTYLE\r\n2\r\n TWO\r\n0\r\n", "MLSTYLE\r\n2\r\n TWO\r\n0\r\n" + record},
  };
  for (const auto& row : cases) {
    folder.write("test.mln", row.before);
    EXPECT_TRUE(saveToLibrary(path("test.mln"), L"TWO", dictionaryId()));
    EXPECT_EQ(folder.read("test.mln"), row.after) << row.name;
  }
  folder.write("test.mln", kOne);
  EXPECT_FALSE(saveToLibrary(path("test.mln"), L"NONE", dictionaryId()));
  EXPECT_FALSE(saveToLibrary(path("test.mln"), L"TWO", {}));
  EXPECT_FALSE(saveToLibrary(path("bin"), L"TWO", dictionaryId()));
  EXPECT_FALSE(saveToLibrary(path("no/test.mln"), L"TWO", dictionaryId()));
  EXPECT_EQ(folder.read("test.mln"), kOne);
}

TEST(LibraryList, HasTheNamesOfAllRecords) {
  EXPECT_THAT(styleNames(kTwo + kOne + kTwo), ElementsAre(L"TWO", L"ONE", L"TWO"));
  EXPECT_THAT(styleNames("\xEF\xBB\xBF"
                         "2\r\n \t W\xC3\xA4nde 1 \r\nx\n2\n2\n2\n\n2\n"),
              ElementsAre(L"W\u00e4nde 1", L"2", L""));
  const std::string piece(2048, 'x');
  EXPECT_THAT(styleNames(piece + "2\n N\n" + piece + "\n2\n M\n"), ElementsAre(L"N", L"M"));
}

TEST_F(LibraryTest, RecordsAreReadByTheirLines) {
  ASSERT_TRUE(load("MLSTYLE\n3\nMLSTYLE\n2\n other\n" + kOne + kTwo, L"two"));
  EXPECT_EQ(stored(L"TWO"), L"two 16 bylayer 4500 6000 1.5:bylayer:3 -1:byblock:4");
  const COpenedObject<KdDbMlineStyle> style(find(L"TWO"), KdOpenMode::forRead);
  EXPECT_EQ(style->name(), L"two") << "as it was chosen";
  EXPECT_EQ(style->fillColor().color(), 0x90000u) << "the first digit, red and blue exchanged";
}

TEST_F(LibraryTest, OddRecordsAreReadAsTheyStand) {
  const std::string head = "MLSTYLE 2 _TWO ", plain = "71 _1 49 _1 62 _1 6 _BYLAYER 0";
  const std::wstring plus = L" 0.5:bylayer:bylayer", minus = L" -0.5:bylayer:bylayer", one = L" 1:bylayer:1";
  const struct {
    const char* name;
    std::string content;  // in short
    bool isFound;
    std::wstring elements;
  } cases[] = {
      {"carriage returns", "MLSTYLE\r 2\r _TWO\r 71\r _1\r", false, plus + minus},
      {"ends in its name", "MLSTYLE 2", false, plus + minus},
      {"ends in a group", head + "71", true, plus + minus},
      {"no elements", head + "71 _0 49 _1 62 _1 6 _BYLAYER 0", true, L""},
      {"fewer than it says", head + "71 _3 49 _1 62 _1 6 _BYLAYER 0", true, plus + plus + minus},
      {"fewer, with a record behind", head + "71 _2 49 _1 62 _1 6 _BYLAYER 0 " + kOneInShort, true, L" 7:bylayer:5" + one},
      {"more than it says", head + "71 _1 49 _1 62 _1 6 _BYLAYER 49 _2 62 _1 6 _BYLAYER 0", true, one},
      {"blanks around its name", "MLSTYLE 2 __TWO_ " + plain, true, one},
      {"behind the begin of another", "MLSTYLE " + head + plain, true, one},
      {"where a name should stand", "MLSTYLE 2 " + head + plain, true, one},
      {"unknown lines between", "x " + head + "99 _3 71 _1 y 49 _1 62 _1 6 _BYLAYER 0", true, one},
      {"negative true color", head + "71 _1 49 _1 62 _1 420 _-1023406081 6 _BYLAYER 0", true, L" 1:bylayer:0,0,0"},
      {"color out of range", head + "71 _1 49 _+1e0 62 _999 6 _BYLAYER 0", true, L" 1:bylayer:bylayer"},
      {"unknown linetype", head + "71 _1 49 _1x 62 _ 6 _NONE 0", true, L" 1:continuous:byblock"},
      {"no numbers", head + "71 _1 49 _x 62 _x 6 _BYLAYER 0", true, L" 0:bylayer:byblock"},
      {"no number, not finite", head + "71 _1 49 _inf 62 _1 6 _BYLAYER 0", true, L" -0.5:bylayer:1"},
      {"without end", head + "71 _1 49 _1 62 _1 6 _BYLAYER", true, one},
      {"name in a long line", head + std::string(2048, 'x') + plain, true, one},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    drawing().beginUndoStep(L"");
    EXPECT_EQ(load(lines(row.content)), row.isFound);
    EXPECT_EQ(storedElements(L"TWO"), row.elements);
    drawing().undo();
  }
  EXPECT_TRUE(load(lines(head + "71 _2000000000 49 _1 62 _1 6 _BYLAYER 0")));
  EXPECT_LE(storedElements(L"TWO").size(), 1000 * minus.size()) << "a count from a file asks for no memory";
  EXPECT_FALSE(loadFromLibrary(path("none.mln"), L"TWO", find(L"TWO")));
  EXPECT_FALSE(loadFromLibrary(path("bin"), L"TWO", find(L"TWO")));
  EXPECT_FALSE(listLibrary(path("bin")));
}

TEST_F(LibraryTest, AFileThatIsNotUtf8IsOfACodePageAsAWhole) {
  const auto record = [](const std::string& name) {
    return "MLSTYLE\n2\n " + name + "\n3\n \xDF\x81\n71\n 1\n49\n 7\n62\n 5\n6\n BYLAYER\n0\n";
  };
  const auto saved = [&](const std::string& former, const wchar_t* description) {
    put(L"TWO", description, 0, {{1}});
    folder.write("test.mln", former);
    EXPECT_TRUE(saveToLibrary(path("test.mln"), L"TWO", dictionaryId()));
    return folder.read("test.mln");
  };
  const struct {
    const char* page;
    std::string name;
    const wchar_t *listed, *description;
    const char* inUtf8;
  } cases[] = {
      {"ANSI_1252", "W\xE4nde", L"W\u00e4nde", L"\u00df\u0081", "W\xC3\xA4nde"},
      {"ANSI_1251", "\xD1\xF2\xE5", L"\u0421\u0442\u0435", L"\u042f\u0403", "\xD0\xA1\xD1\x82\xD0\xB5"},
      {"ANSI_874", "W\xDB", L"W\u00db", L"\u00df\u0081", "W\xC3\x9B"},
  };
  const std::string drawn = drawing().file().toBytes();
  for (const auto& row : cases) {
    SCOPED_TRACE(row.page);
    std::string bytes = drawn;
    bytes.replace(bytes.find("ANSI_1252"), 9, row.page);
    ASSERT_TRUE(host->openDrawing(folder.write("page.dxf", bytes), torva::dxf::DamagePolicy::refuse));
    ASSERT_TRUE(load(record(row.name), row.listed));
    EXPECT_EQ(stored(row.listed), row.description + std::wstring(L" 0 bylayer 9000 9000 7:bylayer:5"));
    drawing().flush();
    EXPECT_TRUE(torva::isUtf8(drawing().file().toBytes()));
    const std::string inPage = saved(record(row.name), row.listed);
    EXPECT_TRUE(inPage.starts_with(record(row.name)));
    EXPECT_THAT(inPage, HasSubstr("\n3\n " + row.name + "\n"));
    const std::string whole = saved(record(row.name), L"\u4e2d\xdce4");
    EXPECT_TRUE(torva::isUtf8(whole)) << "what the page lacks makes it UTF-8";
    EXPECT_THAT(whole, HasSubstr(std::string("\n2\n ") + row.inUtf8 + "\n"));
    EXPECT_THAT(listLibrary(path("test.mln")).value(), ElementsAre(row.listed, L"TWO"));
  }
  EXPECT_THAT(saved(record("TWO"), L"\u00c3\u00a4"), HasSubstr("\n3\n \xC3\x83\xC2\xA4\n"))
      << "two letters, not the one they would be in UTF-8";
}

TEST_F(LibraryTest, AFileInAFolderThatTakesNoNewOnesIsWritten) {
  put(L"TWO", L"", 0, {{1}});
  const std::string record = savedRecord(L"TWO");
  for (const std::string& former : {kOne, lines("MLSTYLE 2 _TWO 3 _" + std::string(9000, 'x') + " 0")}) {
    folder.write("closed/test.mln", former);
    for (const char* name : {"", "closed"}) ASSERT_EQ(chmod(folder.path(name).c_str(), 0555), 0);
    ASSERT_EQ(chmod(folder.path("closed/test.mln").c_str(), 0666), 0);
    constexpr uid_t kNobody = 65534;
    const uid_t self = geteuid();
    ASSERT_EQ(self == 0 ? seteuid(kNobody) : 0, 0) << "nothing is closed to the superuser";
    const bool isSaved = saveToLibrary(path("closed/test.mln"), L"TWO", dictionaryId());
    const bool isMade = saveToLibrary(path("closed/new.mln"), L"TWO", dictionaryId());
    ASSERT_EQ(seteuid(self), 0);
    for (const char* name : {"", "closed"}) ASSERT_EQ(chmod(folder.path(name).c_str(), 0755), 0);
    EXPECT_TRUE(isSaved && !isMade);
    EXPECT_EQ(folder.read("closed/test.mln"), (former == kOne ? kOne : std::string()) + record);
  }
}

TEST_F(LibraryTest, ALinetypeThatTheDrawingLacksIsWritten) {
  put(L"TWO", L"", 0, {{2, 1, L"HIDDEN"}, {1, 2}});
  drawing().flush();
  std::string bytes = drawing().file().toBytes();
  bytes.replace(bytes.find("HIDDEN"), 6, "RARELY");
  run("OPEN Y \"" + folder.write("lacking.dxf", bytes) + "\"\n");
  put(L"NEXT", L"", 0, {{9, 3}});
  for (const wchar_t* name : {L"TWO", L"NEXT"}) EXPECT_TRUE(saveToLibrary(path("test.mln"), name, dictionaryId()));
  run("NEW Y\n");
  EXPECT_TRUE(load(folder.read("test.mln")));
  EXPECT_EQ(storedElements(L"TWO"), L" 2:hidden:1 1:bylayer:2");
}

TEST_F(LibraryTest, LinetypesComeFromTheDrawingThenFromTheFileOfItsUnits) {
  const auto dashOf = [&](const wchar_t* name) {
    put(L"TWO", L"", 0, {{1, 1, name}});
    double offset = 0;
    KdCmColor color;
    KdDbObjectId id;
    COpenedObject<KdDbMlineStyle>(find(L"TWO"), KdOpenMode::forRead)->getElementAt(0, offset, color, id);
    const COpenedObject<KdDbLinetypeTableRecord> linetype(id, KdOpenMode::forRead);
    return linetype->name() + L' ' + std::to_wstring(linetype->dashLengthAt(0)).substr(0, 4);
  };
  run("MEASUREMENT 0\n");
  EXPECT_EQ(dashOf(L"dashed"), L"DASHED 0.40");
  run("MEASUREMENT 1\n");
  EXPECT_EQ(dashOf(L"Dashed"), L"DASHED 0.40") << "the drawing has it now";
  EXPECT_EQ(dashOf(L"HIDDENX2"), L"HIDDENX2 10.0");
  for (const wchar_t* name : {L"Continuous", L"ByLayer", L"ByBlock"}) EXPECT_EQ(dashOf(name), name + std::wstring(L" 0.00"));
  std::filesystem::remove(folder.path("torvaiso.lin"));
  for (const wchar_t* unknown : {L"none such", L"CENTER"}) EXPECT_EQ(dashOf(unknown), L"Continuous 0.00");
}

TEST_F(LibraryTest, TheInstalledOneLoadsAndIsWhatTheWriterMakesOfIt) {
  const std::wstring installed = path("Support/TORVA.mln");
  const std::vector<std::wstring> names = listLibrary(installed).value();
  EXPECT_EQ(names.size(), 10u);
  for (const std::wstring& name : names) {
    ASSERT_TRUE(loadFromLibrary(installed, name, addStyle(name, dictionaryId())));
    // Of a fill's color the first digit alone is read.
    COpenedObject<KdDbMlineStyle>(find(name), KdOpenMode::forWrite)->setFillColor({});
    EXPECT_TRUE(saveToLibrary(path("new.mln"), name, dictionaryId()));
  }
  EXPECT_EQ(folder.read("new.mln"), folder.read("Support/TORVA.mln"));
  EXPECT_EQ(storedElements(L"WALL-3"), L" 0.5:bylayer:bylayer 0:center:1 -0.5:bylayer:bylayer");
}

}  // namespace

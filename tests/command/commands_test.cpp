#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "test_editor.h"

namespace torva::command {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST(Commands, zoomSetsTheView) {
  const struct {
    const char* script;
    KdGePoint3d center;
    double height;
  } rows[] = {
      {"ZOOM C 30,40 100", {30, 40, 0}, 100},
      {"zoom center 1,2 \"\"", {1, 2, 0}, 20},
      {"ZOOM 2", {5, 5, 0}, 10},
      {"ZOOM 4x", {5, 5, 0}, 5},
      {"ZOOM 0.5X", {5, 5, 0}, 40},
      {"ZOOM W 10,10 30,20", {20, 15, 0}, 20},
      {"ZOOM W 10,10 @10,-20", {15, 0, 0}, 20},
      {"ZOOM W 10,10 ^C", {5, 5, 0}, 20},
      {"ZOOM ^C", {5, 5, 0}, 20},
  };
  for (const auto& row : rows) {
    TestEditor test;
    test.editor.view().set({5, 5, 0}, 20);
    EXPECT_EQ(test.run(row.script), Fault::none) << row.script;
    EXPECT_TRUE(test.editor.view().centerDcs().isEqualTo(row.center)) << row.script;
    EXPECT_DOUBLE_EQ(test.editor.view().height(), row.height) << row.script;
  }
  TestEditor test;
  test.run("ZOOM E");
  EXPECT_TRUE(test.editor.view().centerDcs().isEqualTo({5, 2.5, 0}));
  EXPECT_NEAR(test.editor.view().width(), 10.5, 0.5);
}

TEST(Commands, zoomRefusesWhatIsNoView) {
  for (const char* script : {"ZOOM 0", "ZOOM -2", "ZOOM foo", "ZOOM 1e-320", "ZOOM W 1,1 1,1", "ZOOM X"}) {
    TestEditor test;
    test.editor.view().set({5, 5, 0}, 20);
    EXPECT_EQ(test.run(script), Fault::script) << script;
    EXPECT_EQ(test.faults.size(), 1u) << script;
    EXPECT_EQ(test.editor.view().height(), 20) << script;
  }
}

TEST(Commands, setvarReadsValuesByType) {
  const struct {
    const char* script;
    const wchar_t* variable;
    int value;
    Fault fault;
  } rows[] = {
      {"PICKBOX 7", L"PICKBOX", 7, Fault::none},       {"SETVAR pickbox 8", L"PICKBOX", 8, Fault::none},
      {"PICKBOX \"\"", L"PICKBOX", 3, Fault::none},    {"PICKBOX ^C", L"PICKBOX", 3, Fault::none},
      {"PICKBOX 9999", L"PICKBOX", 3, Fault::script},  {"PICKBOX wide", L"PICKBOX", 3, Fault::script},
      {"SETVAR NOSUCH", L"PICKBOX", 3, Fault::script}, {"ERRNO", L"ERRNO", 0, Fault::none},
  };
  for (const auto& row : rows) {
    TestEditor test;
    test.editor.variables().setInternally(L"PICKBOX", 3);
    EXPECT_EQ(test.run(row.script), row.fault) << row.script;
    EXPECT_EQ(std::get<int>(*test.editor.variables().get(row.variable)), row.value) << row.script;
  }
}

TEST(Commands, listDescribesEntities) {
  TestEditor test;
  EXPECT_EQ(test.run("LIST #2F:0,0\nLIST #30:0,0\nLIST #99:0,0\n"), Fault::none);
  EXPECT_THAT(test.output, HasSubstr(L"MLINE  handle 2F, layer \"0\""));
  EXPECT_THAT(test.output, HasSubstr(L"element 0: at 0, draws 0 to end  [0 0]"));
  EXPECT_THAT(test.output, HasSubstr(L"LINE  handle 30, layer \"0\""));
  EXPECT_THAT(test.output, HasSubstr(L"    11  10.0\n"));
  EXPECT_THAT(test.output, HasSubstr(L"Nothing is there."));
  EXPECT_THAT(test.editor.database().openObjects(), IsEmpty());
  EXPECT_FALSE(test.editor.database().file().isModified());
}

class DrawingCommands : public testing::Test {
 protected:
  void modify() {
    ASSERT_EQ(test.run("ERASE #30:0,0 \"\""), Fault::none);
    ASSERT_TRUE(test.editor.database().file().isModified());
  }

  const TemporaryFolder folder;
  const std::string a = folder.path("a.dxf");
  TestEditor test;
};

TEST_F(DrawingCommands, saveAndOpenAgain) {
  modify();
  EXPECT_EQ(test.run("SAVEAS " + a + "\n"), Fault::none);
  EXPECT_FALSE(test.editor.database().file().isModified());
  EXPECT_EQ(test.run("QSAVE\nNEW\nOPEN " + a + "\n"), Fault::none);
  EXPECT_FALSE(test.editor.hasOpeningFailed());
  EXPECT_EQ(test.editor.database().recordOf(test.editor.database().idOfHandle(0x30)), dxf::kNoRecord);
}

TEST_F(DrawingCommands, aModifiedDrawingIsLeftOnlyWhenConfirmed) {
  modify();
  const db::Database* drawing = &test.editor.database();
  for (const char* script : {"NEW No", "NEW \"\"", "NEW ^C", "OPEN N", "QUIT N"}) {
    EXPECT_EQ(test.run(script), Fault::none) << script;
    EXPECT_EQ(&test.editor.database(), drawing) << script;
    EXPECT_FALSE(test.editor.isQuitRequested()) << script;
  }
  EXPECT_EQ(test.run("NEW Y"), Fault::none);
  EXPECT_FALSE(test.editor.database().file().isModified());
}

TEST_F(DrawingCommands, quitEndsTheRun) {
  EXPECT_EQ(test.run("QUIT\nFOO\n"), Fault::none);
  EXPECT_TRUE(test.editor.isQuitRequested());
}

TEST_F(DrawingCommands, aFailedOpeningKeepsTheDrawingAndIsRemembered) {
  modify();
  EXPECT_EQ(test.run("OPEN Y " + folder.path("missing.dxf")), Fault::drawing);
  EXPECT_TRUE(test.editor.database().file().isModified());
  EXPECT_TRUE(test.editor.hasOpeningFailed());
  EXPECT_EQ(test.run("NEW Y"), Fault::none);
  EXPECT_FALSE(test.editor.hasOpeningFailed());
}

TEST_F(DrawingCommands, whatOthersWroteIsReplacedOnlyWhenConfirmed) {
  ASSERT_EQ(test.run("SAVEAS " + a), Fault::none);
  ASSERT_EQ(test.run("NEW\nSAVEAS " + folder.path("b.dxf")), Fault::none);
  const std::string former = folder.read("a.dxf");
  EXPECT_EQ(test.run("SAVEAS " + a + " No"), Fault::none);
  EXPECT_EQ(folder.read("a.dxf"), former);
  EXPECT_EQ(test.run("SAVEAS " + a + " Yes"), Fault::none);
  const std::string saved = folder.read("a.dxf");
  EXPECT_NE(saved, former);

  folder.write("a.dxf", "another program's");
  EXPECT_EQ(test.run("QSAVE No"), Fault::drawing);
  EXPECT_EQ(folder.read("a.dxf"), "another program's");
  EXPECT_EQ(test.run("QSAVE Yes"), Fault::none);
  EXPECT_EQ(folder.read("a.dxf"), saved);
}

}  // namespace
}  // namespace torva::command

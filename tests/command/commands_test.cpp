#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

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
}

TEST(Commands, zoomExtentsShowsAllThatIsDrawn) {
  TestEditor test;
  test.run("ZOOM E");
  const view::View& view = test.editor.view();
  EXPECT_TRUE(view.centerDcs().isEqualTo({5, 2.5, 0}));
  EXPECT_GE(view.width(), 10);
  EXPECT_LE(view.width(), 11);
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
  DrawingCommands() { std::filesystem::create_directory(m_folder); }
  ~DrawingCommands() override { std::filesystem::remove_all(m_folder); }
  std::string path(const char* name) const { return (m_folder / name).string(); }
  void modify() {
    test.ask = [](Editor& editor) {
      KdDbObject* object = nullptr;
      ASSERT_EQ(editor.database().openObject(object, editor.database().idOfHandle(0x30), KdOpenMode::forWrite, false),
                KdStatus::ok);
      ASSERT_EQ(object->erase(), KdStatus::ok);
      object->close();
    };
    ASSERT_EQ(test.run("ASK"), Fault::none);
    ASSERT_TRUE(test.editor.database().file().isModified());
  }

  TestEditor test;

 private:
  const std::filesystem::path m_folder = std::filesystem::temp_directory_path() / ("drawings-" + std::to_string(::getpid()));
};

TEST_F(DrawingCommands, saveAndOpenAgain) {
  modify();
  EXPECT_EQ(test.run("SAVEAS " + path("a.dxf") + "\n"), Fault::none);
  EXPECT_FALSE(test.editor.database().file().isModified());
  EXPECT_EQ(test.run("QSAVE\nNEW\nOPEN " + path("a.dxf") + "\n"), Fault::none);
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
  EXPECT_EQ(test.run("OPEN Y " + path("missing.dxf")), Fault::drawing);
  EXPECT_TRUE(test.editor.database().file().isModified());
  EXPECT_TRUE(test.editor.hasOpeningFailed());
  EXPECT_EQ(test.run("NEW Y"), Fault::none);
  EXPECT_FALSE(test.editor.hasOpeningFailed());
}

TEST_F(DrawingCommands, anotherFileIsReplacedOnlyWhenConfirmed) {
  ASSERT_EQ(test.run("SAVEAS " + path("a.dxf")), Fault::none);
  ASSERT_EQ(test.run("NEW\nSAVEAS " + path("b.dxf")), Fault::none);
  const auto size = std::filesystem::file_size(path("a.dxf"));
  EXPECT_EQ(test.run("SAVEAS " + path("a.dxf") + " No"), Fault::none);
  EXPECT_EQ(std::filesystem::file_size(path("a.dxf")), size);
  EXPECT_EQ(test.run("SAVEAS " + path("a.dxf") + " Yes"), Fault::none);
  EXPECT_NE(std::filesystem::file_size(path("a.dxf")), size);
}

TEST_F(DrawingCommands, aFileChangedByAnotherProgramIsReplacedOnlyWhenConfirmed) {
  ASSERT_EQ(test.run("SAVEAS " + path("a.dxf")), Fault::none);
  std::ofstream(path("a.dxf"), std::ios::app) << "999\nanother program\n";
  const auto size = std::filesystem::file_size(path("a.dxf"));
  EXPECT_EQ(test.run("QSAVE No"), Fault::drawing);
  EXPECT_EQ(std::filesystem::file_size(path("a.dxf")), size);
  EXPECT_EQ(test.run("QSAVE Yes"), Fault::none);
  EXPECT_NE(std::filesystem::file_size(path("a.dxf")), size);
}

TEST_F(DrawingCommands, saveFailuresAreFaults) {
  EXPECT_EQ(test.run("SAVEAS " + path("no/such/folder.dxf")), Fault::drawing);
  EXPECT_EQ(test.faults.size(), 1u);
}

}  // namespace
}  // namespace torva::command

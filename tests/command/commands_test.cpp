#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "test_editor.h"

namespace torva::command {
namespace {

TEST(DrawingCommands, whatOthersWroteIsReplacedOnlyWhenConfirmed) {
  const TemporaryFolder folder;
  const std::string a = folder.path("a.dxf");
  TestEditor test;
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
  EXPECT_EQ(test.run("OPEN " + folder.path("missing.dxf")), Fault::drawing);
  EXPECT_TRUE(test.editor.hasOpeningFailed());
  EXPECT_EQ(test.run("QSAVE Yes"), Fault::none) << "it is still the drawing that was open";
  EXPECT_EQ(folder.read("a.dxf"), saved);
}

}  // namespace
}  // namespace torva::command

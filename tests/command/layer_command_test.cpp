#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "db/layers.h"
#include "support/drawing_text.h"
#include "test_editor.h"

namespace torva::command {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// An R2000 drawing (or of another version) whose layers say more than the host knows.
std::unique_ptr<db::Database> drawingWithLayers(const std::string& version = "AC1015") {
  return drawingFrom("0 SECTION | 2 HEADER | 9 $ACADVER | 1 " + version + R"(
    9 $CLAYER | 8 0
    9 $HANDLING | 70 0
    0 ENDSEC
    0 SECTION | 2 TABLES
    0 TABLE | 2 LTYPE | 5 5
    0 LTYPE | 5 6 | 2 Dashed
    0 ENDTAB
    0 TABLE | 2 LAYER | 5 2 | 70 3
    0 LAYER | 5 10 | 2 0 | 70 0 | 62      7 | 6 CONTINUOUS | 390 F | 347 E
    0 LAYER | 5 11 | 102 {APP | 62 1 | 102 } | 2 Walls | 70 64 | 62      30 | 420 16711680 | 430 BOOK$Red
      6 CONTINUOUS | 290 0
      1001 APP | 1070 62
    0 LAYER | 5 12 | 2 Roof | 70 65
    0 ENDTAB
    0 ENDSEC
    0 SECTION | 2 ENTITIES
    0 ENDSEC
    0 EOF)");
}

TEST(LayerCommand, changesOnlyWhatItSays) {
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"off walls", {"-62      30", "+62    -30"}},
      {"c green Walls", {"-62      30", "-420 16711680", "-430 BOOK$Red", "+62      3"}},
      {"off Roof", {"+62     -7"}},
      {"t * lo walls", {"-70 64", "+70     68", "-70 65", "+70     64"}},
      {"l dashed ?oof", {"+6 Dashed"}},
      {"set walls", {"-8 0", "+8 Walls"}},
      {"c red \"\"", {"-62      7", "+62      1"}},
      {"off 0 y", {"-62      7", "+62     -7"}},
      {"new Walls", {}},
      {"n Door",
       {"-70 3", "+70      4", "+0 LAYER", "+5 13", "+330 2", "+100 AcDbSymbolTableRecord", "+100 AcDbLayerTableRecord",
        "+2 Door", "+70      0", "+62      7", "+6 Continuous", "+370     -3", "+390 F", "+347 E"}},
  };
  for (const auto& [script, changes] : rows) {
    TestEditor test;
    test.editor.setDatabase(drawingWithLayers());
    const std::string before = test.editor.database().file().toBytes();
    EXPECT_EQ(test.run(std::string("-LAYER ") + script + " \"\""), Fault::none) << script;
    EXPECT_EQ(test::difference(before, test.editor.database().file().toBytes()), changes) << script;
  }
  TestEditor test;
  test.editor.setDatabase(drawingWithLayers("AC1018"));
  const std::string before = test.editor.database().file().toBytes();
  EXPECT_EQ(test.run("LAYER c 0,255,0 Roof \"\""), Fault::none);
  EXPECT_THAT(test::difference(before, test.editor.database().file().toBytes()),
              ElementsAre("+62      3", "+420     65280"));
  EXPECT_EQ(db::readLayers(test.editor.database()).at(2).color, KdCmColor::trueColor(0x00FF00));
}

}  // namespace
}  // namespace torva::command

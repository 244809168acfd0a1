#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "db/mline_styles.h"
#include "db/new_entity.h"
#include "test_editor.h"

namespace torva::command {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A command line on a new drawing.
class DrawCommands : public testing::Test {
 protected:
  DrawCommands() { begin(); }
  void begin() {
    test.editor.beginNewDrawing();
    m_count = drawing().file().recordCount();
  }
  db::Database& drawing() { return test.editor.database(); }

  /// The records made since begin(), erased ones left out.
  std::vector<dxf::RecordId> added() {
    std::vector<dxf::RecordId> records;
    for (dxf::RecordId r = m_count; r < drawing().file().recordCount(); ++r) {
      if (!drawing().file().isErased(r)) records.push_back(r);
    }
    return records;
  }

  /// Type and real numbers of each of them.
  std::vector<std::string> addedShapes() {
    std::vector<std::string> shapes;
    for (const dxf::RecordId record : added()) {
      std::ostringstream shape;
      shape << drawing().file().typeName(record);
      for (const dxf::Group& group : drawing().file().groups(record)) {
        if (dxf::valueKind(group.code) == dxf::ValueKind::real)
          shape << ' ' << std::round(group.realOr(-1) * 1e9) / 1e9 + 0.0;
      }
      shapes.push_back(shape.str());
    }
    return shapes;
  }

  TestEditor test;

 private:
  dxf::RecordId m_count = 0;
};

TEST_F(DrawCommands, linesAndCircles) {
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"LINE 1,2 4,6,3 \"\"", {"LINE 1 2 0 4 6 3"}},
      {"LINE 0,0 10,0 @0,5 c", {"LINE 0 0 0 10 0 0", "LINE 10 0 0 10 5 0", "LINE 10 5 0 0 0 0"}},
      {"LINE 0,0 10,0 10,5 0,0 c", {"LINE 0 0 0 10 0 0", "LINE 10 0 0 10 5 0", "LINE 10 5 0 0 0 0"}},
      {"LINE 0,0 9,9 u u 5,0 @ @2<90 ^C", {"LINE 0 0 0 5 0 0", "LINE 5 0 0 5 2 0"}},
      {"LINE 0,0 3,0 \"\" LINE \"\" 3,3 \"\"", {"LINE 0 0 0 3 0 0", "LINE 3 0 0 3 3 0"}},
      {"LINE 0,0 c 1,1 \"\"", {"LINE 0 0 0 1 1 0"}},
      {"ELEVATION 2 LINE 0,0 1,0 \"\" CIRCLE 1,1 0.5", {"LINE 0 0 2 1 0 2", "CIRCLE 1 1 2 0.5"}},
      {"CIRCLE 1,2 3", {"CIRCLE 1 2 0 3"}},
      {"CIRCLE 1,2 0 -1 \"\" 4,6", {"CIRCLE 1 2 0 5"}},
      {"ELEVATION 2 CIRCLE 0,0,5 3,4", {"CIRCLE 0 0 5 5"}},
      {"CIRCLE 1,2 d 3", {"CIRCLE 1 2 0 1.5"}},
      {"CIRCLE 2p 1,1 @4,0", {"CIRCLE 3 1 0 2"}},
      {"CIRCLE 3p 1000005,0 1000000,5 999995,0,9", {"CIRCLE 1e+06 0 0 5"}},
      {"UCS 10,0 UCS Z 90 LINE 0,0 1,2 \"\" CIRCLE 1,2 3", {"LINE 10 0 0 8 1 0", "CIRCLE 8 1 0 3"}},
      {"UCS Z 10 CIRCLE 0,0 1", {"CIRCLE 0 0 0 1"}},
  };
  for (const auto& [script, shapes] : rows) {
    begin();
    EXPECT_EQ(test.run(script), Fault::none) << script;
    EXPECT_EQ(addedShapes(), shapes) << script;
  }
}

TEST_F(DrawCommands, whatIsNoCircleIsAFault) {
  for (const char* script :
       {"CIRCLE 3p 0,0 1,1 3,3", "CIRCLE 3p 0,0 0,0 3,3", "CIRCLE 2p 1,1 1,1", "CIRCLE 2p -1e308,0 1e308,0"}) {
    begin();
    EXPECT_EQ(test.run(script), Fault::script) << script;
    EXPECT_THAT(addedShapes(), IsEmpty()) << script;
  }
  EXPECT_EQ(test.faults.size(), 4u);
}

TEST_F(DrawCommands, aCircleInATiltedPlaneHasItsNormal) {
  test.editor.variables().setInternally(L"UCSXDIR", KdGePoint3d{0, 1, 0});
  test.editor.variables().setInternally(L"UCSYDIR", KdGePoint3d{0, 0, 1});
  test.run("CIRCLE 1,2 3");
  EXPECT_THAT(addedShapes(), ElementsAre("CIRCLE 1 2 0 3 1 0 0"));
}

TEST_F(DrawCommands, newEntitiesGetTheCurrentProperties) {
  test.run("LAYER M WALLS \"\" CECOLOR 3 CELTYPE BYBLOCK CELTSCALE 2 CELWEIGHT 50 LINE 0,0 1,0 \"\" MLINE 0,0 1,0 \"\"");
  const auto records = added();
  ASSERT_EQ(records.size(), 3u);
  for (const dxf::RecordId record : {records[1], records[2]}) {
    const db::EntityProperties properties = db::readEntityProperties(drawing().file(), record);
    EXPECT_EQ(properties, (db::EntityProperties{L"WALLS", L"BYBLOCK", KdCmColor::byIndex(3), 2, 50}));
  }
}

TEST_F(DrawCommands, multilines) {
  // Vertices, each with the two elements' distances along its miter.
  const std::string line = "0 0 0: 0 -1  10 0 0: 0 -1";
  const std::string corner = "0 0 0: 0 -1  10 0 0: 0 -1.41421  10 10 0: 0 -1";
  const std::string square = "closed  0 0 0: 0 -1.41421  10 0 0: 0 -1.41421  10 10 0: 0 -1.41421  0 10 0: 0 -1.41421";
  const struct {
    const char* name;
    const char* script;
    std::string drawn;
  } rows[] = {
      {"top", "0,0 10,0 10,10 \"\"", corner},
      {"zero", "J Z 0,0 10,0 10,10 \"\"", "0 0 0: 0.5 -0.5  10 0 0: 0.707107 -0.707107  10 10 0: 0.5 -0.5"},
      {"bottom, scaled", "J B S 3 0,0 10,0 \"\"", "0 0 0: 3 0  10 0 0: 3 0"},
      {"options kept on Enter", "J \"\" S \"\" ST \"\" 0,0 10,0 \"\"", line},
      {"closed", "0,0 10,0 10,10 0,10 C", square},
      {"closed from the first point", "0,0 10,0 10,10 0,10 0,0 C", square},
      {"undone", "0,0 5,5 u u 7,7 u 10,0 9,9 u 10,10 \"\"", corner},
      {"equal points", "0,0 0,0 10,0 @ 10,10 10,10,5 \"\"", corner},
      {"straight back", "0,0 10,0 4,0 4,1e-9 10,10 \"\"", corner},
      {"straight back to the start", "0,0 5,0 10,0 C \"\"", "0 0 0: 0 -1  5 0 0: 0 -1  10 0 0: 0 -1"},
      {"turned plane", "^C UCS 10,0 UCS Z 90 ELEVATION 3 MLINE 0,10 0,0 \"\"", "0 0 3: 0 -1  10 0 3: 0 -1"},
  };
  for (const auto& row : rows) {
    begin();
    ASSERT_EQ(test.run(std::string("MLINE ") + row.script), Fault::none) << row.name;
    ASSERT_EQ(added().size(), 1u) << row.name;
    const db::MlineData& mline = drawing().mline(added()[0]);
    std::ostringstream drawn;
    drawn << (mline.isClosed ? "closed" : "");
    for (const db::MlineVertex& vertex : mline.vertices) {
      drawn << "  " << vertex.position.x + 0.0 << ' ' << vertex.position.y << ' ' << vertex.position.z << ':';
      for (const KdMLSegment& element : vertex.elements.toVector()) {
        ASSERT_THAT(element.elementParameters, ElementsAre(testing::_, 0)) << row.name;
        EXPECT_THAT(element.areaFillParameters, IsEmpty()) << row.name;
        drawn << ' ' << element.elementParameters[0];
      }
    }
    EXPECT_EQ(drawn.str(), (mline.isClosed ? "" : "  ") + row.drawn) << row.name;
  }
}

TEST_F(DrawCommands, standardIsMadeWhereItIsMissing) {
  const std::string root = "0 SECTION | 2 OBJECTS\n0 DICTIONARY | 5 C | 330 0 | 100 AcDbDictionary\n",
                    styles = "3 ACAD_MLINESTYLE | 350 D\n0 DICTIONARY | 5 D | 330 C | 100 AcDbDictionary\n";
  const struct {
    const char* name;
    std::string objects;
    bool isDrawn;
  } rows[] = {
      {"no dictionary of styles", root + "0 ENDSEC", true},
      {"an empty dictionary", root + styles + "0 ENDSEC", true},
      {"a style without elements", root + styles + "3 Standard | 350 E\n0 MLINESTYLE | 5 E | 2 X\n0 ENDSEC", false},
      {"no objects", "", false},
  };
  for (const auto& row : rows) {
    test.editor.setDatabase(drawingFrom(
        "0 SECTION | 2 HEADER | 9 $ACADVER | 1 AC1015 | 9 $CMLSTYLE | 2 GONE\n0 ENDSEC\n0 SECTION | 2 ENTITIES\n0 ENDSEC\n" +
        row.objects + "\n0 EOF"));
    const std::string before = drawing().file().toBytes();
    EXPECT_EQ(test.run("MLINE 0,0 10,0 \"\""), row.isDrawn ? Fault::none : Fault::script) << row.name;
    EXPECT_EQ(drawing().file().isModified(), row.isDrawn) << row.name;
    if (row.isDrawn) {
      const dxf::RecordId style = db::findMlineStyle(drawing(), L"Standard");
      ASSERT_NE(style, dxf::kNoRecord) << row.name;
      EXPECT_EQ(drawing().mlineStyle(style).elements.size(), 2u) << row.name;
    }
    drawing().undo();
    EXPECT_EQ(drawing().file().toBytes(), before) << row.name;
  }
}

/// Every command with answers to all of its prompts.
constexpr const char* kDialogues[] = {
    "LINE 0,0 1,0 1,1 u 2,2 c",
    "CIRCLE 1,1 d 3",
    "CIRCLE 2p 0,0 1,0",
    "CIRCLE 3p 0,0 1,0 0,1",
    "MLINE j z s 2 st ? standard 0,0 1,0 1,1 u u u 2,0 2,2 0,2 c",
    "UCS o 1,2",
    "UCS z 30",
    "UCS 3,4",
    "UCS w",
    "UCS p",
    "LAYER n A,B m C s 0 off C,0 yes on * c red A l ? continuous B f A t * lo * u A ? * \"\"",
};

TEST_F(DrawCommands, cancelsAnywhereAndIsTakenBackToTheLastByte) {
  const std::string before = drawing().file().toBytes();
  for (const std::string dialogue : kDialogues) {
    std::size_t prompts = 0;
    for (std::size_t end = dialogue.find(' '); end != std::string::npos; end = dialogue.find(' ', end + 1), ++prompts) {
      const std::string script = dialogue.substr(0, end) + " ^C";
      EXPECT_EQ(test.run(script), Fault::none) << script;
      EXPECT_THAT(drawing().openObjects(), IsEmpty()) << script;
      while (drawing().undo()) continue;
      EXPECT_EQ(drawing().file().toBytes(), before) << script;
    }
    EXPECT_GT(prompts, 0u);
    EXPECT_EQ(test.run(dialogue), Fault::none) << dialogue;
    const std::string after = drawing().file().toBytes();
    const bool isTakenBack = drawing().undo().has_value();
    EXPECT_EQ(drawing().file().toBytes(), before) << dialogue;
    if (isTakenBack) drawing().redo();
    EXPECT_EQ(drawing().file().toBytes(), after) << dialogue;
    while (drawing().undo()) continue;
  }
  EXPECT_FALSE(drawing().file().isModified());
  EXPECT_THAT(test.faults, IsEmpty());
}

TEST_F(DrawCommands, userCoordinates) {
  const auto point = [&](const wchar_t* name) { return std::get<KdGePoint3d>(*test.editor.variables().get(name)); };
  const struct {
    const char* script;
    KdGePoint3d origin, x, y, last;
  } rows[] = {
      {"UCS 5,6,7", {5, 6, 7}, {1, 0, 0}, {0, 1, 0}, {5, 6, 7}},
      {"UCS Z \"\"", {5, 6, 7}, {0, 1, 0}, {-1, 0, 0}, {5, 6, 7}},
      {"UCS O 1,2", {3, 7, 7}, {0, 1, 0}, {-1, 0, 0}, {3, 7, 7}},
      {"UCS Z 90", {3, 7, 7}, {-1, 0, 0}, {0, -1, 0}, {3, 7, 7}},
      {"UCS P", {3, 7, 7}, {0, 1, 0}, {-1, 0, 0}, {3, 7, 7}},
      {"UCS P UCS P", {5, 6, 7}, {1, 0, 0}, {0, 1, 0}, {3, 7, 7}},
      {"UCS Z -450", {5, 6, 7}, {0, -1, 0}, {1, 0, 0}, {3, 7, 7}},
      {"UCS W", {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {3, 7, 7}},
  };
  const std::string before = drawing().file().toBytes();
  for (const auto& row : rows) {
    EXPECT_EQ(test.run(row.script), Fault::none) << row.script;
    EXPECT_TRUE(point(L"UCSORG").isEqualTo(row.origin, {0, 0})) << row.script;
    EXPECT_TRUE(point(L"UCSXDIR").isEqualTo(row.x, {0, 0})) << row.script << ": quarter turns are exact";
    EXPECT_TRUE(point(L"UCSYDIR").isEqualTo(row.y, {0, 0})) << row.script;
    EXPECT_TRUE(test.editor.toWorld(point(L"LASTPOINT")).isEqualTo(row.last)) << row.script;
  }
  EXPECT_EQ(drawing().file().toBytes(), before) << "back in the world's";
  test.run("NEW UCS P");
  EXPECT_THAT(test.output, HasSubstr(L"There is no previous user coordinate system."));
}

}  // namespace
}  // namespace torva::command

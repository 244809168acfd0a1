#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "command/selection.h"
#include "command/selection_summary.h"
#include "support/drawing_text.h"
#include "test_editor.h"

namespace torva::command {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Two lines, an old polyline with vertices on its layer and on another, and two multilines, the second on a locked layer.
std::unique_ptr<db::Database> drawingWithLooks(const std::string& version) {
  const auto mline = [](const std::string& handle, const std::string& layer, const std::string& flags) {
    const auto vertex = [](const std::string& place) {
      return "\n" + place + " | 74 4 | 41 0.5 | 41 0 | 41 2 | 41 5 | 75 0 | 74 2 | 41 -0.5 | 41 0 | 75 0";
    };
    return "0 MLINE | 5 " + handle + " | 100 AcDbEntity | 8 " + layer +
           " | 100 AcDbMline | 2 STANDARD | 40 20 | 70 1 | 71 " + flags + " | 72 3 | 73 2" +
           vertex("11 0 | 21 0 | 12 1 | 22 0 | 13 0 | 23 1") + vertex("11 10 | 21 0 | 12 0 | 22 1 | 13 -1 | 23 1") +
           vertex("11 10 | 21 10 | 12 0 | 22 1 | 13 -1 | 23 0") + "\n";
  };
  return drawingFrom("0 SECTION | 2 HEADER | 9 $ACADVER | 1 " + version + R"(
    0 ENDSEC
    0 SECTION | 2 TABLES
    0 TABLE | 2 LTYPE
    0 LTYPE | 2 Dashed
    0 ENDTAB
    0 TABLE | 2 LAYER
    0 LAYER | 2 0
    0 LAYER | 2 Walls | 62 3
    0 LAYER | 2 Fixed | 70 4
    0 ENDTAB
    0 ENDSEC
    0 SECTION | 2 ENTITIES
    0 LINE | 5 A1 | 100 AcDbEntity | 8 0 | 62   1 | 370 25 | 100 AcDbLine | 10 0 | 20 50 | 11 9 | 21 50
    0 LINE | 5 A2 | 100 AcDbEntity | 8 0 | 6 dashed | 420 16711680 | 62   1
      100 AcDbLine | 10 0 | 20 60 | 11 9 | 21 60
    0 POLYLINE | 5 A3 | 8 0 | 66 1
    0 VERTEX | 5 A4 | 8 0 | 10 0 | 20 70
    0 VERTEX | 5 A5 | 8 WALLS | 10 9 | 20 70
    0 SEQEND | 5 A6 | 8 0
  )" + mline("A7", "0", "1") +
                     mline("A8", "Fixed", "3") + "0 ENDSEC\n0 EOF");
}

class PropertiesTest : public testing::Test {
 protected:
  void open(const std::string& version = "AC1018") {
    test.editor.setDatabase(drawingWithLooks(version));
    before = test.editor.database().file().toBytes();
    test.faults.clear();
  }
  std::vector<std::string> changes() { return test::difference(before, test.editor.database().file().toBytes()); }
  dxf::RecordId at(dxf::Handle handle) { return test.editor.database().file().find(handle); }

  TestEditor test;
  std::string before;
};

using Chprop = PropertiesTest;
using Summary = PropertiesTest;
using PickFirst = PropertiesTest;

TEST_F(Chprop, WritesTheGroupsThatChangeAndNoOthers) {
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"#A1:0,0 \"\" C 30", {"-62   1", "+62     30"}},
      {"#A1:0,0 \"\" C BYBLOCK c bylayer", {"-62   1", "+62    256"}},
      {"#A1:0,0 \"\" C 255,128,0", {"-62   1", "+62     30", "+420  16744448"}},
      {"#A2:0,0 \"\" color blue", {"-420 16711680", "-62   1", "+62      5"}},
      {"#A2:0,0 \"\" LT DASHED LT bylayer", {"-6 dashed", "+6 BYLAYER"}},
      {"#A1:0,0 #A2:0,0 \"\" LW 0.25", {"+370     25"}},
      {"#A3:0,0 \"\" LA walls C 2", {"-8 0", "+8 Walls", "+62      2", "-8 0", "+8 Walls", "-8 0", "+8 Walls"}},
      {"ALL \"\" LA \"\"", {}},
      {"#A1:0,0 \"\" C 3 ^C", {}},
      {"#A1:0,0 \"\" C 3 LA ^C", {}},
  };
  for (const auto& [answers, expected] : rows) {
    open();
    test.run(std::string("CHPROP ") + answers + " \"\"");
    EXPECT_EQ(changes(), expected) << answers;
    test.run("U");
    EXPECT_THAT(changes(), IsEmpty()) << answers;
    EXPECT_EQ(test.faults.size(), answers[0] == 'A' ? 1u : 0u) << answers << ": the locked layer";
  }
}

TEST_F(Summary, TellsWhatIsCommonAndMeasuresMultilines) {
  open();
  const SelectionSummary one = summaryOf(test.editor.database(), {at(0xA7)});
  EXPECT_TRUE(one.color && one.color->isByLayer());
  EXPECT_EQ(one.mlines.style, L"STANDARD");
  EXPECT_EQ(one.mlines.justification, KdMlineJustification::zero);
  EXPECT_EQ(one.mlines.isClosed, false);
  EXPECT_EQ(one.mlines.pathLength, 20);
  // 0 to 2 and 5 to the corner at 9.5, then 0 to 2 and 5 to the end at 9.5; the other one is drawn whole.
  EXPECT_THAT(one.mlines.drawnLengths, ElementsAre(2 + 4.5 + 2 + 4.5, 10.5 + 10.5));

  const SelectionSummary several = summaryOf(test.editor.database(), {at(0xA7), at(0xA1), at(0xA2), at(0xA8)});
  ASSERT_EQ(several.types.size(), 2u);
  EXPECT_FALSE(several.layer || several.color || several.linetype || several.lineWeight || several.mlines.isClosed);
  EXPECT_EQ(several.mlines.scale, 20);
  EXPECT_DOUBLE_EQ(several.mlines.pathLength, 20 + 20 + std::sqrt(200.0));
  EXPECT_FALSE(summaryOf(test.editor.database(), {}).layer);
}

TEST_F(PickFirst, IsTakenWithoutAQuestion) {
  open();
  test.editor.setPickedFirst({at(0xA8), at(0xA2), at(0xA1), at(0xA2)});
  EXPECT_THAT(test.editor.pickedFirst(), ElementsAre(at(0xA1), at(0xA2), at(0xA8)));
  test.run("ZOOM 2\nORTHOMODE 1\nUCS W");
  EXPECT_EQ(test.editor.pickedFirst().size(), 3u) << "neither views nor settings change what is drawn";
  test.output.clear();
  EXPECT_EQ(test.run("CHPROP C 4 \"\""), Fault::script);
  EXPECT_THAT(test.output, HasSubstr(L"3 found\n"));
  EXPECT_EQ(test.output.find(L"Select objects"), std::wstring::npos);
  EXPECT_THAT(test.faults, ElementsAre(HasSubstr("1 entity is on a locked layer")));
  EXPECT_THAT(test.editor.pickedFirst(), IsEmpty());
  test.run("ERASE P \"\"");
  EXPECT_TRUE(test.editor.database().file().isErased(at(0xA1)));
}

TEST_F(PickFirst, IsForgottenWhenItIsUsedOrWhatIsDrawnChanges) {
  for (const char* script : {"MOVE ^C", "LINE 0,0 1,1 \"\"", "U", "LAYER OFF Walls \"\"", "NEW Y", "COPY 0,0 1,1"}) {
    open();
    test.run("CHPROP #A3:0,0 \"\" C 4 \"\"");
    test.editor.setPickedFirst({at(0xA1)});
    test.run(script);
    EXPECT_THAT(test.editor.pickedFirst(), IsEmpty()) << script;
  }
  open();
  test.editor.setPickedFirst({at(0xA1), at(0xA2)});
  test.editor.database().setErased(at(0xA1), true);
  EXPECT_THAT(test.editor.pickedFirst(), ElementsAre(at(0xA2)));
  test.ask = [](Editor& editor) {
    selectObjects(editor, SelectionUse::read);
    selectObjects(editor, SelectionUse::read);
  };
  test.output.clear();
  test.run("ASK L \"\"");
  EXPECT_THAT(test.output, HasSubstr(L"1 found\nSelect objects: L\n1 found\n")) << "the second question is asked";
}

TEST_F(PickFirst, FollowsClicksAndWindows) {
  open();
  test.editor.view().set({5, 55, 0}, 100);
  EXPECT_TRUE(pickFirstAt(test.editor, {5, 50, 0}, Choice::add));
  EXPECT_FALSE(pickFirstAt(test.editor, {5, 55, 0}, Choice::add));
  EXPECT_THAT(test.editor.pickedFirst(), ElementsAre(at(0xA1)));
  pickFirstIn(test.editor, {10, 71, 0}, {-1, 59, 0}, view::WindowRule::whole, Choice::add);
  EXPECT_THAT(test.editor.pickedFirst(), ElementsAre(at(0xA1), at(0xA2), at(0xA3)));
  pickFirstIn(test.editor, {4, 49, 0}, {5, 61, 0}, view::WindowRule::whole, Choice::remove);
  EXPECT_EQ(test.editor.pickedFirst().size(), 3u);
  pickFirstIn(test.editor, {4, 49, 0}, {5, 61, 0}, view::WindowRule::part, Choice::remove);
  EXPECT_THAT(test.editor.pickedFirst(), ElementsAre(at(0xA3)));
}

TEST(OrthoPoint, FollowsTheLongerWay) {
  const KdGePoint3d base{1, 2, 5};
  const std::pair<KdGePoint3d, KdGePoint3d> rows[] = {
      {{9, 4, 0}, {9, 2, 5}}, {{-7, 9, 0}, {-7, 2, 5}}, {{3, -9, 0}, {1, -9, 5}}, {{4, 5, 0}, {4, 2, 5}}, {base, base}};
  for (const auto& [cursor, expected] : rows) EXPECT_EQ(orthoPoint(base, cursor).distanceTo(expected), 0) << cursor.x;
}

}  // namespace
}  // namespace torva::command

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "draw/record_values.h"
#include "test_editor.h"

namespace torva::command {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Selection, ReportsWhatEachAnswerFound) {
  const struct {
    const char* answers;
    std::wstring report;  // of the last answer
    std::vector<dxf::Handle> left;
  } rows[] = {
      {"5,3", L"0 found", {0x2F, 0x30}},
      {"#30:0,0", L"1 found", {0x2F}},
      {"#30:0,0 5,5", L"1 found (1 chosen before), 1 total", {0x2F}},
      {"ALL R #2F:0,0", L"1 found, 1 removed, 1 total", {0x2F}},
      {"R #2F:0,0", L"1 found, 0 removed", {0x2F, 0x30}},
      {"ALL Remove L add 5,0", L"1 found (1 chosen before), 1 total", {0x30}},
      {"W -1,-1 11,4.9", L"1 found", {0x30}},
      {"W 11,6 -1,-1", L"2 found", {}},
      {"Window 1,-1 11,6", L"0 found", {0x2F, 0x30}},
      {"5,0 C 4,4 @1,1", L"1 found, 2 total", {}},
  };
  for (const auto& row : rows) {
    TestEditor test;
    test.editor.view().set({5, 2.5, 0}, 20);
    EXPECT_EQ(test.run(std::string("ERASE ") + row.answers + " \"\""), Fault::none) << row.answers;
    const std::size_t end = test.output.rfind(L"\n", test.output.size() - 2);
    EXPECT_THAT(test.output.substr(0, end), EndsWith(row.report)) << row.answers;
    EXPECT_EQ(handlesIn(test.editor.database()), row.left) << row.answers;
    test.run("U");
    EXPECT_FALSE(test.editor.database().file().isModified()) << row.answers;
  }
}

TEST(Selection, ThePreviousOneCanBeChosenAgainAsFarAsItIsThere) {
  TestEditor test;
  test.run("MOVE 5,5 5,0 \"\" 0,0 0,1\nERASE 5,6 \"\"\nCOPY P \"\" 0,0 0,9");
  EXPECT_EQ(handlesIn(test.editor.database()).size(), 1u) << "the last selection was erased";
  test.run("U\nMOVE #2F:0,0 \"\" 0,0 0,1\nERASE P \"\"");
  EXPECT_EQ(handlesIn(test.editor.database()), std::vector<dxf::Handle>{0x30});
  test.run("U\nNEW Y\nERASE P \"\"");
  EXPECT_THAT(test.output, EndsWith(L"Select objects: P\n0 found\nSelect objects: \n"));
}

TEST(Selection, TakesNoPartsAndNoEntitiesOfBlocks) {
  TestEditor test;
  test.run("NEW\nERASE #21:0,0 \"\"");  // the end of a block in a new drawing
  EXPECT_THAT(test.output, HasSubstr(L"The entity 21 is part of a block or of another entity.\n0 found\n"));
  EXPECT_THAT(test.faults, IsEmpty());
}

TEST(EditCommands, MoveAndCopyTakeADisplacementInUserCoordinates) {
  // of the line from 0,5 to 10,5 after that
  const std::pair<const char*, KdGePoint3d> rows[] = {
      {"1,1 4,3", {-2, 8, 0}}, {"1,1 @3,2", {-2, 8, 0}},           {"3,2 \"\"", {-2, 8, 0}},
      {"D 3,2", {-2, 8, 0}},   {"Displacement 3,2,8", {-2, 8, 1}}, {"0,0,7 3,2,9", {-2, 8, 2}},
  };
  for (const auto& [answers, start] : rows) {
    for (const char* command : {"MOVE", "COPY"}) {
      TestEditor test;
      test.run(std::string("UCS 1,1,1 UCS Z 90 ELEVATION 7 ") + command + " L \"\" " + answers);
      dxf::RecordId last = dxf::kNoRecord;
      test.editor.database().forEachEntity([&](dxf::RecordId entity) { last = entity; });
      const draw::RecordValues values(test.editor.database().file().groups(last));
      EXPECT_TRUE(values.point(10).isEqualTo(start)) << command << ' ' << answers;
      EXPECT_TRUE(values.point(11).isEqualTo(start + KdGeVector3d{10, 0, 0})) << command << ' ' << answers;
    }
  }
}

TEST(EditCommands, WhatCannotBeDoneIsAFaultForEachType) {
  TestEditor test;
  for (const char* type : {"REGION", "REGION", "CIRCLE"}) {
    test.editor.database().appendToModelSpace("0\n" + std::string(type) + "\n8\n0\n10\n1.0\n20\n9.0\n40\n1.0\n");
  }
  EXPECT_EQ(test.run("EXPLODE ALL \"\"\nMOVE ALL \"\" 0,0 1,1"), Fault::script);
  EXPECT_THAT(
      test.faults,
      testing::ElementsAre("test:1: LINE 30 left as it is: only multilines and polylines can be taken apart",
                           "test:1: REGION and 1 more left as they are: only multilines and polylines can be taken apart",
                           "test:1: CIRCLE left as it is: only multilines and polylines can be taken apart",
                           "test:2: REGION and 1 more left as they are: it is not known which of its values are points"));
}

}  // namespace
}  // namespace torva::command

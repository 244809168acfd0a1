#include <array>
#include <functional>
#include <gmock/gmock.h>

#include "db/entity_displacement.h"
#include "db/entity_erasure.h"
#include "db/plan.h"

namespace torva::test {
namespace {

using testing::ElementsAre;
using Lines = std::vector<std::string>;

/// A text with a dictionary of its own, a hatch on a boundary, an insert whose attribute has a dictionary, a dimension with
/// its block, what no displacement is known for, and in OBJECTS what the dictionaries own and two groups.
std::string drawing() {
  std::string text = planText(
      "0 TEXT\n5 A0\n102 {ACAD_REACTORS\n330 B3\n102 }\n102 {ACAD_XDICTIONARY\n360 B0\n102 }\n102 {OTHER\n1 kept\n102 }\n"
      "330 1F\n100 AcDbEntity\n8 0\n100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n1001 OTHERS\n1005 A0\n1005 A1\n"
      "0 HATCH\n5 A1\n330 1F\n8 0\n100 AcDbHatch\n10 0.0\n20 0.0\n30 0.0\n71      1\n92      1\n72      4\n97      2\n"
      "11 1.0\n21 1.0\n97      1\n330 A0\n75      0\n"
      "0 INSERT\n5 A2\n330 1F\n8 0\n2 Door\n10 1.0\n20 2.0\n30 0.0\n"
      "0 ATTRIB\n5 A3\n102 {ACAD_XDICTIONARY\n360 B2\n102 }\n330 A2\n8 0\n10 1.0\n20 2.0\n30 0.0\n0 SEQEND\n5 A4\n330 A2\n8 "
      "0\n"
      "0 DIMENSION\n5 A5\n330 1F\n8 0\n2 *D1\n10 1.0\n20 0.0\n30 0.0\n0 REGION\n5 A6\n330 1F\n8 0");
  const auto insertBefore = [&](const char* place, std::string_view records) {
    text.insert(text.find(groupsFrom(place)), groupsFrom(records));
  };
  insertBefore("0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 BLOCKS", "0 BLOCK_RECORD\n5 1D\n330 1\n2 *D1");
  insertBefore(
      "0 ENDSEC\n0 SECTION\n2 ENTITIES",
      "0 BLOCK\n5 33\n330 1D\n8 0\n2 *D1\n10 0.0\n20 0.0\n30 0.0\n3 *D1\n0 LINE\n5 34\n330 1D\n8 0\n10 1.0\n20 0.0\n30 0.0\n"
      "11 2.0\n21 0.0\n31 0.0\n0 ENDBLK\n5 35\n330 1D\n8 0");
  insertBefore("0 ENDSEC\n0 EOF",
               "0 DICTIONARY\n5 B0\n330 A0\n100 AcDbDictionary\n3 DATA\n360 B1\n3 FOREIGN\n360 18\n0 XRECORD\n5 B1\n330 B0\n"
               "0 DICTIONARY\n5 B2\n330 A3\n100 AcDbDictionary\n"
               "0 GROUP\n5 B3\n330 D\n100 AcDbGroup\n340 A0\n340 A1\n0 GROUP\n5 B4\n330 D\n100 AcDbGroup\n340 A1");
  insertBefore("0 DICTIONARY\n5 17", "3 BOTH\n350 B3\n3 ONE\n350 B4");
  return text;
}

/// What an edit changes in the drawing; taken back, it leaves the very bytes.
Lines changesBy(const std::function<void(db::Database&)>& edit) {
  const auto database = openText(drawing());
  const std::string before = textOf(*database);
  database->beginUndoStep(L"EDIT");
  edit(*database);
  database->endUndoStep();
  const Lines changes = difference(before, textOf(*database));
  EXPECT_EQ(database->undo().has_value(), !changes.empty());
  EXPECT_EQ(textOf(*database), before);
  return changes;
}

TEST(EntityErasure, TakesAlongPartsAndWhatTheyOwnAndLeavesGroups) {
  const struct {
    dxf::Handle handle;
    std::vector<dxf::Handle> erased;
    std::size_t groupsLost;  // of those that stay
  } rows[] = {
      {0xA0, {0xA0, 0xB0, 0xB1}, 1},
      {0xA1, {0xA1, 0xB4}, 1 + 2},  // the last member, so the group goes, and its entry
      {0xA2, {0xA2, 0xA3, 0xA4, 0xB2}, 0},
  };
  for (const auto& row : rows) {
    std::size_t groupsOfErased = 0;
    const Lines changes = changesBy([&](db::Database& database) {
      const dxf::DrawingFile& file = database.file();
      db::eraseEntities(database, std::array{file.find(row.handle)});
      std::vector<dxf::Handle> erased;
      for (dxf::RecordId record = 0; record < file.recordCount(); ++record) {
        if (!file.isErased(record)) continue;
        erased.push_back(file.handle(record));
        for ([[maybe_unused]] const dxf::Group& group : file.groups(record)) ++groupsOfErased;
      }
      EXPECT_EQ(erased, row.erased);
    });
    EXPECT_EQ(changes.size(), groupsOfErased + row.groupsLost) << std::hex << row.handle;
  }
}

TEST(EntityDisplacement, ACopySharesNothingWithItsOriginal) {
  const std::pair<dxf::Handle, const char*> rows[] = {
      {0xA0,
       "0 TEXT\n5 FFFF\n102 {OTHER\n1 kept\n102 }\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbText\n10 6.0\n20 2.0\n30 0.0\n"
       "1001 OTHERS\n1005 FFFF\n1005 A1"},
      {0xA1,
       "0 HATCH\n5 FFFF\n330 1F\n8 0\n100 AcDbHatch\n10 0.0\n20 0.0\n30 0.0\n71      0\n92      1\n72      4\n97      2\n"
       "11 6.0\n21 1.0\n97         0\n75      0"},
      {0xA2,
       "0 INSERT\n5 FFFF\n330 1F\n8 0\n2 Door\n10 6.0\n20 2.0\n30 0.0\n0 ATTRIB\n5 10000\n330 FFFF\n8 0\n10 6.0\n20 2.0\n"
       "30 0.0\n0 SEQEND\n5 10001\n330 FFFF\n8 0"},
      {0xA5,
       "0 BLOCK_RECORD\n5 FFFF\n330 1\n2 *D2\n"
       "0 BLOCK\n5 10000\n330 FFFF\n8 0\n2 *D2\n10 0.0\n20 0.0\n30 0.0\n3 *D2\n"
       "0 LINE\n5 10001\n330 FFFF\n8 0\n10 6.0\n20 0.0\n30 0.0\n11 7.0\n21 0.0\n31 0.0\n0 ENDBLK\n5 10002\n330 FFFF\n8 0\n"
       "0 DIMENSION\n5 10003\n330 1F\n8 0\n2 *D2\n10 6.0\n20 0.0\n30 0.0"},
  };
  for (const auto& [handle, copy] : rows) {
    Lines expected = groupLines(groupsFrom(copy));
    for (std::string& line : expected) line = "+" + line;
    EXPECT_EQ(changesBy([&, &handle = handle](db::Database& database) {
                EXPECT_TRUE(db::EntityDisplacement(database, {5, 0, 0}).copy(database.file().find(handle)));
              }),
              expected);
  }
}

TEST(EntityDisplacement, ADimensionIsMovedWithItsBlock) {
  const auto move = [](db::Database& database) {
    EXPECT_TRUE(db::EntityDisplacement(database, {5, 0, 0}).move(database.file().find(0xA5)));
  };
  EXPECT_THAT(changesBy(move), ElementsAre("-10 1.0", "+10 6.0", "-11 2.0", "+11 7.0", "-10 1.0", "+10 6.0"));
}

TEST(EntityDisplacement, WhatCannotBeDisplacedStays) {
  const auto database = openText(drawing());
  database->appendToModelSpace(groupsFrom("0 DIMENSION\n5 FE\n330 1F\n8 0\n2 *D1\n10 0.0\n20 0.0\n30 0.0"));
  const std::string before = textOf(*database);
  db::EntityDisplacement displacement(*database, {5, 0, 0});
  EXPECT_EQ(displacement.move(database->file().find(0xA6)).error().code, ErrorCode::notApplicable);
  EXPECT_EQ(displacement.copy(database->file().find(0xA6)).error().code, ErrorCode::notApplicable);
  EXPECT_EQ(displacement.move(database->file().find(0xA5)).error().code, ErrorCode::notApplicable) << "a shared block";
  EXPECT_EQ(textOf(*database), before);
}

}  // namespace
}  // namespace torva::test

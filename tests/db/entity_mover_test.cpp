#include "db/entity_mover.h"

#include <gmock/gmock.h>

#include "db/plan.h"
#include "db/record_groups.h"

namespace torva::test {
namespace {

using testing::ElementsAreArray;
using Lines = std::vector<std::string>;

/// A drawing without handles, so that the records need none.
std::unique_ptr<db::Database> drawing(std::string_view records) {
  return openText(groupsFrom("0 SECTION\n2 ENTITIES") + groupsFrom(records) + groupsFrom("0 ENDSEC\n0 EOF"));
}

/// What changes in records when they are moved one after the other.
Lines changesByMoving(std::string_view records, const KdGeVector3d& displacement) {
  const auto database = drawing(records);
  const dxf::DrawingFile& file = database->file();
  db::EntityMover mover(file, displacement);
  std::string before, after;
  database->forEachEntity([&](dxf::RecordId entity) {
    for (const dxf::RecordId record : db::withParts(file, entity)) {
      before += file.bytes(record);
      const auto moved = mover.moved(file.type(record), file.bytes(record));
      EXPECT_TRUE(moved) << file.typeName(record);
      if (moved) after += *moved;
    }
  });
  return difference(before, after);
}

TEST(EntityMover, MovesThePointsOfEachTypeAndNothingElse) {
  constexpr KdGeVector3d kInPlan{5, 0, 0}, kInSpace{1, 2, 3};
  const struct {
    const char* name;
    const char* records;
    KdGeVector3d displacement;
    Lines changes;
  } rows[] = {
      {"a coordinate that stays keeps its odd text",
       "0 LINE\n8 0\n39 9\n10 1.50\n20 2.0E0\n30 0\n11 7\n21 8\n31 9\n210 0\n220 0\n230 -1",
       kInPlan,
       {"-10 1.50", "+10 6.5", "-11 7", "+11 12.0"}},
      {"a missing z is added where it is needed",
       "0 LINE\n8 0\n10 1\n20 2\n11 7\n21 8\n1001 APP\n1011 1\n1021 1\n1031 1\n1010 4",
       {0, 0, 3},
       {"+30 3.0", "+31 3.0", "-1031 1", "+1031 4.0"}},
      {"points before their z, all together",
       "0 LINE\n8 0\n10 1\n11 7\n20 2\n21 8\n30 0\n31 0",
       {0, 0, 3},
       {"-30 0", "-31 0", "+30 3.0", "+31 3.0"}},
      {"own system, mirrored",
       "0 ARC\n8 0\n10 1\n20 2\n30 3\n40 5\n50 10\n51 20\n210 0\n220 0\n230 -1",
       kInSpace,
       {"-10 1", "-20 2", "-30 3", "+10 0.0", "+20 4.0", "+30 0.0"}},
      {"tangents stay",
       "0 SPLINE\n8 0\n12 1\n22 0\n32 0\n40 0\n40 1\n10 1\n20 2\n30 3\n11 4\n21 5\n31 6",
       kInPlan,
       {"-10 1", "+10 6.0", "-11 4", "+11 9.0"}},
      {"height of a light polyline",
       "0 LWPOLYLINE\n8 0\n90 2\n70 0\n10 1\n20 2\n42 1\n10 3\n20 4",
       kInSpace,
       {"-10 1", "-20 2", "+38 3.0", "+10 2.0", "+20 4.0", "-10 3", "-20 4", "+10 4.0", "+20 6.0"}},
      {"plane polyline",
       "0 POLYLINE\n8 0\n10 0\n20 0\n30 5\n70 0\n210 0\n220 0\n230 -1\n0 VERTEX\n8 0\n10 1\n20 2\n30 5\n0 SEQEND\n8 0",
       kInSpace,
       {"-30 5", "+30 2.0", "-10 1", "-20 2", "-30 5", "+10 0.0", "+20 4.0", "+30 2.0"}},
      {"plane polyline without elevation",
       "0 POLYLINE\n8 0\n66 1\n1001 APP\n0 VERTEX\n8 0\n10 1\n20 2\n0 SEQEND\n8 0",
       {0, 0, 3},
       {"+10 0.0", "+20 0.0", "+30 3.0", "+30 3.0"}},
      {"polyface: points in the world, faces none",
       "0 POLYLINE\n8 0\n10 0\n20 0\n30 0\n70 64\n210 0\n220 0\n230 -1\n0 VERTEX\n8 0\n10 1\n20 2\n30 3\n70 192\n"
       "0 VERTEX\n8 0\n10 0\n20 0\n30 0\n70 128\n71 1\n0 SEQEND\n8 0",
       kInPlan,
       {"-10 1", "+10 6.0"}},
      {"insert with its attributes, each in its own system",
       "0 INSERT\n8 0\n66 1\n2 Door\n10 1\n20 2\n30 0\n41 2\n0 ATTRIB\n8 0\n10 1\n20 2\n30 0\n40 1\n11 3\n21 4\n31 0\n230 "
       "-1\n"
       "101 Embedded Object\n10 1\n20 2\n11 1\n0 SEQEND\n8 0",
       kInPlan,
       {"-10 1", "+10 6.0", "-10 1", "+10 -4.0", "-11 3", "+11 -2.0", "-10 1", "+10 6.0"}},
      {"direction of a text, and the place in its columns",
       "0 MTEXT\n8 0\n10 1\n20 2\n30 0\n1 text\n11 1\n21 0\n31 0\n101 Embedded Object\n70 1\n10 1\n20 0\n11 1\n21 2\n31 0",
       kInPlan,
       {"-10 1", "+10 6.0", "-11 1", "+11 6.0"}},
      {"hatch: elevation, polyline path, seeds, origin of its pattern",
       "0 HATCH\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 1\n210 0\n220 0\n230 1\n91 1\n92 2\n72 1\n73 1\n93 1\n10 1\n20 2\n42 "
       "0.5\n97 0\n"
       "75 0\n76 1\n52 0\n41 1\n78 1\n53 45\n43 3\n44 4\n45 1\n46 1\n79 0\n98 1\n10 7\n20 8",
       kInSpace,
       {"-30 1", "+30 4.0", "-10 1", "-20 2", "+10 2.0", "+20 4.0", "-43 3", "-44 4", "+43 4.0", "+44 6.0", "-10 7", "-20 8",
        "+10 8.0", "+20 10.0"}},
      {"hatch: edges, of which an ellipse has an axis",
       "0 HATCH\n8 0\n10 0\n20 0\n30 0\n92 1\n93 4\n72 1\n10 1\n20 0\n11 2\n21 0\n72 2\n10 3\n20 0\n40 1\n50 0\n51 90\n72 "
       "3\n10 4\n20 0\n"
       "11 5\n21 0\n40 1\n72 4\n94 3\n40 0\n10 6\n20 0\n97 1\n11 7\n21 0\n12 1\n22 0\n75 0",
       kInPlan,
       {"-10 1", "+10 6.0", "-11 2", "+11 7.0", "-10 3", "+10 8.0", "-10 4", "+10 9.0", "-10 6", "+10 11.0", "-11 7",
        "+11 12.0"}},
      {"dimension: its block stays where it is placed",
       "0 DIMENSION\n8 0\n2 *D1\n10 1\n20 0\n30 0\n11 2\n21 0\n31 0\n12 9\n22 0\n32 0\n13 3\n23 0\n33 0\n16 4\n26 0\n36 "
       "0\n230 -1",
       kInPlan,
       {"-10 1", "+10 6.0", "-11 2", "+11 -3.0", "-13 3", "+13 8.0", "-16 4", "+16 -1.0"}},
      {"groups of applications stay",
       "0 POINT\n8 0\n102 {APP\n10 1\n102 }\n10 1\n20 2\n30 x",
       kInSpace,
       {"-10 1", "-20 2", "+10 2.0", "+20 4.0"}},
  };
  for (const auto& row : rows) {
    EXPECT_THAT(changesByMoving(row.records, row.displacement), ElementsAreArray(row.changes)) << row.name;
  }
}

TEST(EntityMover, MovesMultilinesByTheirVerticesAlone) {
  const std::string walls(kWalls.substr(0, kWalls.find("0 LINE")));
  const Lines changes = {"-20 0.0", "+20 2.0", "-21 0.0", "+21 2.0", "-21 0.0", "+21 2.0"};
  EXPECT_THAT(changesByMoving(walls, {0, 2, 0}), ElementsAreArray(changes));
}

TEST(EntityMover, RefusesWhatItDoesNotKnowAndWhatWouldBeNoNumber) {
  const auto database = drawing("0 LINE\n8 0\n10 1e308\n20 0\n30 0");
  db::EntityMover mover(database->file(), {1e308, 0, 0});
  database->forEachEntity([&](dxf::RecordId line) {
    const std::string_view bytes = database->file().bytes(line);
    EXPECT_EQ(mover.moved(dxf::RecordType::line, bytes).error().code, ErrorCode::invalidValue);
    EXPECT_EQ(mover.moved(dxf::RecordType::region, bytes).error().code, ErrorCode::notApplicable);
  });
}

}  // namespace
}  // namespace torva::test

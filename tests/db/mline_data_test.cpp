#include "db/mline_data.h"

#include <functional>
#include <gmock/gmock.h>
#include <random>
#include <utility>

#include "db/mline_groups.h"
#include "db/plan.h"
#include "db/same_vertices.h"

namespace torva::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// A multiline's record alone, in a drawing.
struct Wall {
  explicit Wall(std::string_view shortForm) : database(openText(planText(shortForm))) {
    record = database->file().next(database->file().section("ENTITIES"));
  }
  db::MlineData read() const { return db::readMline(database->file(), record); }
  std::string write(const db::MlineData& data) const {
    return std::string(db::writeMline(database->file(), record, data).bytes());
  }
  std::string_view bytes() const { return database->file().bytes(record); }

  std::unique_ptr<db::Database> database;
  dxf::RecordId record = 0;
};

void expectSame(const db::MlineData& a, const db::MlineData& b) {
  EXPECT_EQ(a.vertices, b.vertices);
  EXPECT_EQ(a.styleName, b.styleName);
  EXPECT_EQ(a.styleHandle, b.styleHandle);
  EXPECT_EQ(a.scale, b.scale);
  EXPECT_EQ(a.justification, b.justification);
  EXPECT_EQ(db::flagWord(a), db::flagWord(b));
  EXPECT_TRUE(a.normal.isEqualTo(b.normal, {0, 0}));
}

TEST(MlineReader, TakesOddRecordsAsTheyAre) {
  const struct {
    const char* name;
    const char* groups;
    std::vector<std::vector<std::size_t>> lists;  // for each vertex and element: parameters, fill values
  } cases[] = {
      {"counts that are wrong", "72 9\n73 9\n11 0\n74 7\n41 1\n41 0\n75 5\n42 3", {{2, 1}}},
      {"no counts at all", "11 0\n41 1\n41 0\n42 3", {{2, 1}}},
      {"another class part", "11 0\n74 1\n41 1\n75 0\n100 AcDbMore\n11 1\n41 2", {{1, 0}}},
      {"XDATA", "11 0\n74 1\n41 1\n1001 OTHERS\n1010 5.0\n41 2", {{1, 0}}},
      {"application groups", "11 0\n102 {OTHERS\n11 1\n41 2\n102 }\n74 1\n41 1", {{1, 0}}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const db::MlineData data = Wall(std::string("0 MLINE\n5 A0\n100 AcDbEntity\n8 0\n100 AcDbMline\n") + row.groups).read();
    std::vector<std::vector<std::size_t>> lists;
    for (const db::MlineVertex& vertex : data.vertices) {
      lists.emplace_back();
      for (const KdMLSegment& element : vertex.elements.toVector()) {
        lists.back().push_back(element.elementParameters.size());
        lists.back().push_back(element.areaFillParameters.size());
      }
    }
    EXPECT_EQ(lists, row.lists);
  }
}

TEST(MlineReader, ValuesThatAreNoNumbersCountAsZero) {
  const db::MlineData data = Wall("0 MLINE\n5 A0\n100 AcDbMline\n40 nan\n11 1,5\n21 x\n74 1\n41 inf\n41 1E400").read();
  ASSERT_EQ(data.vertices.size(), 1u);
  EXPECT_EQ(data.scale, 0);
  EXPECT_EQ(data.vertices[0].position.x, 1.5);
  EXPECT_EQ(data.vertices[0].position.y, 0);
  EXPECT_THAT(data.vertices[0].elements[0].elementParameters, ElementsAre(0, 0));
}

using Edit = std::function<void(db::MlineData&)>;

Edit setsList(std::size_t vertex, std::size_t element, const std::vector<double>& list) {
  return [=](db::MlineData& data) {
    KdMLSegments& elements = data.vertices[vertex].elements;
    elements.set(element, {elements[element].areaFillParameters, list});
  };
}

TEST(MlineWriter, ChangesTheGroupsOfTheChangedValuesAlone) {
  const std::vector<KdMLSegment> one = {{{}, {0.5, 0}}}, three = {{{}, {0.5, 0}}, {{}, {-0.5, 0}}, {{}, {9}}};
  const std::vector<double> fill = {1, 2}, list = {0.5, 0};
  const struct {
    const char* name;
    Edit change;
    std::vector<std::string> groups;
  } edits[] = {
      {"nothing", [](auto&) {}, {}},
      {"cut", setsList(0, 0, {0.5, 0, 40, 60}), {"-74      2", "+74      4", "+41 40.0", "+41 60.0"}},
      {"value in front", setsList(0, 0, {0.5, 7, 0}), {"-74      2", "+74      3", "+41 7.0"}},
      {"emptied", setsList(1, 1, {}), {"-74      2", "-41 -0.5", "-41 0.0", "+74      0"}},
      {"fill",
       [&](auto& d) {
         d.vertices[0].elements.set(0, {fill, list});
       },
       {"-75      0", "+75      2", "+42 1.0", "+42 2.0"}},
      {"flags", [](auto& d) { d.suppressesEndCaps = true; }, {"-71      1", "+71      9"}},
      {"scale", [](auto& d) { d.scale = -2; }, {"-40 1.0", "+40 -2.0"}},
      {"style",
       [](auto& d) { d.styleName = L"W\u00e4nde", d.styleHandle = 0x19; },
       {"-2 STANDARD", "-340 18", "+2 W\xe4nde", "+340 19"}},
      {"first vertex", [](auto& d) { d.vertices[0].position.x = 3; }, {"-10 0.0", "+10 3.0", "-11 0.000", "+11 3.0"}},
      {"element gone", [&](auto& d) { d.vertices[1].elements = one; }, {"-74      2", "-41 -0.5", "-41 0.0", "-75      0"}},
      {"new element", [&](auto& d) { d.vertices[1].elements = three; }, {"+74      1", "+41 9.0", "+75      0"}},
  };
  const Wall wall(kWalls);
  for (const auto& edit : edits) {
    SCOPED_TRACE(edit.name);
    db::MlineData data = wall.read();
    edit.change(data);
    EXPECT_THAT(difference(wall.bytes(), wall.write(data)), ElementsAreArray(edit.groups));
  }
}

TEST(MlineWriter, KeepsWhatItDoesNotKnowWhereItStood) {
  const Wall wall(R"(
    0 MLINE | 5 A0 | 999 before | 102 {ACAD_REACTORS | 330 17 | 102 } | 330 1F | 100 AcDbEntity | 8 0
      100 AcDbMline | 2 STANDARD | 91 7 | 72 5
      11 0.0 | 999 in the vertex
      74 2 | 999 in the list | 41 1.0 | 41 0.0 | 999 behind the list | 75 0 | 92 8
      100 AcDbForeign | 40 3.0 | 101 Embedded
      11 4.0
      1001 OTHERS | 1070 5
  )");
  db::MlineData data = wall.read();
  data.scale = 2;
  data.vertices[0].position.y = 6;
  setsList(0, 0, {1, 0, 5})(data);
  data.vertices.push_back({{9, 0, 0}, {}, {}, {}});
  EXPECT_THAT(difference(wall.bytes(), wall.write(data)),
              ElementsAre("-72 5", "+72      2", "+40 2.0", "-74 2", "+21 6.0", "+74      3", "+41 5.0", "+11 9.0",
                          "+21 0.0", "+31 0.0", "+12 0.0", "+22 0.0", "+32 0.0", "+13 0.0", "+23 0.0", "+33 0.0"));
  data.vertices.clear();
  const std::string emptied = wall.write(data);
  for (const char* kept : {"in the vertex", "in the list", "behind the list", "AcDbForeign", "Embedded"}) {
    EXPECT_NE(emptied.find(kept), std::string::npos) << kept;
  }
}

TEST(MlineWriter, AWrongCountStaysAsLongAsItsListDoes) {
  const Wall wall("0 MLINE\n5 A0\n100 AcDbMline\n2 STANDARD\n72 9\n11 0.0\n74 7\n41 1.0\n75 0\n74 7\n41 2.0\n75 0");
  db::MlineData data = wall.read();
  EXPECT_EQ(wall.write(data), wall.bytes());
  setsList(0, 1, {3})(data);
  EXPECT_THAT(difference(wall.bytes(), wall.write(data)), ElementsAre("-74 7", "-41 2.0", "+74      1", "+41 3.0"));
}

TEST(MlineWriter, AnEditOfALongRecordCopiesNothingOfTheRestAndIsSavedTheSame) {
  std::string text = "0 MLINE\n5 A0\n100 AcDbEntity\n8 0\n100 AcDbMline\n2 STANDARD\n40 1.0\n72 500";
  for (int i = 0; i < 500; ++i) text += "\n11 " + std::to_string(i) + ".50\n21 0\n31 0\n74 2\n41 0.5\n41 0.0\n75 0";
  const Wall wall(text);
  dxf::DrawingFile& file = wall.database->file();
  const std::string before = file.toBytes();
  const std::string_view record = wall.bytes();
  db::MlineData data = wall.read();
  setsList(250, 0, {0.5, 0, 40, 60})(data);
  const dxf::RecordText edited = db::writeMline(file, wall.record, data);
  std::size_t kept = 0;
  edited.forEachPiece([&](std::string_view piece) {
    if (piece.data() >= record.data() && piece.data() < record.data() + record.size()) kept += piece.size();
  });
  EXPECT_GT(kept, record.size() * 9 / 10);
  file.setBytes(wall.record, edited);
  const std::string after = file.toBytes();
  EXPECT_THAT(difference(before, after), ElementsAre("-74 2", "+74      4", "+41 40.0", "+41 60.0"));
  EXPECT_FALSE(edited.says(record));
  EXPECT_TRUE(edited.says(wall.bytes()));
  EXPECT_EQ(file.toBytes(), after) << "in one piece as in several";
}

/// Whatever a record says and whatever it is to say, what is written reads back as what was wanted.
TEST(MlineWriter, WritesWhatReadsBackFromAnyRecordToAnyData) {
  constexpr unsigned kSeed = 20240611;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  const auto values = [&] {
    std::vector<double> result(static_cast<std::size_t>(below(4)));
    for (double& value : result) value = below(3);
    return result;
  };
  const auto makeData = [&] {
    db::MlineData data;
    data.scale = below(3);
    data.isClosed = below(2) == 1;
    data.normal = {0, 0, below(2) == 1 ? 1.0 : -1.0};
    data.vertices.resize(static_cast<std::size_t>(below(6)));
    for (db::MlineVertex& vertex : data.vertices) {
      vertex.position = {double(below(4)), double(below(2)), 0};
      vertex.axis = {double(below(2)), 0, 0};
      std::vector<KdMLSegment> elements(static_cast<std::size_t>(below(3)));
      for (KdMLSegment& element : elements) element = {values(), values()};
      vertex.elements = elements;
    }
    return data;
  };
  const Wall empty("0 MLINE\n5 A0\n100 AcDbEntity\n8 0\n100 AcDbMline");
  const dxf::DrawingFile& file = empty.database->file();
  for (int pass = 0; pass < 3000; ++pass) {
    std::string bytes = empty.write(makeData());
    // Some records lack a group or have one too many.
    std::vector<std::string> groups = groupLines(bytes);
    const std::size_t place = 5 + static_cast<std::size_t>(below(static_cast<int>(groups.size()) - 5));
    if (pass % 3 == 1) groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(place));
    if (pass % 3 == 2) groups.insert(groups.begin() + static_cast<std::ptrdiff_t>(place), "999 comment");
    std::string text;
    for (const std::string& group : groups) text += group + "\n";
    bytes = below(4) == 0 ? groupsFrom(text) : inColumns(groupsFrom(text));
    const auto parse = [&](std::string_view record) { return db::readMlineSource(file, record).data; };
    const db::MlineSource source = db::readMlineSource(file, bytes);
    ASSERT_EQ(db::writeMline(file, bytes, source, source.data), bytes) << text;
    expectSame(parse(groupsFrom(text)), parse(inColumns(bytes)));
    db::MlineData wanted = makeData();
    if (pass % 2 == 1) {
      // Most vertices stay as they are.
      const std::vector<db::MlineVertex> others = std::exchange(wanted.vertices, source.data.vertices);
      const auto at = wanted.vertices.begin() + below(static_cast<int>(wanted.vertices.size()) + 1);
      if (!others.empty()) wanted.vertices.insert(at, others.front());
      if (wanted.vertices.size() > 1 && below(2) == 1) wanted.vertices.erase(wanted.vertices.begin() + below(2));
    }
    const std::string written(db::writeMline(file, bytes, source, wanted).bytes());
    expectSame(parse(written), wanted);
    ASSERT_EQ(written.find("999") != std::string::npos, bytes.find("999") != std::string::npos);
    if (HasFailure()) FAIL() << "from\n" << text << "to\n" << written;
  }
}

}  // namespace
}  // namespace torva::test

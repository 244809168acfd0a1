#include "draw/drawer.h"

#include <cmath>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "draw/sample_drawing.h"
#include "draw/texts.h"

namespace torva::draw {
namespace {

using test::entity;
using test::group;
using test::point;
using test::SampleDrawing;

DisplayList draw(const SampleDrawing& sample) {
  const auto database = sample.open();
  const Drawer drawer(*database);
  DisplayList list;
  for (const dxf::RecordId record : test::entitiesOf(*database)) drawer.draw(record, list);
  return list;
}

std::string line(const std::string& body = "", const std::string& layer = "0") {
  return group(0, "LINE") + group(100, "AcDbEntity") + group(8, layer) + body + group(100, "AcDbLine") + point(10, 0, 0) +
         point(11, 10, 0);
}

TEST(Look, ResolvesColors) {
  struct Case {
    const char* name;
    std::string entity;
    std::uint32_t rgb;
    bool isForeground;
  };
  const Case cases[] = {
      {"by layer", line("", "RED"), 0xFF0000, false},
      {"own index", line(group(62, "3"), "RED"), 0x00FF00, false},
      {"true color before index", line(group(62, "3") + group(420, "66051"), "RED"), 0x010203, false},
      {"index 7 is the foreground", line(group(62, "7"), "RED"), 0, true},
      {"by block at top level", line(group(62, "0"), "RED"), 0, true},
      {"unknown layer", line("", "NOWHERE"), 0, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const DisplayList list = draw({.entities = c.entity});
    ASSERT_EQ(list.primitives.size(), 1u);
    const Appearance& look = list.appearances[list.primitives[0].appearance];
    EXPECT_EQ(look.rgb, c.rgb);
    EXPECT_EQ(look.isForeground, c.isForeground);
  }
}

TEST(Look, ScalesLinetypes) {
  const std::string ltype = group(0, "LTYPE") + group(2, "DASHED") + group(49, 2.0) + group(49, -1.0);
  const DisplayList list = draw({.entities = line(group(6, "dashed") + group(48, 3.0)), .linetypes = ltype});
  ASSERT_EQ(list.appearances.size(), 1u);
  EXPECT_EQ(list.appearances[0].dashes, (std::vector<double>{6, -3}));
}

TEST(Look, HidesLayersAndInvisibleEntities) {
  for (const std::string& hidden : {line("", "OFF"), line("", "FROZEN"), line(group(60, "1"))}) {
    const auto database = SampleDrawing{.entities = hidden}.open();
    const Drawer drawer(*database);
    const auto records = test::entitiesOf(*database);
    ASSERT_EQ(records.size(), 1u);
    DisplayList list;
    drawer.draw(records[0], list);
    EXPECT_TRUE(list.primitives.empty());
    EXPECT_TRUE(drawer.bounds(records[0]).isEmpty());
  }
}

std::string block(const std::string& name, const std::string& body) {
  return group(0, "BLOCK") + group(8, "0") + group(2, name) + point(10, 1, 0) + body + group(0, "ENDBLK");
}

TEST(Blocks, ArePlacedScaledTurnedAndRepeated) {
  const std::string insert = entity(
      "INSERT", group(2, "b") + point(10, 100, 50) + group(41, 2.0) + group(50, 90.0) + group(70, "2") + group(44, 30.0));
  const DisplayList list = draw({.entities = insert, .blocks = block("B", line())});
  ASSERT_EQ(list.primitives.size(), 2u);
  // The line 0,0 - 10,0 lies at -1 .. 9 from the base point; doubled and turned up it runs from y 48 to 68.
  const auto& first = std::get<Polyline>(list.primitives[0].shape).points;
  EXPECT_LE(first[0].distanceTo({100, 48, 0}), 1e-9);
  EXPECT_LE(first[1].distanceTo({100, 68, 0}), 1e-9);
  EXPECT_LE(std::get<Polyline>(list.primitives[1].shape).points[0].distanceTo({100, 78, 0}), 1e-9);
}

TEST(Blocks, OfDimensionsAreDisplacedByTheirInsertionPoint) {
  const std::string body = group(2, "*D1") + point(10, 7, 7);
  for (const auto& [placed, start] : {std::pair<std::string, KdGePoint3d>{"", {0, 0, 0}},
                                      {point(12, 100, 50), {100, 50, 0}},
                                      {point(12, 100, 50) + point(210, 0, 0, -1), {-100, 50, 0}}}) {
    const DisplayList list = draw({.entities = entity("DIMENSION", body + placed), .blocks = block("*D1", line())});
    ASSERT_EQ(list.primitives.size(), 1u);
    EXPECT_LE(std::get<Polyline>(list.primitives[0].shape).points[0].distanceTo(start), 1e-9);
  }
}

TEST(Blocks, PassOnColorAndLayerOfTheInsert) {
  const std::string blocks = block("B", line() + line(group(62, "0"), "RED"));
  const std::string insert = group(0, "INSERT") + group(100, "AcDbEntity") + group(8, "RED") + group(62, "3") +
                             group(100, "AcDbBlockReference") + group(2, "B") + point(10, 0, 0);
  const DisplayList list = draw({.entities = insert, .blocks = blocks});
  ASSERT_EQ(list.primitives.size(), 2u);
  EXPECT_EQ(list.appearances[list.primitives[0].appearance].rgb, 0xFF0000u);  // layer 0 means the insert's layer
  EXPECT_EQ(list.appearances[list.primitives[1].appearance].rgb, 0x00FF00u);  // by block
}

TEST(Blocks, ThatContainThemselvesOrMultiplyEnd) {
  const std::string self = entity("INSERT", group(2, "SELF") + point(10, 5, 0));
  EXPECT_EQ(draw({.entities = self, .blocks = block("SELF", line() + self)}).primitives.size(), 16u);

  std::string blocks, inner = entity("INSERT", group(2, "L0") + point(10, 0, 0));
  blocks += block("L0", line());
  for (int level = 1; level < 14; ++level) {
    const std::string ten = entity("INSERT", group(2, fmt::format("L{}", level - 1)) + group(70, "10") + group(71, "10"));
    blocks += block(fmt::format("L{}", level), ten);
  }
  const auto list = draw({.entities = entity("INSERT", group(2, "L13")), .blocks = blocks});
  EXPECT_LE(list.primitives.size(), 1'000'000u);
}

TEST(Curves, AreExact) {
  const double r = std::sqrt(0.5);
  struct Case {
    const char* name;
    std::string entity;
    KdGePoint3d start, middle, end;
  };
  const Case cases[] = {
      {"arc over 0 degrees",
       entity("ARC", point(10, 1, 2) + group(40, 2.0) + group(50, 270.0) + group(51, 90.0)),
       {1, 0, 0},
       {3, 2, 0},
       {1, 4, 0}},
      {"arc seen from below",
       entity("ARC", point(10, 1, 2) + group(40, 2.0) + group(50, 270.0) + group(51, 90.0) + point(210, 0, 0, -1)),
       {-1, 0, 0},
       {-3, 2, 0},
       {-1, 4, 0}},
      {"quarter of an ellipse",
       entity("ELLIPSE",
              point(10, 0, 0) + point(11, 0, 4) + group(40, 0.5) + group(41, 0.0) + group(42, 1.5707963267948966)),
       {0, 4, 0},
       {-2 * r, 4 * r, 0},
       {-2, 0, 0}},
      {"bulge of a half circle",
       entity("LWPOLYLINE",
              group(70, "0") + group(10, 0.0) + group(20, 0.0) + group(42, 1.0) + group(10, 4.0) + group(20, 0.0)),
       {0, 0, 0},
       {2, -2, 0},
       {4, 0, 0}},
      {"clockwise bulge of a quarter",
       entity("LWPOLYLINE", group(70, "0") + group(10, 0.0) + group(20, 0.0) + group(42, 1 - std::sqrt(2.0)) +
                                group(10, 2.0) + group(20, 0.0)),
       {0, 0, 0},
       {1, std::sqrt(2.0) - 1, 0},
       {2, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const DisplayList list = draw({.entities = c.entity});
    ASSERT_EQ(list.primitives.size(), 1u);
    const Arc& arc = std::get<Arc>(list.primitives[0].shape);
    EXPECT_LE(arc.at(arc.startRad).distanceTo(c.start), 1e-9);
    EXPECT_LE(arc.at(arc.startRad + arc.sweepRad / 2).distanceTo(c.middle), 1e-9);
    EXPECT_LE(arc.at(arc.startRad + arc.sweepRad).distanceTo(c.end), 1e-9);
  }
}

TEST(Curves, SplineWithBezierKnotsGoesThroughItsHandCalculatedMiddle) {
  std::string body = group(70, "8") + group(71, "3");
  for (const double knot : {0, 0, 0, 0, 1, 1, 1, 1}) body += group(40, knot);
  body += point(10, 0, 0) + point(10, 0, 4) + point(10, 4, 4) + point(10, 4, 0);
  const DisplayList list = draw({.entities = entity("SPLINE", body)});
  ASSERT_EQ(list.primitives.size(), 1u);
  const auto& points = std::get<Polyline>(list.primitives[0].shape).points;
  ASSERT_EQ(points.size() % 2, 1u);
  EXPECT_LE(points[points.size() / 2].distanceTo({2, 3, 0}), 1e-12);
  EXPECT_LE(points.back().distanceTo({4, 0, 0}), 1e-12);
}

TEST(Hatches, SolidIsFilledAndPatternIsClipped) {
  const std::string path = group(91, "1") + group(92, "3") + group(72, "0") + group(73, "1") + group(93, "4") +
                           group(10, 0.0) + group(20, 0.0) + group(10, 10.0) + group(20, 0.0) + group(10, 10.0) +
                           group(20, 4.0) + group(10, 0.0) + group(20, 8.0) + group(97, "0") + group(75, "0");
  const std::string solid = entity("HATCH", point(10, 0, 0) + group(2, "SOLID") + group(70, "1") + path);
  const DisplayList filled = draw({.entities = solid});
  ASSERT_EQ(filled.primitives.size(), 1u);
  EXPECT_EQ(std::get<Fill>(filled.primitives[0].shape).loops[0].size(), 4u);

  const std::string pattern = group(76, "1") + group(52, 0.0) + group(41, 1.0) + group(78, "1") + group(53, 0.0) +
                              group(43, 0.0) + group(44, 0.5) + group(45, 0.0) + group(46, 1.0) + group(79, "0");
  const DisplayList lines = draw({.entities = entity("HATCH", point(10, 0, 0) + group(70, "0") + path + pattern)});
  ASSERT_EQ(lines.primitives.size(), 8u);
  const auto& slanted = std::get<Polyline>(lines.primitives[4].shape).points;
  EXPECT_LE(slanted[0].distanceTo({0, 4.5, 0}), 1e-12);
  EXPECT_LE(slanted[1].distanceTo({8.75, 4.5, 0}), 1e-12);
  const auto& first = std::get<Polyline>(lines.primitives[0].shape).points;
  EXPECT_LE(first[0].distanceTo({0, 0.5, 0}), 1e-12);
  EXPECT_LE(first[1].distanceTo({10, 0.5, 0}), 1e-12);
}

TEST(Texts, LoseTheirCodes) {
  struct Case {
    const wchar_t *content, *plain;
  };
  const Case multiline[] = {
      {L"one\\Ptwo", L"one|two"},
      {L"{\\fArial|b0;\\H2.5x;big} \\Lunder\\l", L"big under"},
      {L"a\\~b \\\\ \\{c\\}", L"a b \\ {c}"},
      {L"\\S1^2; \\A1;x", L"1/2 x"},
      {L"\\C", L""},
      {L"%%c20 45%%d %%p1 50%%%",
       L"\x2300"
       L"20 45\xB0 \xB1"
       L"1 50%"},
      {L"%%065%%u!", L"A!"},
  };
  for (const Case& c : multiline) {
    std::wstring joined;
    for (const std::wstring& line : plainLines(c.content)) {
      if (!joined.empty()) joined += L'|';
      joined += line;
    }
    EXPECT_EQ(joined, c.plain);
  }
}

TEST(Texts, StandWhereTheirAlignmentSays) {
  const std::string centered = entity(
      "TEXT", point(10, 0, 0) + group(40, 2.0) + group(1, "HH") + group(72, "1") + point(11, 100, 10) + group(73, "2"));
  const DisplayList list = draw({.entities = centered});
  ASSERT_EQ(list.primitives.size(), 1u);
  const Text& text = std::get<Text>(list.primitives[0].shape);
  const double width = nominalTextWidth(L"HH") * 2;
  EXPECT_LE(text.origin.distanceTo({100 - width / 2, 9, 0}), 1e-9);
}

}  // namespace
}  // namespace torva::draw

#include "draw/drawer.h"

#include <cmath>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "draw/sample_drawing.h"
#include "draw/texts.h"
#include "support/drawing_text.h"

namespace torva::draw {
namespace {

using test::entity;
using test::group;
using test::groupsFrom;
using test::point;
using test::SampleDrawing;

DisplayList draw(const SampleDrawing& sample) {
  const auto database = sample.open();
  const Drawer drawer(*database);
  DisplayList list;
  for (const dxf::RecordId record : test::entitiesOf(*database)) drawer.draw(record, list);
  return list;
}

/// A line from 0,0 to 10,0 with groups of its look.
std::string line(const std::string& look = "", const std::string& layer = "0") {
  return group(0, "LINE") + group(100, "AcDbEntity") + group(8, layer) + look + group(100, "AcDbLine") + point(10, 0, 0) +
         point(11, 10, 0);
}

std::string block(const std::string& name, const std::string& entities) {
  return test::block(name, entities, {1, 0, 0});
}

const std::vector<KdGePoint3d>& pointsOf(const DisplayList& list, std::size_t primitive) {
  return std::get<Polyline>(list.primitives.at(primitive).shape).points;
}

const Appearance& lookOf(const DisplayList& list, std::size_t primitive) {
  return list.appearances.at(list.primitives.at(primitive).appearance);
}

TEST(Look, ResolvesColors) {
  const struct {
    const char* name;
    std::string entity;
    std::uint32_t rgb;
    bool isForeground;
  } cases[] = {
      {"own index", line(group(62, "3"), "RED"), 0x00FF00, false},
      {"true color before index", line(group(62, "3") + group(420, "66051"), "RED"), 0x010203, false},
      {"index 7 is the foreground", line(group(62, "7"), "RED"), 0, true},
      {"unknown layer", line("", "NOWHERE"), 0, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const DisplayList list = draw({.entities = c.entity});
    EXPECT_EQ(lookOf(list, 0).rgb, c.rgb);
    EXPECT_EQ(lookOf(list, 0).isForeground, c.isForeground);
  }
}

TEST(Look, ScalesLinetypes) {
  const std::string ltype = groupsFrom("0 LTYPE | 2 DASHED | 49 2 | 49 -1");
  const DisplayList list = draw({.entities = line(group(6, "dashed") + group(48, 3.0)), .linetypes = ltype});
  EXPECT_EQ(lookOf(list, 0).dashes, (std::vector<double>{6, -3}));
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

TEST(Blocks, ArePlacedScaledTurnedAndRepeated) {
  const std::string insert = entity("INSERT", groupsFrom("2 b | 10 100 | 20 50 | 41 2 | 50 90 | 70 2 | 44 30"));
  const DisplayList list = draw({.entities = insert, .blocks = block("B", line())});
  ASSERT_EQ(list.primitives.size(), 2u);
  // The line 0,0 - 10,0 lies at -1 .. 9 from the base point; doubled and turned up it runs from y 48 to 68.
  EXPECT_LE(pointsOf(list, 0)[0].distanceTo({100, 48, 0}), 1e-9);
  EXPECT_LE(pointsOf(list, 0)[1].distanceTo({100, 68, 0}), 1e-9);
  EXPECT_LE(pointsOf(list, 1)[0].distanceTo({100, 78, 0}), 1e-9);
}

TEST(Blocks, OfDimensionsAreDisplacedByTheirInsertionPoint) {
  const std::string body = group(2, "*D1") + point(10, 7, 7);
  for (const auto& [placed, start] : {std::pair<std::string, KdGePoint3d>{"", {0, 0, 0}},
                                      {point(12, 100, 50), {100, 50, 0}},
                                      {point(12, 100, 50) + point(210, 0, 0, -1), {-100, 50, 0}}}) {
    const DisplayList list = draw({.entities = entity("DIMENSION", body + placed), .blocks = block("*D1", line())});
    EXPECT_LE(pointsOf(list, 0)[0].distanceTo(start), 1e-9);
  }
}

TEST(Blocks, PassOnColorAndLayerOfTheInsert) {
  const std::string blocks = block("B", line() + line(group(62, "0"), "RED"));
  const std::string insert = groupsFrom("0 INSERT | 100 AcDbEntity | 8 RED | 62 3 | 100 AcDbBlockReference | 2 B");
  const DisplayList list = draw({.entities = insert, .blocks = blocks});
  EXPECT_EQ(lookOf(list, 0).rgb, 0xFF0000u) << "layer 0 means the insert's layer";
  EXPECT_EQ(lookOf(list, 1).rgb, 0x00FF00u) << "by block";
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
  const std::string half = groupsFrom("10 1 | 20 2 | 40 2 | 50 270 | 51 90");
  const std::string ellipse = groupsFrom("10 0 | 20 0 | 11 0 | 21 4 | 40 0.5 | 41 0 | 42 1.5707963267948966");
  const struct {
    const char* name;
    std::string entity;
    KdGePoint3d start, middle, end;
  } cases[] = {
      {"arc over 0 degrees", entity("ARC", half), {1, 0, 0}, {3, 2, 0}, {1, 4, 0}},
      {"arc seen from below", entity("ARC", half + point(210, 0, 0, -1)), {-1, 0, 0}, {-3, 2, 0}, {-1, 4, 0}},
      {"quarter of an ellipse", entity("ELLIPSE", ellipse), {0, 4, 0}, {-2 * r, 4 * r, 0}, {-2, 0, 0}},
      {"bulge of a half circle", test::path({{0, 0, 1}, {4, 0, 0}}), {0, 0, 0}, {2, -2, 0}, {4, 0, 0}},
  };
  for (const auto& c : cases) {
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
  const std::string body = groupsFrom(
      "70 8 | 71 3 | 40 0 | 40 0 | 40 0 | 40 0 | 40 1 | 40 1 | 40 1 | 40 1 | 10 0 | 20 0 | 10 0 | 20 4 | 10 4 | 20 4 | 10 4 "
      "| 20 0");
  const DisplayList list = draw({.entities = entity("SPLINE", body)});
  ASSERT_EQ(list.primitives.size(), 1u);
  const auto& points = pointsOf(list, 0);
  ASSERT_EQ(points.size() % 2, 1u);
  EXPECT_LE(points[points.size() / 2].distanceTo({2, 3, 0}), 1e-12);
  EXPECT_LE(points.back().distanceTo({4, 0, 0}), 1e-12);
}

TEST(Hatches, SolidIsFilledAndPatternIsClipped) {
  const std::string path =
      groupsFrom("91 1 | 92 3 | 72 0 | 73 1 | 93 4 | 10 0 | 20 0 | 10 10 | 20 0 | 10 10 | 20 4 | 10 0 | 20 8 | 97 0 | 75 0");
  const std::string solid = entity("HATCH", point(10, 0, 0) + group(2, "SOLID") + group(70, "1") + path);
  const DisplayList filled = draw({.entities = solid});
  ASSERT_EQ(filled.primitives.size(), 1u);
  EXPECT_EQ(std::get<Fill>(filled.primitives[0].shape).loops[0].size(), 4u);

  const std::string pattern = groupsFrom("76 1 | 52 0 | 41 1 | 78 1 | 53 0 | 43 0 | 44 0.5 | 45 0 | 46 1 | 79 0");
  const DisplayList lines = draw({.entities = entity("HATCH", point(10, 0, 0) + group(70, "0") + path + pattern)});
  ASSERT_EQ(lines.primitives.size(), 8u);
  EXPECT_LE(pointsOf(lines, 4)[0].distanceTo({0, 4.5, 0}), 1e-12);
  EXPECT_LE(pointsOf(lines, 4)[1].distanceTo({8.75, 4.5, 0}), 1e-12);
  EXPECT_LE(pointsOf(lines, 0)[0].distanceTo({0, 0.5, 0}), 1e-12);
  EXPECT_LE(pointsOf(lines, 0)[1].distanceTo({10, 0.5, 0}), 1e-12);
}

TEST(Texts, LoseTheirCodes) {
  const std::pair<const wchar_t*, std::vector<std::wstring>> cases[] = {
      {L"one\\Ptwo", {L"one", L"two"}},
      {L"{\\fArial|b0;\\H2.5x;big} \\Lunder\\l", {L"big under"}},
      {L"a\\~b \\\\ \\{c\\}", {L"a b \\ {c}"}},
      {L"\\S1^2; \\A1;x", {L"1/2 x"}},
      {L"\\C", {L""}},
      {L"%%c x 45%%d %%p y 50%%%", {L"\x2300 x 45\xB0 \xB1 y 50%"}},
      {L"%%065%%u!", {L"A!"}},
  };
  for (const auto& [content, plain] : cases) EXPECT_EQ(plainLines(content), plain);
}

}  // namespace
}  // namespace torva::draw

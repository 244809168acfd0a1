#include "view/snap.h"

#include <gtest/gtest.h>

#include "draw/sample_drawing.h"

namespace torva::view {
namespace {

using test::circle;
using test::entity;
using test::group;
using test::line;
using test::point;

View viewWith(const std::string& groups) {
  View view = View::ofDrawing(*test::SampleDrawing{.viewport = test::viewport(groups)}.open(), 1000, 1000);
  view.set({0, 0, 0}, 1000);  // a pixel is a unit
  return view;
}

TEST(Snap, ChoosesByKindAndPlace) {
  constexpr int kEnd = 1, kMiddle = 2, kCentre = 4, kCross = 32, kSquare = 128, kNearest = 512, kAll = 679;
  const std::string block = test::block("B", circle(100, 100, 5));
  const std::string open = test::path({{0, 0, 0}, {40, 0, 0}, {40, 30, 0}}),
                    closed = test::path({{0, 0, 0}, {40, 0, 0}, {40, 30, 0}}, 1);
  const std::string arc = entity("ARC", point(10, 0, 0) + group(40, 10.0) + group(50, 20.0) + group(51, 340.0));
  const std::string ellipse = entity("ELLIPSE", point(10, 0, 0) + point(11, 10, 0) + group(40, 0.5));
  const std::string insert = entity("INSERT", group(2, "B") + point(10, -100, -100) + group(41, 2.0));
  const std::string solid = entity("SOLID", point(10, 0, 0) + point(11, 9, 0) + point(12, 0, 9) + point(13, 9, 9));
  std::string spline = group(71, "3") + group(72, "8");
  for (const double knot : {0, 0, 0, 0, 1, 1, 1, 1}) spline += group(40, knot);
  for (const double x : {0, 10, 20, 30}) spline += point(10, x, 0);
  using enum SnapKind;
  const auto at = [](SnapKind kind, double x, double y) { return std::pair{kind, KdGePoint3d{x, y, 0}}; };
  const struct {
    const char* name;
    std::string entities;
    KdGePoint3d cursor;
    int modes;
    std::optional<KdGePoint3d> base;
    std::optional<std::pair<SnapKind, KdGePoint3d>> expected;
  } rows[] = {
      {"an end before what is nearer", line(0, 0, 90, 0), {6, 1, 0}, kAll, {}, at(end, 0, 0)},
      {"nothing in sight", line(0, 0, 90, 0), {40, 11, 0}, kAll, {}, {}},
      {"nearest when there is nothing else", line(0, 0, 90, 0), {30, 1, 0}, kAll, {}, at(nearest, 30, 0)},
      {"only the kinds wanted", line(0, 0, 90, 0), {1, 0, 0}, kMiddle | kCentre, {}, {}},
      {"an end before a crossing there", line(0, 0, 9, 0) + line(0, 0, 0, 9), {1, 1, 0}, kAll, {}, at(end, 0, 0)},
      {"the crossing of a tee", line(0, 0, 90, 0) + line(30, 0, 30, 90), {31, 1, 0}, kCross, {}, at(intersection, 30, 0)},
      {"passing at another height", line(0, 0, 90, 0) + line(30, -9, 30, 90, 1), {31, 1, 0}, kCross, {}, {}},
      {"parallels", line(0, 0, 90, 0) + line(10, 0, 70, 0), {31, 1, 0}, kCross, {}, {}},
      {"a corner crosses itself", open, {39, 1, 0}, kCross, {}, at(intersection, 40, 0)},
      {"open: no way back", open, {20, 15, 0}, kAll, {}, {}},
      {"closed: the way back", closed, {20, 16, 0}, kMiddle, {}, at(middle, 20, 15)},
      {"touching circles", circle(0, 0, 5) + circle(12, 0, 7), {6, 1, 0}, kCross, {}, at(intersection, 5, 0)},
      {"a tangent", line(-9, 5, 9, 5) + circle(0, 0, 5), {1, 6, 0}, kCross, {}, at(intersection, 0, 5)},
      {"the gap of an arc", line(0, 0, 20, 0) + arc, {10, 0, 0}, kCross, {}, {}},
      {"a centre from far", circle(0, 0, 90), {91, 1, 0}, kCentre, {}, at(centre, 0, 0)},
      {"a whole circle has no ends", circle(0, 0, 9), {9, 0, 0}, kEnd | kMiddle, {}, {}},
      {"in a block, stretched", insert, {110, 0, 0}, kCentre, {}, at(centre, 100, 0)},
      {"a foot from far", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{5, 50, 0}, at(perpendicular, 5, 0)},
      {"a foot beyond the end", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{-5, 50, 0}, {}},
      {"no foot at the base", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{5, 0, 0}, {}},
      {"no foot from the center", circle(0, 0, 9), {9, 0, 0}, kSquare, KdGePoint3d{}, {}},
      {"the near foot of a circle", circle(0, 0, 9), {9, 1, 0}, kSquare, KdGePoint3d{-50, 0, 0}, at(perpendicular, 9, 0)},
      {"the far crossing of circles", circle(0, 0, 5) + circle(6, 0, 5), {3, -5, 0}, kCross, {}, at(intersection, 3, -4)},
      {"a line and an ellipse", line(6, 0, 6, 90) + ellipse, {6, 5, 0}, kCross, {}, at(intersection, 6, 4)},
      {"an ellipse and a circle", ellipse + circle(6, 1, 3), {6, 5, 0}, kCross, {}, at(intersection, 6, 4)},
      {"the foot on an ellipse", ellipse, {6, 5, 0}, kSquare, KdGePoint3d{18, 36, 0}, at(perpendicular, 6, 4)},
      {"no foot in an arc's gap", arc, {9, 4, 0}, kSquare, KdGePoint3d{50, 0, 0}, at(perpendicular, -10, 0)},
      {"a spline has no corners", entity("SPLINE", spline), {15, 0, 0}, kEnd | kMiddle, {}, {}},
      {"a spline has ends", entity("SPLINE", spline), {29, 0, 0}, kEnd | kMiddle, {}, at(end, 30, 0)},
      {"a dot", entity("POINT", point(10, 3, 4)), {0, 0, 0}, kAll, {}, at(end, 3, 4)},
      {"a line without length", line(3, 4, 3, 4), {0, 0, 0}, kAll, KdGePoint3d{}, at(end, 3, 4)},
      {"a layer that is off", entity("LINE", point(10, 0, 0) + point(11, 90, 0), "OFF"), {0, 0, 0}, kNearest, {}, {}},
      {"no fills", solid, {0, 0, 0}, kAll, {}, {}},
  };
  const View upright = viewWith(""), turned = viewWith(group(51, 90.0)), far = viewWith(point(17, 4.5e6, 5.4e6, 0));
  for (const auto& row : rows) {
    const auto database = test::SampleDrawing{.entities = row.entities, .blocks = block}.open();
    Picker picker(*database);
    for (const View* view : {&upright, &turned, &far}) {
      const auto snap = findSnap(picker, *view, {row.cursor, 10, row.modes, row.base});
      ASSERT_EQ(snap.has_value(), row.expected.has_value()) << row.name;
      if (!snap) continue;
      EXPECT_EQ(snap->kind, row.expected->first) << row.name;
      EXPECT_LE(snap->pointWcs.distanceTo(row.expected->second), 1e-8) << row.name;
      EXPECT_NEAR(snap->distancePx, snap->pointWcs.distanceTo(row.cursor), 1e-8) << row.name;
    }
  }
}

TEST(Snap, OffersOnlyTheNearestWhereTooMuchIsDrawn) {
  std::string text;
  for (std::size_t i = 0; i <= kMostSnapEntities; ++i) text += line(0, 0, 9, 9);
  const auto database = test::SampleDrawing{.entities = text}.open();
  Picker picker(*database);
  const auto snap = findSnap(picker, viewWith(""), {{0, 1, 0}, 10, 1 | 512, {}});
  ASSERT_TRUE(snap);
  EXPECT_EQ(snap->kind, SnapKind::nearest);
  EXPECT_FALSE(findSnap(picker, viewWith(""), {{0, 1, 0}, 10, 1, {}}));
}

}  // namespace
}  // namespace torva::view

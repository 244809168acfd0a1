#include "view/hit_test.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace torva::view {
namespace {

using draw::Arc;
using draw::Fill;
using draw::Polyline;

std::optional<double> hit(const draw::Shape& shape, const KdGePoint3d& center, double halfSide) {
  draw::DisplayList list;
  list.primitives.push_back({shape, 0});
  return distanceIfMet(list, View(), {center, halfSide});
}

TEST(HitTest, MeasuresWhatMeetsTheSquare) {
  constexpr double kTurn = 2 * std::numbers::pi;
  const Polyline line{{{0, 0, 0}, {10, 0, 0}}, false}, dot{{{5, 5, 7}}, false};
  const Arc half{{0, 0, 0}, {5, 0, 0}, {0, 5, 0}, 0, std::numbers::pi}, circle{{0, 0, 0}, {5, 0, 0}, {0, 5, 0}, 0, kTurn};
  const Fill frame{{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {{2, 2, 0}, {8, 2, 0}, {8, 8, 0}, {2, 8, 0}}}};
  const draw::Text text{L"HH", {0, 0, 0}, {10, 0, 0}, {0, 10, 0}};
  constexpr double kMiss = -1;
  const struct {
    const char* name;
    draw::Shape shape;
    KdGePoint3d center;
    double halfSide, distance;
  } cases[] = {
      {"line through the square", line, {4, 1, 0}, 2, 1},
      {"line touches the border", line, {4, 2, 0}, 2, 2},
      {"square beyond the end", line, {11, 1, 0}, 1, std::sqrt(2.0)},
      {"diagonal passes the corner", Polyline{{{0, 3, 0}, {3, 0, 0}}, false}, {0, 0, 0}, 1.4, kMiss},
      {"height above the plane does not count", dot, {5, 4, 0}, 1, 1},
      {"arc from outside", half, {0, 6, 0}, 2, 1},
      {"where the half circle is not", half, {0, -5, 0}, 2, kMiss},
      {"end of the arc", half, {5, -1, 0}, 1, 1},
      {"circle's center is far from it", circle, {0, 0, 0}, 2, kMiss},
      {"inside an area", frame, {1, 1, 0}, 0.5, 0},
      {"in an area's hole", frame, {5, 5, 0}, 0.5, kMiss},
      {"at the hole's edge", frame, {5, 2.25, 0}, 0.5, 0.25},
      {"text between its strokes", text, {5, 7, 0}, 0.5, 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto distance = hit(c.shape, c.center, c.halfSide);
    if (c.distance == kMiss) {
      EXPECT_FALSE(distance);
      continue;
    }
    ASSERT_TRUE(distance);
    EXPECT_NEAR(*distance, c.distance, 1e-9);
  }
}

TEST(HitTest, AgreesWithASampledEllipse) {
  std::mt19937 random(11);
  std::uniform_real_distribution<> number(-10, 10);
  for (int i = 0; i < 300; ++i) {
    const Arc arc{{number(random), number(random), 0},
                  {number(random), number(random), 0},
                  {number(random), number(random), 0},
                  number(random),
                  number(random) / 2};
    const double halfSide = std::abs(number(random)) / 3;
    constexpr int kSamples = 100'000;
    double least = 1e9, deepest = 1e9;
    for (int k = 0; k <= kSamples; ++k) {
      const KdGePoint3d p = arc.at(arc.startRad + arc.sweepRad * k / kSamples);
      least = std::min(least, std::hypot(p.x, p.y));
      deepest = std::min(deepest, std::max(std::abs(p.x), std::abs(p.y)));
    }
    const auto distance = hit(arc, {0, 0, 0}, halfSide);
    if (std::abs(deepest - halfSide) < 1e-3) continue;  // too close for the samples to tell
    ASSERT_EQ(distance.has_value(), deepest < halfSide) << "round " << i;
    if (distance) {
      EXPECT_NEAR(*distance, least, 1e-3) << "round " << i;
    }
  }
}

TEST(LiesIn, TellsWholeFromPartAndNone) {
  const Polyline line{{{0, 0, 0}, {10, 4, 0}}, false};
  const Arc half{{5, 5, 0}, {5, 0, 0}, {0, 5, 0}, 0, std::numbers::pi};
  const Fill square{{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}}};
  const draw::Text text{L"HH", {0, 0, 0}, {10, 0, 0}, {0, 10, 0}};
  const struct {
    const char* name;
    draw::Shape shape;
    PickWindow window;
    bool isWhole, isPart;
  } rows[] = {
      {"line within", line, {{-1, -1, 0}, {11, 5, 0}}, true, true},
      {"line through a flat window", line, {{2, 0, 0}, {8, 3, 0}}, false, true},
      {"line beside a flat window, near its middle", line, {{4, 2.5, 0}, {6, 9, 0}}, false, false},
      {"line over a corner", line, {{-1, 3.5, 0}, {9, 9, 0}}, false, true},
      {"half circle within", half, {{0, 5, 0}, {10, 10, 0}}, true, true},
      {"half circle through a flat window", half, {{0, 9, 0}, {10, 9.5, 0}}, false, true},
      {"within an area", square, {{2, 3, 0}, {8, 4, 0}}, false, true},
      {"between the strokes of a text", text, {{4, 2, 0}, {6, 3, 0}}, false, true},
  };
  for (const auto& row : rows) {
    draw::DisplayList list;
    list.primitives.push_back({row.shape, 0});
    EXPECT_EQ(liesIn(list, View(), row.window, WindowRule::whole), row.isWhole) << row.name;
    EXPECT_EQ(liesIn(list, View(), row.window, WindowRule::part), row.isPart) << row.name;
    list.primitives.push_back({Polyline{{{99, 99, 0}, {98, 98, 0}}, false}, 0});
    EXPECT_FALSE(liesIn(list, View(), row.window, WindowRule::whole)) << row.name << ", something else not";
    EXPECT_EQ(liesIn(list, View(), row.window, WindowRule::part), row.isPart) << row.name;
  }
  EXPECT_FALSE(liesIn({}, View(), {{0, 0, 0}, {1, 1, 0}}, WindowRule::whole)) << "what draws nothing";
}

}  // namespace
}  // namespace torva::view

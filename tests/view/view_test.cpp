#include "view/view.h"

#include <gtest/gtest.h>
#include <random>

#include "draw/sample_drawing.h"

namespace torva::view {
namespace {

using test::group;
using test::point;

View viewOf(const std::string& viewport, int width = 1000, int height = 1000) {
  const std::string record = viewport.empty() ? "" : test::viewport(viewport);
  return View::ofDrawing(*test::SampleDrawing{.viewport = record}.open(), width, height);
}

void expectNear(const KdGePoint3d& actual, const KdGePoint3d& expected) {
  EXPECT_LE(actual.distanceTo(expected), 1e-9) << actual.x << "," << actual.y << "," << actual.z;
}

TEST(View, StartsAsTheDrawingHasIt) {
  const View view = viewOf(group(12, 70.0) + group(22, 30.0) + group(40, 200.0), 1600, 800);
  expectNear(view.centerDcs(), {70, 30, 0});
  EXPECT_EQ(view.width(), 400);
  EXPECT_EQ(view.unitsPerPixel(2), 0.5);
  for (const std::string& none : {std::string(), group(40, -5.0)}) EXPECT_EQ(viewOf(none).height(), 10);
}

TEST(View, ProjectsAlongItsDirection) {
  const struct {
    const char* name;
    std::string viewport;
    KdGePoint3d world, display;
  } cases[] = {
      {"target is the origin", point(17, 10, 20, 30), {11, 22, 33}, {1, 2, 3}},
      {"twist turns the picture counter-clockwise", group(51, 90.0), {1, 2, 3}, {-2, 1, 3}},
      {"from the front", point(16, 0, -1, 0), {1, 2, 3}, {1, 3, -2}},
      {"from below", point(16, 0, 0, -1), {1, 2, 3}, {-1, 2, -3}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    expectNear(viewOf(c.viewport).toDisplay(c.world), c.display);
  }
}

TEST(View, MapsBackWhatItMapped) {
  std::mt19937 random(1);
  std::uniform_real_distribution<> number(-100, 100);
  for (int i = 0; i < 100; ++i) {
    const View view = viewOf(point(16, number(random), number(random), number(random)) +
                             point(17, number(random), number(random), number(random)) + group(51, number(random)));
    const KdGePoint3d a{number(random), number(random), number(random)}, b{number(random), number(random), number(random)};
    expectNear(view.toWorld(view.toDisplay(a)), a);
    EXPECT_NEAR(view.toDisplay(a).distanceTo(view.toDisplay(b)), a.distanceTo(b), 1e-9);
  }
}

TEST(View, FitsABox) {
  View view = viewOf("", 2000, 1000);
  view.fit({{0, 0, 0}, {100, 10, 0}}, 0.1);
  expectNear(view.centerDcs(), {50, 5, 0});
  EXPECT_DOUBLE_EQ(view.height(), 60);
  view.fit({{7, 8, 0}, {7, 8, 0}});
  expectNear(view.centerDcs(), {7, 8, 0});
  EXPECT_DOUBLE_EQ(view.height(), 60);
  view.fit({});
  expectNear(view.centerDcs(), {7, 8, 0});
}

}  // namespace
}  // namespace torva::view

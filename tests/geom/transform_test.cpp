#include "geom/transform.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace torva::geom {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void expectNear(const KdGePoint3d& actual, const KdGePoint3d& expected) {
  EXPECT_LE(actual.distanceTo(expected), 1e-12) << actual.x << "," << actual.y << "," << actual.z;
}

TEST(Transform, AppliesTheInnerMapFirst) {
  const Transform turn = Transform::rotationZ(std::numbers::pi / 2), shift = Transform::translation({10, 0, 1});
  expectNear((shift * turn)(KdGePoint3d{2, 0, 0}), {10, 2, 1});
  expectNear((turn * shift)(KdGePoint3d{2, 0, 0}), {0, 12, 1});
  expectNear((turn * Transform::scaling(2, 3, 4))(KdGePoint3d{1, 1, 1}), {-3, 2, 4});
}

TEST(Transform, FollowsTheArbitraryAxisRule) {
  const double r = std::sqrt(0.5);
  const struct {
    const char* name;
    KdGeVector3d extrusion;
    KdGePoint3d local, world;
  } cases[] = {
      {"up, not of length 1", {0, 0, 7}, {1, 2, 3}, {1, 2, 3}},
      {"down mirrors x", {0, 0, -1}, {1, 2, 3}, {-1, 2, -3}},
      {"along x", {1, 0, 0}, {1, 2, 3}, {3, 1, 2}},
      {"slanted in y-z", {0, -1, 1}, {1, 1, 0}, {1, r, r}},
      {"zero counts as up", {0, 0, 0}, {1, 2, 3}, {1, 2, 3}},
      {"no number counts as up", {kNaN, 0, 1}, {1, 2, 3}, {1, 2, 3}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    expectNear(Transform::fromExtrusion(c.extrusion)(c.local), c.world);
  }
}

TEST(Box, IgnoresWhatIsNoNumber) {
  Box3 box;
  box.add(KdGePoint3d{kNaN, kNaN, kNaN});
  EXPECT_TRUE(box.isEmpty());
  box.add(KdGePoint3d{1, 2, 3});
  box.add(KdGePoint3d{kNaN, 5, 3});
  expectNear(box.min, {1, 2, 3});
  expectNear(box.max, {1, 5, 3});
  EXPECT_TRUE(Box3{}.grownBy(5).isEmpty());
}

}  // namespace
}  // namespace torva::geom

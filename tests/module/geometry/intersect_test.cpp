#include "geometry/intersect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using Point = std::array<double, 3>;
using Crossing = short (*)(const double*, const double*, const double*, const double*, double*);

struct Row {
  const char* name;
  Point p1, p2, p3, p4;
  short result;
  Point out;  // as it stands after the call; kBefore where nothing is to be written
};

constexpr Point kBefore = {-77, -78, 0};

void check(Crossing cross, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    Point out = {kBefore[0], kBefore[1], row.p1[2]};
    EXPECT_EQ(cross(row.p1.data(), row.p2.data(), row.p3.data(), row.p4.data(), out.data()), row.result) << row.name;
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(out[i], row.out[i], 1e-12 * std::max(1.0, std::abs(row.out[i]))) << row.name << i;
  }
}

TEST(PlanIntersection, TellsOnWhichSegmentsTheLinesMeet) {
  const auto upright = [](double x) { return std::pair<Point, Point>({x, -1, 0}, {x, 1, 0}); };
  const auto [near, nearTop] = upright(1 + 5e-8);
  const auto [beyond, beyondTop] = upright(1 + 2e-7);
  const auto [far, farTop] = upright(1.001e6 + 5e-6);
  const auto [farther, fartherTop] = upright(1.001e6 + 5e-5);
  const Point a = {0, 0, 0}, b = {1, 0, 0}, farA = {1e6, 0, 0}, farB = {1.001e6, 0, 0};
  check(gx_linexline, {
                          {"both", a, {4, 4, 0}, {0, 4, 0}, {4, 0, 0}, 3, {2, 2, 0}},
                          {"first only", a, {4, 0, 0}, {2, 1, 0}, {2, 5, 0}, 1, {2, 0, 0}},
                          {"second only", a, b, {2, -1, 0}, {2, 1, 0}, 2, {2, 0, 0}},
                          {"neither", a, b, {2, 1, 0}, {2, 5, 0}, 0, {2, 0, 0}},
                          {"end within the tolerance", a, b, near, nearTop, 3, {near[0], 0, 0}},
                          {"end just beyond it", a, b, beyond, beyondTop, 2, {beyond[0], 0, 0}},
                          {"far out, an end by its digits", farA, farB, far, farTop, 3, {far[0], 0, 0}},
                          {"the same at the height on entry",
                           {1e6, 0, 50},
                           {1.001e6, 0, 50},
                           {far[0], -1, 50},
                           {far[0], 1, 50},
                           3,
                           {far[0], 0, 50}},
                          {"far out, beyond the end", farA, farB, farther, fartherTop, 2, {farther[0], 0, 0}},
                      });
}

TEST(PlanIntersection, LeavesParallelAndPointlikeSegmentsAlone) {
  check(gx_linexline,
        {
            {"parallel", {0, 0, 0}, {4, 2, 0}, {0, 1, 0}, {4, 3, 0}, -1, kBefore},
            {"one line", {0, 0, 0}, {4, 2, 0}, {8, 4, 0}, {2, 1, 0}, -1, kBefore},
            {"first without length", {1, 1, 0}, {1, 1, 0}, {0, 0, 0}, {4, 0, 0}, -1, kBefore},
            {"no length by its digits", {1e6, 1e6, 0}, {1e6 + 5e-6, 1e6, 0}, {0, 0, 0}, {1e6, 2e6, 0}, -1, kBefore},
            {"steep, slopes alike", {0, 0, 0}, {0, 1000, 0}, {1, 0, 0}, {1 + 1e-9, 1000, 0}, -1, kBefore},
        });
}

TEST(PlanIntersection, HeightComesFromTheFirstOnlyWhereTheFirstAloneIsMet) {
  check(gx_linexline, {
                          {"both: second", {0, 0, 0}, {4, 4, 8}, {0, 4, 100}, {4, 0, 200}, 3, {2, 2, 150}},
                          {"first only: first", {0, 0, 0}, {4, 0, 8}, {1, 1, 100}, {1, 5, 200}, 1, {1, 0, 2}},
                          {"second only: second", {0, 0, 0}, {1, 0, 8}, {2, -1, 100}, {2, 1, 200}, 2, {2, 0, 150}},
                      });
}

// Segments that meet at small angles, against the parametric form in long double.
TEST(PlanIntersection, StaysWithinItsErrorBoundForNearlyParallelSegments) {
  constexpr unsigned kSeed = 20240601;
  SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
  std::mt19937_64 random(kSeed);
  std::uniform_real_distribution<double> place(-1000, 1000), turn(0, 6.3), smallness(-6, 0), length(1, 100);
  int compared = 0;
  for (int i = 0; i < 20000; ++i) {
    const double angle = turn(random), between = std::pow(10, smallness(random)), l1 = length(random), l2 = length(random);
    const Point p1 = {place(random), place(random), 0}, p3 = {p1[0] + length(random), p1[1] + length(random), 0};
    const Point p2 = {p1[0] + l1 * std::cos(angle), p1[1] + l1 * std::sin(angle), 0};
    const Point p4 = {p3[0] + l2 * std::cos(angle + between), p3[1] + l2 * std::sin(angle + between), 0};
    Point out = {0, 0, 0};
    if (gx_linexline(p1.data(), p2.data(), p3.data(), p4.data(), out.data()) < 0) continue;
    ++compared;
    using Exact = long double;
    const Exact dx1 = Exact(p2[0]) - p1[0], dy1 = Exact(p2[1]) - p1[1], dx2 = Exact(p4[0]) - p3[0],
                dy2 = Exact(p4[1]) - p3[1];
    const Exact c = dx1 * dy2 - dy1 * dx2, t = ((Exact(p3[0]) - p1[0]) * dy2 - (Exact(p3[1]) - p1[1]) * dx2) / c;
    const Exact x = p1[0] + t * dx1, y = p1[1] + t * dy1, size = std::max({1000.0L, std::abs(x), std::abs(y)});
    const Exact bound = 16 * std::numeric_limits<double>::epsilon() * size * l1 * l2 / std::abs(c);
    EXPECT_LE(std::max(std::abs(out[0] - x), std::abs(out[1] - y)), bound) << i;
  }
  EXPECT_GT(compared, 19000);
}

TEST(SpaceIntersection, TellsHowTwoSegmentsLie) {
  check(linexline3d, {
                         {"meet on both", {0, 0, 0}, {4, 4, 4}, {0, 4, 4}, {4, 0, 0}, 3, {2, 2, 2}},
                         {"first only", {0, 0, 0}, {4, 0, 4}, {2, 1, 2}, {2, 5, 2}, 1, {2, 0, 2}},
                         {"second only", {0, 0, 0}, {1, 0, 0}, {2, -1, 0}, {2, 1, 0}, 2, {2, 0, 0}},
                         {"skew", {0, 0, 0}, {4, 4, 4}, {0, 4, 9}, {4, 0, 9}, -4, {2, 2, 2}},
                         {"parallel", {0, 0, 0}, {4, 0, 0}, {0, 1, 0}, {4, 1, 0}, -1, kBefore},
                         {"end to end", {0, 0, 0}, {4, 2, 0}, {4, 2, 0}, {8, 4, 0}, 3, {4, 2, 0}},
                         {"end to end, second first", {4, 2, 0}, {8, 4, 0}, {4, 2, 0}, {3.5, 1.75, 0}, 3, {4, 2, 0}},
                         {"overlapping", {0, 0, 0}, {4, 0, 0}, {6, 0, 0}, {3, 0, 0}, -2, {3, 0, 0}},
                         {"apart on one line", {0, 0, 0}, {4, 0, 0}, {5, 0, 0}, {8, 0, 0}, -3, kBefore},
                     });
}

TEST(SpaceIntersection, VerticalSegmentsAreJudgedByHeight) {
  check(linexline3d,
        {
            {"end to end", {1, 2, 0}, {1, 2, 5}, {1, 2, 9}, {1, 2, 5}, 3, {1, 2, 5}},
            {"overlapping", {1, 2, 0}, {1, 2, 5}, {1, 2, 9}, {1, 2, 4}, -2, {1, 2, 4}},
            {"apart", {1, 2, 0}, {1, 2, 5}, {1, 2, 9}, {1, 2, 6}, -3, kBefore},
            {"vertical meets sloping", {1, 0, 0}, {1, 0, 5}, {0, 0, 2}, {2, 0, 4}, 3, {1, 0, 3}},
            {"sloping meets vertical below its foot", {0, 0, 2}, {2, 0, 4}, {1, 0, 4}, {1, 0, 9}, 1, {1, 0, 3}},
            {"vertical beside the sloping one", {1, 1, 0}, {1, 1, 5}, {0, 0, 2}, {2, 0, 4}, -4, {1, 1, 3}},
            {"vertical meets the extension of the sloping one", {9, 0, 0}, {9, 0, 50}, {0, 0, 2}, {2, 0, 4}, 1, {9, 0, 11}},
        });
}

}  // namespace

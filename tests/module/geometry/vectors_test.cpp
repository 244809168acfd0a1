#include "geometry/vectors.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace {

constexpr double kPi = std::numbers::pi;
const double kOrigin[3] = {0, 0, 0};

TEST(Vectors, ProductsAndDistances) {
  double a[3] = {1, 2, 3}, b[3] = {4, 5, 6};
  EXPECT_EQ(vexengine_distance(std::array{-1.0, -1.0, -3.0}.data(), a), 7);
  EXPECT_EQ(vexengine_distance(nullptr, a) + vexengine_distance(a, nullptr), 0);
  gx_crossproduct(a, b, b);
  EXPECT_EQ(std::to_array(b), (std::array{-3.0, 6.0, -3.0})) << "the result may replace an operand";
  const C3Point x(2, 0, 0), y(0, 3, 0), slanted(7, 8, 0.5);
  EXPECT_EQ(Determinant(x, y, nullptr), 6) << "counter-clockwise, seen from above";
  EXPECT_EQ(Determinant(C3Point(1, 2, 3), C3Point(4, 5, 6), &slanted), -3 * 7 + 6 * 8 - 3 * 0.5);
}

TEST(Vectors, AngleIsOfThePlanAndNeverNegative) {
  struct Row {
    const char* name;
    double to[3];
    double angle;
  };
  const Row rows[] = {
      {"east", {1, 0, 0}, 0},
      {"north", {0, 1, 9}, kPi / 2},
      {"south-east", {1, -1, 0}, 7 * kPi / 4},
      {"within the tolerance", {-1e-10, 1e-10, 0}, 0},
      {"just beyond it", {-2e-10, 0, 0}, kPi},
  };
  for (const Row& row : rows) EXPECT_DOUBLE_EQ(vexengine_angle(kOrigin, row.to), row.angle) << row.name;
  EXPECT_EQ(vexengine_angle(nullptr, kOrigin) + vexengine_angle(kOrigin, nullptr), 0);
}

TEST(Vectors, ProjectionTellsWhetherTheFootLiesOnTheSegment) {
  struct Row {
    const char* name;
    double p[3], a[3], b[3];
    short status;
    double distance;
    std::array<double, 3> foot;
  };
  const Row rows[] = {
      {"inside", {3, 4, 0}, {0, 0, 0}, {10, 0, 0}, 1, 4, {3, 0, 0}},
      {"at the end", {10, 4, 0}, {0, 0, 0}, {10, 0, 0}, 1, 4, {10, 0, 0}},
      {"beyond b", {12, 4, 0}, {0, 0, 0}, {10, 0, 0}, 0, 4, {12, 0, 0}},
      {"before a", {-1, 0, 3}, {0, 0, 0}, {10, 0, 0}, 0, 3, {-1, 0, 0}},
      {"along z, below", {3, 4, -5}, {0, 0, 0}, {0, 0, 10}, 0, 5, {0, 0, -5}},
      {"no length", {3, 4, 0}, {0, 0, 0}, {0, 1e-12, 0}, -1, 5, {0, 0, 0}},
  };
  for (const Row& row : rows) {
    double distance = -1;
    std::array<double, 3> foot{};
    EXPECT_EQ(gx_ptlndist(row.p, row.a, row.b, &distance, foot.data()), row.status) << row.name;
    EXPECT_EQ(distance, row.distance) << row.name;
    EXPECT_EQ(foot, row.foot) << row.name;
  }
  double distance = -1;
  EXPECT_EQ(gx_ptlndist(nullptr, kOrigin, kOrigin, &distance, nullptr), -2);
  EXPECT_EQ(distance, 0);
}

TEST(Vectors, AFootFarBeyondIsOutsideWhateverTheRounding) {
  constexpr unsigned kSeed = 7;
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> exponent(-14, 7), sign(-1, 1);
  const auto coordinate = [&] { return sign(random) * std::pow(10, exponent(random)); };
  int passedOver = 0;
  for (int i = 0; i < 200'000; ++i) {
    double a[3] = {coordinate(), coordinate(), coordinate()}, b[3], p[3];
    for (int k = 0; k < 3; ++k) {
      // Coordinates that are equal or next to each other, or apart by any distance.
      b[k] = i % 3 == 0 ? std::nextafter(a[k], a[k] + 1) : random() % 4 == 0 ? a[k] : a[k] + coordinate();
      p[k] = random() % 4 == 0 ? a[k] : a[k] + coordinate();
    }
    if (!isFootFarBeyond(p, a, b)) continue;
    ++passedOver;
    double foot[3];
    ASSERT_EQ(gx_ptlndist(p, a, b, nullptr, foot), 0) << "seed " << kSeed << ", case " << i;
    for (int k = 0; k < 3; ++k) {
      ASSERT_FALSE((a[k] <= foot[k] && foot[k] < b[k]) || (b[k] < foot[k] && foot[k] <= a[k])) << "case " << i;
    }
  }
  EXPECT_GT(passedOver, 20'000);
}

}  // namespace

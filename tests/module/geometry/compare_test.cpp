#include "geometry/compare.h"

#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace {

using Comparison = bool (*)(double, double, double);

TEST(Compare, WhatIsRelativeAndWhatIsStrict) {
  constexpr double kTurn = 2 * std::numbers::pi, kNan = std::numeric_limits<double>::quiet_NaN();
  const Comparison isZero = [](double v, double, double tol) { return IMgxadIsZero(v, tol); };
  const Comparison relative = IMgxadRealEqual, absolute = mlineRealEqual, plain = KvMath::isEqual, angle = mlineAngleEqual;
  const Comparison between0And10 = [](double v, double, double tol) {
    return mlineRealBetween(v, 0, 10, tol) && mlineRealBetween(v, 10, 0, tol);
  };
  const struct {
    const char* name;
    Comparison compare;
    double a, b, tol;
    bool isEqual;
  } rows[] = {
      {"zero: at the upper bound", isZero, 1e-11, 0, 1e-11, true},
      {"zero: below the lower one", isZero, -1.01e-11, 0, 1e-11, false},
      {"zero: no number", isZero, kNan, 0, 1e-11, false},
      {"relative, not absolute", relative, 1000.0005, 1000, 0.001, true},
      {"difference at the tolerance", relative, 1.5, 1, 0.5, true},
      {"value not near zero", relative, 0.0011, 0.0001, 0.001, false},
      {"100 is 50 % above 66.7", relative, 100, 66.7, 0.4, false},
      {"66.7 is 33 % below 100", relative, 66.7, 100, 0.4, true},
      {"absolute: does not scale", absolute, 1000.002, 1000, 0.001, false},
      {"absolute: at the tolerance", absolute, 1.5, 1, 0.5, true},
      {"absolute: near zero", absolute, 0.0009, -0.0009, 0.001, true},
      {"absolute: value just beyond zero", absolute, 0.0011, 0.0009, 0.001, false},
      {"plain: near zero is no exception", plain, 0.0011, 0.0009, 0.001, true},
      {"between: within the tolerance of a bound", between0And10, 10 + 1e-12, 0, 1e-9, true},
      {"between: below", between0And10, -0.1, 0, 1e-9, false},
      {"between: above", between0And10, 10.1, 0, 1e-9, false},
      {"angle: full turn", angle, 0, kTurn, 1e-9, true},
      {"angle: negative full turn", angle, -kTurn, 0, 1e-9, false},
      {"angle: no test across the turn", angle, 0, kTurn - 1e-12, 1e-9, false},
      {"angle: zeros whatever the tolerance", angle, 0, -0.0, -1, true},
  };
  for (const auto& row : rows) EXPECT_EQ(row.compare(row.a, row.b, row.tol), row.isEqual) << row.name;
}

TEST(Compare, PointsAreEqualCoordinateByCoordinateRelativeToTheSecond) {
  const struct {
    const char* name;
    double p[3], q[3], tol;
    bool isEqual;
  } rows[] = {
      {"both near zero", {1e-11, 5, 5}, {0, 5, 5}, 1e-10, true},
      {"y alone differs", {1, 2 + 4e-10, 3}, {1, 2, 3}, 1e-10, false},
      {"z alone differs", {1, 2, 3 + 6e-10}, {1, 2, 3}, 1e-10, false},
      {"exactly at the tolerance, unlike numbers", {1.5, 0, 0}, {1, 0, 0}, 0.5, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IMgxadPointEqual(row.p, row.q, row.tol), row.isEqual) << row.name;
    if (row.tol == 1e-10) {
      EXPECT_EQ(gx_pt_equal(row.p, row.q), row.isEqual) << row.name;
    }
  }
}

}  // namespace

#include "geometry/compare.h"

#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
const double kNan = std::numeric_limits<double>::quiet_NaN();

struct ScalarRow {
  const char* name;
  double a, b, tol;
  bool isEqual;
};

void check(bool (*compare)(double, double, double), const std::vector<ScalarRow>& rows) {
  for (const ScalarRow& row : rows) EXPECT_EQ(compare(row.a, row.b, row.tol), row.isEqual) << row.name;
}

TEST(Compare, ZeroTestIncludesBothBounds) {
  EXPECT_TRUE(IMgxadIsZero(1e-11, 1e-11));
  EXPECT_TRUE(IMgxadIsZero(-1e-11, 1e-11));
  EXPECT_FALSE(IMgxadIsZero(1.01e-11, 1e-11));
  EXPECT_FALSE(IMgxadIsZero(-1.01e-11, 1e-11));
  EXPECT_FALSE(IMgxadIsZero(kNan, 1e-11));
}

TEST(Compare, RelativeTestTakesTheSecondAsReference) {
  check(IMgxadRealEqual, {
                             {"far apart", 1.5, 1, 0.1, false},
                             {"relative, not absolute", 1000.0005, 1000, 0.001, true},
                             {"difference at the tolerance", 1.5, 1, 0.5, true},
                             {"reference near zero", 0.0009, 0.0001, 0.001, true},
                             {"value not near zero", 0.0011, 0.0001, 0.001, false},
                             {"only the value near zero", 0.0001, 0.0011, 0.001, false},
                             {"not symmetric: 100 is 50 % above 66.7", 100, 66.7, 0.4, false},
                             {"not symmetric: 66.7 is 33 % below 100", 66.7, 100, 0.4, true},
                             {"opposite signs", -5, 5, 0.1, false},
                         });
}

TEST(Compare, AbsoluteTestDoesNotScale) {
  check(mlineRealEqual, {
                            {"within", 1000.0005, 1000, 0.001, true},
                            {"beyond, though relatively close", 1000.002, 1000, 0.001, false},
                            {"at the tolerance", 1.5, 1, 0.5, true},
                            {"reference near zero", 0.0009, -0.0009, 0.001, true},
                            {"reference near zero, value just beyond", 0.0011, 0.0009, 0.001, false},
                        });
  check(KvMath::isEqual, {
                             {"at the tolerance", 1.5, 1, 0.5, true},
                             {"near zero is no exception", 0.0011, 0.0009, 0.001, true},
                             {"tolerance 0", 2, 2, 0, true},
                             {"beyond", 1.50001, 1, 0.5, false},
                         });
}

TEST(Compare, PointsAreEqualCoordinateByCoordinateRelativeToTheSecond) {
  struct Row {
    const char* name;
    double p[3], q[3];
    int isEqual;
  };
  const Row rows[] = {
      {"both near zero", {1e-11, 5, 5}, {0, 5, 5}, 1},
      {"relative difference 2e-10", {1.0000000002, 0, 0}, {1, 0, 0}, 0},
      {"far from the origin", {1e6 + 1e-5, 0, 0}, {1e6, 0, 0}, 1},
      {"near zero against the reference", {0, 0, 2e-10}, {0, 0, 0}, 0},
      {"y alone differs", {1, 2.1, 3}, {1, 2, 3}, 0},
      {"z alone differs", {1, 2, 3.1}, {1, 2, 3}, 0},
      {"a reference just beyond zero", {1e-11, 0, 0}, {1.1e-10, 0, 0}, 0},
  };
  for (const Row& row : rows) EXPECT_EQ(gx_pt_equal(row.p, row.q), row.isEqual) << row.name;
}

TEST(Compare, PointsDifferAtExactlyTheToleranceWhereNumbersDoNot) {
  const double p[3] = {1.5, 0, 0}, q[3] = {1, 0, 0};
  EXPECT_TRUE(IMgxadRealEqual(1.5, 1, 0.5));
  EXPECT_FALSE(IMgxadPointEqual(p, q, 0.5));
  EXPECT_TRUE(IMgxadPointEqual(p, q, 0.5000001));
}

TEST(Compare, BetweenTakesBoundsInEitherOrderAndWithTolerance) {
  EXPECT_TRUE(mlineRealBetween(5, 10, 0, 1e-9));
  EXPECT_TRUE(mlineRealBetween(10 + 1e-12, 0, 10, 1e-9));
  EXPECT_TRUE(mlineRealBetween(-1e-12, 10, 0, 1e-9));
  EXPECT_FALSE(mlineRealBetween(10.1, 0, 10, 1e-9));
  EXPECT_FALSE(mlineRealBetween(-0.1, 10, 0, 1e-9));
  EXPECT_TRUE(mlineRealBetween(3, 3, 3, 0));
}

TEST(Compare, AnglesAreReducedToATurnWithoutWrapAround) {
  check(mlineAngleEqual, {
                             {"full turn", 0, 2 * kPi, 1e-9, true},
                             {"negative full turn", -2 * kPi, 0, 1e-9, false},
                             {"just below a full turn", 0, 2 * kPi - 1e-12, 1e-9, false},
                             {"negative quarter", -kPi / 2, 3 * kPi / 2, 1e-9, true},
                             {"zeros", 0, 0, 0, true},
                             {"zeros whatever the tolerance", 0, -0.0, -1, true},
                             {"three turns on", 1 + 6 * kPi, 1, 1e-9, true},
                             {"different", 1, 2, 1e-9, false},
                         });
}

}  // namespace

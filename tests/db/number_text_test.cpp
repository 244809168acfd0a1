#include <gtest/gtest.h>
#include <limits>
#include <numbers>

#include "db/plan.h"
#include "db/system_variables.h"

#include <kdrx/ut.h>

namespace torva::test {
namespace {

constexpr double kPi = std::numbers::pi;

class NumberTextTest : public PlanTest {
 protected:
  void setDimzin(int value) { EXPECT_TRUE(db::SystemVariables(&database()).set(L"DIMZIN", value)); }
};

TEST_F(NumberTextTest, FollowsUnitPrecisionAndDimzin) {
  const struct {
    int dimzin;
    double value;
    int unit, precision;
    std::wstring text;
  } lengths[] = {
      {0, 2, kKdDecimal, 3, L"2.000"},         {8, 2, kKdDecimal, 3, L"2"},           {8, -0.25, kKdDecimal, 4, L"-0.25"},
      {4, -0.25, kKdDecimal, 4, L"-.2500"},    {12, 0, kKdDecimal, 2, L"0"},          {8, 0.15, kKdDecimal, 1, L"0.2"},
      {8, -1.005, kKdDecimal, 2, L"-1.01"},    {8, 0.2499999, kKdDecimal, 1, L"0.2"}, {8, 2.5, kKdDecimal, 0, L"3"},
      {0, 1.25, kKdScientific, 1, L"1.3E+00"}, {0, -0.04, kKdDecimal, 1, L"0.0"},
  };
  for (const auto& row : lengths) {
    setDimzin(row.dimzin);
    wchar_t text[64];
    EXPECT_EQ(kddbRToS(row.value, row.unit, row.precision, text, 64), kKdInputNormal);
    EXPECT_EQ(text, row.text);
  }
  const struct {
    double degrees;
    int unit, precision;
    std::wstring text;
  } angles[] = {
      {90, kKdDegrees, 14, L"90.00000000000000"},
      {-10.1, kKdDegrees, 14, L"-10.10000000000000"},
      {45, kKdGrads, 1, L"50.0g"},
      {180, kKdRadians, 4, L"3.1416r"},
  };
  setDimzin(0);
  for (const auto& row : angles) {
    wchar_t text[64];
    EXPECT_EQ(kddbAngToS(row.degrees * (kPi / 180), row.unit, row.precision, text, 64), kKdInputNormal);
    EXPECT_EQ(text, row.text);
    double back = 0;
    EXPECT_EQ(kddbAngToF(text, kKdDegrees, &back), kKdInputNormal);
    EXPECT_NEAR(back, row.degrees * (kPi / 180), 1e-4);
  }
}

TEST_F(NumberTextTest, RefusesWhatHasNoText) {
  wchar_t text[4] = L"abc";
  EXPECT_EQ(kddbRToS(std::numeric_limits<double>::quiet_NaN(), kKdDecimal, 2, text, 4), kKdInputError);
  EXPECT_EQ(kddbRToS(1, kKdDecimal, 17, text, 4), kKdInputError);
  EXPECT_EQ(kddbAngToS(1, kKdDegrees, 2, text, 0), kKdInputError);
  EXPECT_STREQ(text, L"abc");
  EXPECT_EQ(kddbRToS(1234, kKdDecimal, 0, text, 4), kKdInputNormal);
  EXPECT_STREQ(text, L"123") << "what does not fit is cut";
  double angle = 7;
  for (const wchar_t* bad : {L"", L"x", L"1x", L"g", L"1 2", L"nan", L"inf"})
    EXPECT_EQ(kddbAngToF(bad, kKdDegrees, &angle), kKdInputError) << bad;
  EXPECT_EQ(angle, 7);
}

}  // namespace
}  // namespace torva::test

#include "command/point_text.h"

#include <gtest/gtest.h>

namespace torva::command {
namespace {

constexpr PointContext kContext{{10, 20, 5}, 7};

TEST(PointText, readsPoints) {
  const std::pair<const wchar_t*, KdGePoint3d> rows[] = {
      {L"1,2", {1, 2, 7}},     {L"1,2,3", {1, 2, 3}},    {L"-1.5e2,+.25", {-150, 0.25, 7}},
      {L"@", {10, 20, 5}},     {L"@1,2", {11, 22, 5}},   {L"@1,2,3", {11, 22, 8}},
      {L"@5<90", {10, 25, 5}}, {L"@2<-180", {8, 20, 5}}, {L"10<0", {10, 0, 7}},
      {L"2<450", {0, 2, 7}},   {L"-2<0", {-2, 0, 7}},
  };
  for (const auto& [text, expected] : rows) {
    const auto point = parsePoint(text, kContext);
    ASSERT_TRUE(point) << testing::PrintToString(text);
    EXPECT_LT(point->distanceTo(expected), 1e-13) << testing::PrintToString(text);
  }
}

TEST(PointText, refusesOtherTexts) {
  for (const wchar_t* text :
       {L"",       L"1",     L"1,", L",1", L",",     L"1,2,",  L"1,2,3,4", L"a,b",   L"1,2x",    L"@1",
        L"<",      L"5<",    L"<5", L"@<", L"1<2<3", L"1,2<3", L"nan,1",   L"1,inf", L"1e999,0", L"@1e308,1e308,x",
        L"#1:2,3", L"0x10,1"}) {
    EXPECT_FALSE(parsePoint(text, kContext)) << testing::PrintToString(text);
  }
  EXPECT_FALSE(parsePoint(L"@1e308,0", {{1e308, 0, 0}, 0})) << "beyond all numbers";
}

TEST(PointText, readsHandlesWithPoints) {
  const auto pick = parseHandlePick(L"#2f:3,4", kContext);
  ASSERT_TRUE(pick);
  EXPECT_EQ(pick->handle, 0x2Fu);
  EXPECT_TRUE(pick->point.isEqualTo({3, 4, 7}));
  EXPECT_TRUE(parseHandlePick(L"#FFFFFFFFFFFFFFFF:@1,1", kContext));
  for (const wchar_t* text : {L"#", L"#:", L"#2F", L"#2F:", L"#:1,2", L"#2G:1,2", L"2F:1,2", L"#10000000000000000:1,2",
                              L"#-1:1,2", L"#2F:1", L"#2F:1,2:3"}) {
    EXPECT_FALSE(parseHandlePick(text, kContext)) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace torva::command

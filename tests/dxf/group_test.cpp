#include "dxf/group.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace torva::dxf {
namespace {

using Pairs = std::vector<std::pair<int, std::string>>;

Pairs pairsOf(const Groups& groups) {
  Pairs pairs;
  for (const Group& group : groups) pairs.emplace_back(group.code, group.value);
  return pairs;
}

TEST(Group, TextFormIsReadLineByLine) {
  const struct {
    const char* name;
    std::string text;
    LineEnds ends;
    Pairs expected;
  } cases[] = {
      {"a CR inside a value", "  1\na\rb\n", LineEnds::lf, {{1, "a\rb"}}},
      {"CR and CR LF", "0\rLINE\r\n8\r\n\r6\nA", LineEnds::lfAndCr, {{0, "LINE"}, {8, ""}, {6, "A"}}},
      {"blanks around codes", " \t0 \nLINE\n     1071\n7\n", LineEnds::lf, {{0, "LINE"}, {1071, "7"}}},
      {"negative code", "-1\nx\n", LineEnds::lf, {{-1, "x"}}},
      {"code without value", "0\nLINE\n8\n", LineEnds::lf, {{0, "LINE"}}},
      {"no code", "0\nLINE\nlost\n8\nWalls\n", LineEnds::lf, {{0, "LINE"}, {kUnreadableCode, ""}}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(pairsOf(Groups(c.text, Form::text, BinaryCodes::twoBytes, c.ends)), c.expected) << c.name;
  }
}

TEST(Group, KindsFollowTheRangesOfCodes) {
  const std::pair<int, ValueKind> cases[] = {
      {0, ValueKind::text},      {5, ValueKind::handle},   {9, ValueKind::text},      {10, ValueKind::real},
      {59, ValueKind::real},     {60, ValueKind::int16},   {79, ValueKind::int16},    {90, ValueKind::int32},
      {100, ValueKind::text},    {105, ValueKind::handle}, {110, ValueKind::real},    {160, ValueKind::int64},
      {170, ValueKind::int16},   {239, ValueKind::real},   {270, ValueKind::int16},   {290, ValueKind::boolean},
      {310, ValueKind::bytes},   {330, ValueKind::handle}, {370, ValueKind::int16},   {420, ValueKind::int32},
      {430, ValueKind::text},    {440, ValueKind::int32},  {460, ValueKind::real},    {480, ValueKind::handle},
      {999, ValueKind::comment}, {1004, ValueKind::bytes}, {1005, ValueKind::handle}, {1059, ValueKind::real},
      {1070, ValueKind::int16},  {1071, ValueKind::int32}, {1072, ValueKind::text},   {-1, ValueKind::text},
      {250, ValueKind::text},
  };
  for (const auto& [code, kind] : cases) EXPECT_EQ(valueKind(code), kind) << code;
  for (const int code : {-1, 80, 103, 250, 500, 1072, 32767}) EXPECT_FALSE(isKnownCode(code)) << code;
}

}  // namespace
}  // namespace torva::dxf

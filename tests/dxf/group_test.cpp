#include "dxf/group.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "dxf/sample_drawing.h"

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
      {"LF", "  0\nLINE\n  8\n Walls \n", LineEnds::lf, {{0, "LINE"}, {8, " Walls "}}},
      {"CR LF", "  0\r\nLINE\r\n  8\r\n\r\n", LineEnds::lf, {{0, "LINE"}, {8, ""}}},
      {"mixed", "  0\r\nLINE\n  8\nWalls\r\n", LineEnds::lf, {{0, "LINE"}, {8, "Walls"}}},
      {"a CR inside a value", "  1\na\rb\n", LineEnds::lf, {{1, "a\rb"}}},
      {"CR", "  0\rLINE\r  8\r\r  6\rA\r", LineEnds::lfAndCr, {{0, "LINE"}, {8, ""}, {6, "A"}}},
      {"CR and CR LF", "0\rLINE\r\n8\r\n\r6\nA", LineEnds::lfAndCr, {{0, "LINE"}, {8, ""}, {6, "A"}}},
      {"no end at the end", "0\nEOF", LineEnds::lf, {{0, "EOF"}}},
      {"blanks around codes", " \t0 \nLINE\n     1071\n7\n", LineEnds::lf, {{0, "LINE"}, {1071, "7"}}},
      {"negative code", "-1\nx\n", LineEnds::lf, {{-1, "x"}}},
      {"code without value", "0\nLINE\n8\n", LineEnds::lf, {{0, "LINE"}}},
      {"code without end", "0\nLINE\n8", LineEnds::lf, {{0, "LINE"}}},
      {"no code", "0\nLINE\nlost\n8\nWalls\n", LineEnds::lf, {{0, "LINE"}, {kUnreadableCode, ""}}},
      {"nothing", "", LineEnds::lf, {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(pairsOf(Groups(c.text, Form::text, BinaryCodes::twoBytes, c.ends)), c.expected) << c.name;
  }
}

TEST(Group, BinaryFormIsReadByTheKindOfEachCode) {
  const test::SampleGroups groups = {{0, "LINE"},          {5, "2F"},  {10, "-0.5"},    {70, "-3"},   {90, "-100000"},
                                     {160, "-5000000000"}, {290, "1"}, {310, "00FF77"}, {1004, "42"}, {1040, "2.5"},
                                     {1071, "7"},          {1, ""}};
  for (const BinaryCodes codes : {BinaryCodes::oneByte, BinaryCodes::twoBytes}) {
    const std::string bytes = test::binaryForm(groups, codes).substr(22);
    std::vector<Group> read;
    for (const Group& group : Groups(bytes, Form::binary, codes, LineEnds::lf)) read.push_back(group);
    ASSERT_EQ(read.size(), groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i) EXPECT_EQ(read[i].code, groups[i].first);
    EXPECT_EQ(read[0].value, "LINE");
    EXPECT_EQ(read[1].handle(), 0x2F);
    EXPECT_EQ(read[2].real(), -0.5);
    EXPECT_EQ(read[3].integer(), -3);
    EXPECT_EQ(read[3].real(), -3.0);
    EXPECT_EQ(read[4].integer(), -100000);
    EXPECT_EQ(read[5].integer(), -5000000000);
    EXPECT_EQ(read[6].integer(), 1);
    EXPECT_EQ(read[7].value, std::string("\0\xFFw", 3));
    EXPECT_EQ(read[8].value, "\x42");
    EXPECT_EQ(read[9].real(), 2.5);
    EXPECT_EQ(read[11].value, "");
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      std::size_t count = 0;
      for (const Group& group : Groups(std::string_view(bytes).substr(0, size), Form::binary, codes, LineEnds::lf)) {
        EXPECT_NE(group.code, kUnreadableCode);
        ++count;
      }
      EXPECT_LT(count, groups.size()) << "cut at " << size;
    }
  }
}

TEST(Group, BinaryRealsThatAreNoNumbersAreNone) {
  const std::string bytes("\x28\0\0\0\0\0\0\0\xF8\x7F", 10);  // 40: not a number
  for (const Group& group : Groups(bytes, Form::binary, BinaryCodes::twoBytes, LineEnds::lf)) {
    EXPECT_FALSE(group.real());
    EXPECT_FALSE(group.integer());
    EXPECT_EQ(group.realOr(7), 7);
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

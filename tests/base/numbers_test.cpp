#include "base/numbers.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "base/decimal.h"
#include "base/near_decimal.h"

namespace torva {
namespace {

TEST(Numbers, ReadsRealsAsDrawingsHaveThem) {
  const std::pair<const char*, double> cases[] = {{"  -1.5\t", -1.5}, {"+2.25", 2.25}, {".5", 0.5},
                                                  {"5.", 5.0},        {"1e3", 1000.0}, {"1.5D+01", 15.0},
                                                  {"1,5", 1.5},       {"1e-400", 0.0}, {"1.000000E 20", 1e20}};
  for (const auto& [text, value] : cases) EXPECT_EQ(parseReal(text), value) << '"' << text << '"';
  for (const char* bad :
       {"1e400", "", "   ", "nan", "inf", "-infinity", "1.2.3", "1,234,5", "--1", "+-1", "1 2", "0x10", "1.5mm", "e5"})
    EXPECT_FALSE(parseReal(bad)) << '"' << bad << '"';
  EXPECT_FALSE(parseReal(std::string(1 << 20, '-')));
}

TEST(Numbers, ReadsIntegers) {
  const std::pair<const char*, std::int64_t> cases[] = {
      {"     7", 7}, {"-32768", -32768}, {"+4", 4},
      {"3.0", 3},    {"1e3", 1000},      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()}};
  for (const auto& [text, value] : cases) EXPECT_EQ(parseInteger(text), value) << '"' << text << '"';
  for (const char* bad : {"9223372036854775808", "3.5", "1e30", "", "seven"})
    EXPECT_FALSE(parseInteger(bad)) << '"' << bad << '"';
}

TEST(Numbers, ReadsHandles) {
  EXPECT_EQ(parseHandle(" 2f "), 0x2Fu);
  EXPECT_EQ(parseHandle("FFFFFFFFFFFFFFFF"), 0xFFFFFFFFFFFFFFFFu);
  for (const std::string bad : {"00000000000000001", "", "2G", "-1", "0x2F", "2 F"}) EXPECT_FALSE(parseHandle(bad)) << bad;
}

TEST(Numbers, WritesTheShortestReal) {
  const std::pair<double, const char*> cases[] = {{-0.0, "-0.0"},
                                                  {100000.0, "100000.0"},
                                                  {1.0 / 3, "0.3333333333333333"},
                                                  {1e-6, "1.0E-06"},
                                                  {1e15, "1000000000000000.0"},
                                                  {-1e300, "-1.0E+300"},
                                                  {5e-324, "5.0E-324"},
                                                  {std::numeric_limits<double>::infinity(), "0.0"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(formatReal(value), text);
}

TEST(Numbers, WrittenRealsReadBackToTheLastBit) {
  constexpr unsigned kSeed = 20;
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 100'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = formatReal(value);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parseReal(text).value()), std::bit_cast<std::uint64_t>(value)) << text;
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
  }
}

TEST(Numbers, ReadsDecimalsOfEveryLengthToTheLastBit) {
  constexpr unsigned kSeed = 21;
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 100'000; ++i) {
    const std::size_t digits = 1 + random() % 22;
    std::string text;
    while (text.size() < digits) text += static_cast<char>('0' + random() % 10);
    if (random() % 4 != 0) text.insert(random() % (digits + 1), 1, '.');
    if (random() % 2 != 0) text.insert(0, 1, '-');
    const double expected = std::strtod(text.c_str(), nullptr);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parseReal(text).value()), std::bit_cast<std::uint64_t>(expected)) << text;
  }
}

TEST(Numbers, PointedAndNearDecimalsAgreeWithTheLibrary) {
  constexpr unsigned kSeed = 3;
  std::mt19937_64 random(kSeed);
  int valid = 0;
  for (int i = 0; i < 50'000; ++i) {
    const std::size_t whole = random() % 10, decimals = random() % 20;
    std::string text(random() % 2, '-');
    const auto digits = [&](std::size_t count) {
      for (std::size_t k = 0; k < count; ++k) text += static_cast<char>('0' + random() % 10);
    };
    digits(whole);
    const std::size_t point = text.size();
    text += '.';
    digits(decimals);
    const bool isSpoilt = random() % 4 == 0 && whole + decimals > 0;
    if (isSpoilt) text[point == text.size() - 1 ? point - 1 : point + 1 + random() % decimals] = ":/ e-\xB0"[random() % 6];
    const std::string memory = "77777777" + text;  // what stands in front may be read, nothing behind
    const std::vector<char> exact(memory.begin(), memory.end());
    const char* const begin = exact.data() + 8;
    const PointedDecimal decimal(begin, begin + point, begin + text.size());
    const NearDecimal near = nearDecimal(begin, begin + text.size());
    const bool isPointed = !isSpoilt && whole >= 1 && whole <= 8 && decimals >= 1;
    ASSERT_EQ(decimal.isValid(), isPointed && whole + decimals <= 18) << text;
    ASSERT_EQ(near.end == begin + text.size(), isPointed && decimals <= 16) << text;
    if (!decimal.isValid() || !near.end) continue;
    ++valid;
    const double expected = std::strtod(text.c_str(), nullptr);
    EXPECT_NEAR(near.value, expected, std::abs(expected) * 5e-16) << text;
    const std::string lines = memory + "\n 20\n2.5\n 30\n0.0\n  0\nLINE\n";
    const NearDecimal amongLines = nearDecimal(lines.data() + 8, lines.data() + lines.size());
    ASSERT_EQ(amongLines.end, lines.data() + memory.size()) << text;
    EXPECT_EQ(amongLines.value, near.value) << text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(decimal.value()), std::bit_cast<std::uint64_t>(expected)) << text;
  }
  EXPECT_GT(valid, 10'000);
}

}  // namespace
}  // namespace torva

#include "base/text.h"

#include <clocale>
#include <gtest/gtest.h>
#include <random>

namespace torva {
namespace {

TEST(Text, DecodesUtf8) {
  const struct {
    const char* name;
    std::string bytes;
    std::wstring wide;
  } cases[] = {
      {"three bytes", "\xE4\xB8\xAD", L"\u4E2D"},
      {"four bytes", "\xF0\x9F\x8F\xA0", L"\U0001F3E0"},
      {"zero byte", std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
      {"lone continuation", "a\x80z", L"a\xDC80z"},
      {"cut short", "\xE4\xB8", L"\xDCE4\xDCB8"},
      {"overlong", "\xC0\xAF", L"\xDCC0\xDCAF"},
      {"encoded surrogate", "\xED\xB2\x80", L"\xDCED\xDCB2\xDC80"},
      {"above the last character", "\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(wideFromUtf8(c.bytes), c.wide) << c.name;
    EXPECT_EQ(utf8FromWide(c.wide), c.bytes) << c.name;
    EXPECT_EQ(isUtf8(c.bytes), c.wide.find_first_of(L"\xDC80\xDCC0\xDCE4\xDCED\xDCF4") == std::wstring::npos) << c.name;
  }
}

TEST(Text, AnyBytesSurviveTheWayThroughWideText) {
  constexpr unsigned kSeed = 21;
  std::mt19937 random(kSeed);
  // Bytes around the borders of the encoding, so that nearly valid sequences are frequent.
  constexpr unsigned char kBytes[] = {'A',  0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC2, 0xDF,
                                      0xE0, 0xED, 0xEE, 0xEF, 0xF0, 0xF4, 0xF5, 0xFF, 0xB2, 0xDC};
  for (int i = 0; i < 20'000; ++i) {
    std::string bytes(random() % 9, '\0');
    for (char& c : bytes) c = static_cast<char>(kBytes[random() % std::size(kBytes)]);
    ASSERT_EQ(utf8FromWide(wideFromUtf8(bytes)), bytes);
  }
}

TEST(Text, ComparesIgnoringCaseWhateverTheLocale) {
  std::setlocale(LC_ALL, "C");
  EXPECT_TRUE(equalsIgnoringCase(L"K\u00FCche", L"K\u00DCCHE"));
  EXPECT_TRUE(equalsIgnoringCase(L"\u0441\u0442\u0435\u043D\u0430", L"\u0421\u0422\u0415\u041D\u0410"));
  EXPECT_FALSE(equalsIgnoringCase(L"Standard", L"Standard1"));
  EXPECT_TRUE(equalsIgnoringCase("ansi_1252", "ANSI_1252"));
  EXPECT_FALSE(equalsIgnoringCase("[", "{"));
}

}  // namespace
}  // namespace torva

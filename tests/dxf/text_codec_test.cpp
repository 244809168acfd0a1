#include "dxf/text_codec.h"

#include <gtest/gtest.h>
#include <random>

namespace torva::dxf {
namespace {

TEST(TextCodec, EscapesAreReadAndWritten) {
  const struct {
    const char* name;
    int page;  // 0: UTF-8
    std::string value;
    std::wstring text;
    std::string written;  // empty: as the value
  } cases[] = {
      {"UTF-8", 0, "B\xC3\xBCro", L"B\u00FCro", {}},
      {"outside the page", 1252, "\\U+4E2D", L"\u4E2D", {}},
      {"small digits", 1252, "a\\U+4e2dz", L"a\u4E2Dz", "a\\U+4E2Dz"},
      {"in UTF-8", 0, "\\U+4E2D", L"\u4E2D", "\xE4\xB8\xAD"},
      {"surrogates", 1252, "\\U+D83C\\U+DFE0", L"\U0001F3E0", {}},
      {"lone surrogate", 1252, "\\U+D83C.", L"\\U+D83C.", {}},
      {"second half first", 1252, "\\U+DFE0\\U+D83C", L"\\U+DFE0\\U+D83C", {}},
      {"no digits", 1252, "\\U+4E2G", L"\\U+4E2G", {}},
      {"Shift-JIS", 1252, "\\M+18EBA", L"\u5BA4", "\\U+5BA4"},
      {"Big5", 1252, "\\M+2A4A4", L"\u4E2D", "\\U+4E2D"},
      {"Korean", 1252, "\\M+3C7D1", L"\uD55C", "\\U+D55C"},
      {"Johab", 1252, "\\M+4D065", L"\uD55C", "\\U+D55C"},
      {"unknown multibyte page", 1252, "\\M+6D6D0", L"\\M+6D6D0", {}},
      {"no character of its page", 1252, "\\M+1FFFF", L"\\M+1FFFF", {}},
      {"tab and line feed", 1252, "a^Ib^Jc", L"a\tb\nc", {}},
      {"caret", 1252, "2^ 3", L"2^3", {}},
      {"caret in front of nothing special", 1252, "2^3", L"2^3", "2^ 3"},
      {"zero is not made", 1252, "^@", L"^@", "^ @"},
      {"backslash as second half", 932, "\x83\x5C", L"\u30BD", {}},
      {"second half looks like an escape", 932, "\x83\x5CU+4E2D", L"\u30BDU+4E2D", {}},
      {"undecodable", 1252, "a\x81z", L"a\xDC81z", {}},
      {"undecodable UTF-8", 0, "a\xE4z", L"a\xDCE4z", {}},
  };
  for (const auto& c : cases) {
    const TextCodec codec(c.page == 0 ? nullptr : CodePage::find(c.page));
    EXPECT_EQ(codec.decode(c.value), c.text) << c.name;
    EXPECT_EQ(codec.encode(c.text), c.written.empty() ? c.value : c.written) << c.name;
  }
}

TEST(TextCodec, AnyTextComesBackAndIsNeverReplaced) {
  constexpr unsigned kSeed = 24;
  std::mt19937 random(kSeed);
  for (const int page : {0, 874, 932, 936, 949, 950, 1251, 1252, 1258}) {
    const TextCodec codec(page == 0 ? nullptr : CodePage::find(page));
    for (int i = 0; i < 2000; ++i) {
      std::wstring text;
      for (int k = 0; k < 6; ++k) {
        constexpr wchar_t kLimits[] = {0x80, 0x100, 0x500, 0xA000, 0xD7FF, 0x10FFFF};
        auto c = static_cast<wchar_t>(1 + random() % static_cast<unsigned>(kLimits[random() % std::size(kLimits)] - 1));
        if ((c >= 0xD800 && c <= 0xDFFF) || c == L'\\') c = L'^';
        text += c;
      }
      const std::string value = codec.encode(text);
      ASSERT_EQ(value.find_first_of(std::string("\r\n\0", 3)), std::string::npos);
      ASSERT_EQ(codec.decode(value), text) << "page " << page << ": " << value;
    }
  }
}

}  // namespace
}  // namespace torva::dxf

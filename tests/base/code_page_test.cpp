#include "base/code_page.h"

#include <gtest/gtest.h>

namespace torva {
namespace {

TEST(CodePage, KnowsTheCharactersOfEachPage) {
  const struct {
    const char* name;
    std::string bytes;
    std::wstring text;
  } cases[] = {
      {"ANSI_874", "\xA1", L"\u0E01"},
      {"ansi_932", "\x8E\xBA\x83\x5C", L"\u5BA4\u30BD"},  // the second byte of the second is a backslash
      {"ANSI_936", "\xD6\xD0", L"\u4E2D"},
      {"ANSI_949", "\xC7\xD1", L"\uD55C"},
      {"ANSI_950", "\xA4\xA4", L"\u4E2D"},
      {"ANSI_1250", "\xB9", L"\u0105"},
      {"ANSI_1251", "\xC6", L"\u0416"},
      {"ANSI_1252", "B\xFCro \x80", L"B\u00FCro \u20AC"},
      {"ANSI_1253", "\xF9", L"\u03C9"},
      {"ANSI_1254", "\xFD", L"\u0131"},
      {"ANSI_1255", "\xE0", L"\u05D0"},
      {"ANSI_1256", "\xC7", L"\u0627"},
      {"ANSI_1257", "\xF0", L"\u0161"},
      {"ANSI_1258", "\xD2", L"\u0309"},
      {"ANSI_1361", "\xD0\x65", L"\uD55C"},
  };
  for (const auto& c : cases) {
    const CodePage* page = CodePage::find(c.name);
    ASSERT_NE(page, nullptr) << c.name;
    EXPECT_EQ(page->decode(c.bytes), c.text) << c.name;
    EXPECT_TRUE(page->canDecode(c.bytes)) << c.name;
    std::string encoded;
    for (const wchar_t character : c.text) encoded += page->encode(character).value_or("?");
    EXPECT_EQ(encoded, c.bytes) << c.name;
  }
}

TEST(CodePage, WhatCannotBeDecodedSurvives) {
  for (const char* name : {"", "ANSI_0", "dos437", "ANSI_1252x"}) EXPECT_EQ(CodePage::find(name), nullptr) << name;
  const CodePage& page = *CodePage::find(1252);
  EXPECT_FALSE(page.canDecode("a\x81z"));
  EXPECT_EQ(page.decode("a\x81z"), L"a\xDC81z");
  EXPECT_EQ(page.encode(L'\xDC81'), "\x81");
  EXPECT_EQ(page.encode(L'\u4E2D'), std::nullopt);
  const CodePage& japanese = *CodePage::find(932);
  EXPECT_EQ(japanese.decode("\x8E"), L"\xDC8E") << "a first half at the end";
  EXPECT_EQ(japanese.decode("\x8E\x0A"), L"\xDC8E\n") << "a first half without its second";
}

}  // namespace
}  // namespace torva

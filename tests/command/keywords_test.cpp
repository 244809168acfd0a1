#include "command/keywords.h"

#include <gtest/gtest.h>

namespace torva::command {
namespace {

std::wstring matched(const wchar_t* list, std::wstring_view answer) {
  const auto keywords = Keywords::parse(list);
  if (!keywords) return L"(unreadable)";
  const std::wstring* keyword = keywords->match(answer);
  return keyword ? *keyword : L"(none)";
}

TEST(Keywords, match) {
  constexpr const wchar_t* kTools = L"CC OC MC CT OT MT CJ AV DV CS CA WA";
  const struct {
    const char* name;
    const wchar_t* list;
    std::wstring_view answer;
    std::wstring keyword;
  } rows[] = {
      {"whole name", kTools, L"CA", L"CA"},
      {"case does not count", kTools, L"wa", L"WA"},
      {"unambiguous beginning", kTools, L"w", L"WA"},
      {"ambiguous beginning", kTools, L"C", L"(none)"},
      {"short form", L"Yes No eXit", L"x", L"eXit"},
      {"short form of several capitals", L"LType LWeight", L"lt", L"LType"},
      {"between short form and name", L"LType LWeight", L"LTY", L"LType"},
      {"ambiguous part of a short form", L"LType LWeight", L"L", L"(none)"},
      {"name before another's beginning", L"On ONline", L"on", L"On"},
      {"short form before another's beginning", L"Close cleAr", L"c", L"Close"},
      {"digits belong to the short form", L"3Points 2Points", L"3p", L"3Points"},
      {"underscore", L"Undo", L"_undo", L"Undo"},
      {"empty answer", L"Undo", L"", L"(none)"},
      {"name without capitals has no short form", L"abc abd", L"ab", L"(none)"},
      {"more blanks between", L"  Yes   No ", L"n", L"No"},
  };
  for (const auto& row : rows) EXPECT_EQ(matched(row.list, row.answer), row.keyword) << row.name;
}

TEST(Keywords, refuseUnreadableLists) {
  EXPECT_FALSE(Keywords::parse(L"Yes YES"));
  EXPECT_FALSE(Keywords::parse(L"a\nb"));
  EXPECT_FALSE(Keywords::parse(std::wstring(3000, L'A')));
}

}  // namespace
}  // namespace torva::command

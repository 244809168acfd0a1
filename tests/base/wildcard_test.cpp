#include "base/wildcard.h"

#include <gtest/gtest.h>

namespace torva {
namespace {

TEST(Wildcard, standsForOtherCharacters) {
  const struct {
    const wchar_t *name, *pattern;
    bool matches;
  } rows[] = {
      {L"WALLS", L"walls", true}, {L"WALLS", L"w*s", true},   {L"WALLS", L"*l*", true}, {L"WALLS", L"?????", true},
      {L"WALLS", L"????", false}, {L"WALLS", L"wall", false}, {L"abab", L"*ab", true},  {L"ababc", L"*abc*", true},
      {L"", L"*", true},          {L"", L"?", false},         {L"abc", L"a*b", false},  {L"A-1", L"a**-?", true},
  };
  for (const auto& row : rows)
    EXPECT_EQ(matchesWildcard(row.name, row.pattern), row.matches) << row.name << ' ' << row.pattern;
}

}  // namespace
}  // namespace torva

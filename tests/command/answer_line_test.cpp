#include "command/answer_line.h"

#include <gtest/gtest.h>
#include <random>

namespace torva::command {
namespace {

using Kind = Answer::Kind;

Answer text(std::wstring value) {
  return {Kind::text, std::move(value)};
}

const Answer kEnter{Kind::empty};
const Answer kCancel{Kind::cancel};

std::vector<Answer> answersOf(std::wstring line) {
  std::vector<Answer> answers;
  for (AnswerLine rest(std::move(line)); !rest.isExhausted();) answers.push_back(rest.next());
  return answers;
}

TEST(AnswerLine, takesLinesApart) {
  const struct {
    const char* name;
    std::wstring line;
    std::vector<Answer> answers;
  } rows[] = {
      {"empty line is Enter", L"", {kEnter}},
      {"blanks alone are Enter", L" \t ", {kEnter}},
      {"one answer, no Enter behind it", L"-MLEDIT", {text(L"-MLEDIT")}},
      {"several answers", L"ZOOM C 30,30 100", {text(L"ZOOM"), text(L"C"), text(L"30,30"), text(L"100")}},
      {"runs of blanks count once", L"  a \t b  ", {text(L"a"), text(L"b")}},
      {"carriage return is a blank", L"a\r", {text(L"a")}},
      {"comment", L"; ZOOM E", {}},
      {"comment behind blanks", L"  ;x", {}},
      {"semicolon inside a line is text", L"a ;b", {text(L"a"), text(L";b")}},
      {"quotes keep blanks", L"OPEN \"a b.dxf\" c", {text(L"OPEN"), text(L"a b.dxf"), text(L"c")}},
      {"two quotes are one", L"\"a\"\"b\"", {text(L"a\"b")}},
      {"empty quotes are Enter", L"CA \"\"", {text(L"CA"), kEnter}},
      {"missing quote runs to the end", L"\"a b", {text(L"a b")}},
      {"quote inside an answer is text", L"5'6\"", {text(L"5'6\"")}},
      {"answer right behind a quote", L"\"a\"b", {text(L"a"), text(L"b")}},
      {"semicolon in quotes is text", L"\";a\"", {text(L";a")}},
      {"cancel", L"^C", {kCancel}},
      {"cancel in lower case", L"^c", {kCancel}},
      {"control character", L"\x03", {kCancel}},
      {"cancels in front of a command", L"^C^C-MLEDIT", {kCancel, kCancel, text(L"-MLEDIT")}},
      {"cancel takes the answer with it", L"12^C 5", {kCancel, text(L"5")}},
      {"cancel in quotes is text", L"\"^C\"", {text(L"^C")}},
      {"caret alone is text", L"a^ ^b", {text(L"a^"), text(L"^b")}},
  };
  for (const auto& row : rows) EXPECT_EQ(answersOf(row.line), row.answers) << row.name;
}

TEST(AnswerLine, givesTheRestOfALine) {
  const struct {
    const char* name;
    std::wstring line;
    Answer rest;
    std::vector<Answer> after;
  } rows[] = {
      {"blanks belong to it", L"T  a  b ", text(L"a  b"), {}},
      {"quotes around the whole are taken off", L"T \"a b\"", text(L"a b"), {}},
      {"quotes around a part stay", L"T \"a\" b", text(L"\"a\" b"), {}},
      {"cancel", L"T a b^C c", kCancel, {text(L"c")}},
      {"cancel in quotes around the whole is text", L"T \"a ^C\"", text(L"a ^C"), {}},
      {"empty quotes are Enter", L"T \"\"", kEnter, {}},
  };
  for (const auto& row : rows) {
    AnswerLine line(row.line);
    ASSERT_EQ(line.next(), text(L"T"));
    EXPECT_EQ(line.rest(), row.rest) << row.name;
    std::vector<Answer> after;
    while (!line.isExhausted()) after.push_back(line.next());
    EXPECT_EQ(after, row.after) << row.name;
  }
  EXPECT_EQ(AnswerLine(L"").rest(), kEnter);
}

TEST(AnswerLine, usesUpAnyLine) {
  constexpr unsigned kSeed = 20240611;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  const std::wstring alphabet = L"a \"^C;\t\x03,";
  for (int round = 0; round < 20000; ++round) {
    std::wstring line;
    for (unsigned i = random() % 12; i > 0; --i) line += alphabet[random() % alphabet.size()];
    AnswerLine rest(line);
    std::size_t count = 0;
    while (!rest.isExhausted()) {
      if (random() % 5 == 0) {
        rest.rest();
      } else {
        rest.next();
      }
      ASSERT_LE(++count, line.size() + 1);
    }
  }
}

}  // namespace
}  // namespace torva::command

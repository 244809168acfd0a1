#include "command/answer_line.h"

#include <gtest/gtest.h>

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
      {"several answers", L"ZOOM C 30,30 100", {text(L"ZOOM"), text(L"C"), text(L"30,30"), text(L"100")}},
      {"runs of blanks count once", L"  a \t b  ", {text(L"a"), text(L"b")}},
      {"comment", L"; ZOOM E", {}},
      {"semicolon inside a line is text", L"a ;b", {text(L"a"), text(L";b")}},
      {"quotes keep blanks", L"OPEN \"a b.dxf\" c", {text(L"OPEN"), text(L"a b.dxf"), text(L"c")}},
      {"two quotes are one", L"\"a\"\"b\"", {text(L"a\"b")}},
      {"empty quotes are Enter", L"CA \"\"", {text(L"CA"), kEnter}},
      {"missing quote runs to the end", L"\"a b", {text(L"a b")}},
      {"quote inside an answer is text", L"5'6\"", {text(L"5'6\"")}},
      {"answer right behind a quote", L"\"a\"b", {text(L"a"), text(L"b")}},
      {"semicolon in quotes is text", L"\";a\"", {text(L";a")}},
      {"control character", L"\x03", {kCancel}},
      {"cancels in front of a command", L"^C^C-MLEDIT", {kCancel, kCancel, text(L"-MLEDIT")}},
      {"cancel takes the answer with it", L"12^C 5", {kCancel, text(L"5")}},
      {"cancel in quotes is text", L"\"^C\"", {text(L"^C")}},
      {"caret alone is text", L"a^ ^b", {text(L"a^"), text(L"^b")}},
  };
  for (const auto& row : rows) EXPECT_EQ(answersOf(row.line), row.answers) << row.name;
}

TEST(AnswerLine, givesTheRestOfALine) {
  const std::pair<std::wstring, Answer> rows[] = {
      {L"T  a  b ", text(L"a  b")}, {L"T \"a b\"", text(L"a b")},   {L"T \"a\" b", text(L"\"a\" b")},
      {L"T a b^C", kCancel},        {L"T \"a ^C\"", text(L"a ^C")}, {L"T \"\"", kEnter},
  };
  for (const auto& [whole, rest] : rows) {
    AnswerLine line(whole);
    ASSERT_EQ(line.next(), text(L"T"));
    EXPECT_EQ(line.rest(), rest);
    EXPECT_TRUE(line.isExhausted());
  }
}

}  // namespace
}  // namespace torva::command

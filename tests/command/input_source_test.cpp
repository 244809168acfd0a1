#include "command/input_source.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace torva::command {
namespace {

using LineKind = InputSource::Kind;

std::vector<std::wstring> linesOf(InputSource& source) {
  std::vector<std::wstring> lines;
  for (;;) {
    const InputSource::Line line = source.next({});
    if (line.kind != LineKind::line) break;
    lines.push_back(line.text);
    EXPECT_EQ(line.number, lines.size());
  }
  return lines;
}

TEST(ScriptSource, splitsLines) {
  using Lines = std::vector<std::wstring>;
  const std::pair<std::string, Lines> rows[] = {{"", {}},
                                                {"a\nb", {L"a", L"b"}},
                                                {"\n\na\n\n", {L"", L"", L"a", L""}},
                                                {"a\r\n\r\n", {L"a", L""}},
                                                {"\xEF\xBB\xBF\xC3\xA4\n", {L"\u00E4"}}};
  for (const auto& [script, lines] : rows) EXPECT_EQ(linesOf(*ScriptSource::fromText(script, "t")), lines) << script;
}

TEST(ScriptSource, readsFilesLongerThanOneRead) {
  std::string text;
  std::vector<std::wstring> expected;
  for (int i = 0; i < 50000; ++i) {
    text += "line " + std::to_string(i) + "\n";
    expected.push_back(L"line " + std::to_wstring(i));
  }
  const TemporaryFolder folder;
  auto source = ScriptSource::open(folder.write("long.scr", text));
  ASSERT_TRUE(source);
  EXPECT_EQ(linesOf(**source), expected);
}

}  // namespace
}  // namespace torva::command

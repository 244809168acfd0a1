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
  const struct {
    const char* name;
    std::string text;
    Lines lines;
  } rows[] = {
      {"nothing", "", {}},
      {"last line without end", "a\nb", {L"a", L"b"}},
      {"line ends give no further line", "a\n", {L"a"}},
      {"empty lines", "\n\na\n\n", {L"", L"", L"a", L""}},
      {"CR LF", "a\r\n\r\n", {L"a", L""}},
      {"byte order mark", "\xEF\xBB\xBFx\n", {L"x"}},
      {"UTF-8", "\xC3\xA4\n", {L"\u00E4"}},
  };
  for (const auto& row : rows) EXPECT_EQ(linesOf(*ScriptSource::fromText(row.text, "t")), row.lines) << row.name;
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

TEST(ScriptSource, refusesWhatIsNoScript) {
  EXPECT_EQ(ScriptSource::open("/nowhere/x.scr").error().code, ErrorCode::fileNotFound);
  EXPECT_EQ(ScriptSource::open("/tmp").error().code, ErrorCode::isDirectory);
  const auto lineWithoutEnd = ScriptSource::open("/dev/zero");
  ASSERT_TRUE(lineWithoutEnd);
  EXPECT_EQ((*lineWithoutEnd)->next({}).kind, LineKind::failure);
}

}  // namespace
}  // namespace torva::command

#include "command/input_source.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace torva::command {
namespace {

using Kind = InputSource::Kind;

std::vector<std::wstring> linesOf(InputSource& source) {
  std::vector<std::wstring> lines;
  for (;;) {
    const InputSource::Line line = source.next({});
    if (line.kind != Kind::line) break;
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
      {"byte order mark",
       "\xEF\xBB\xBF"
       "a\n",
       {L"a"}},
      {"UTF-8", "\xC3\xA4\n", {L"\u00E4"}},
  };
  for (const auto& row : rows) EXPECT_EQ(linesOf(*ScriptSource::fromText(row.text, "t")), row.lines) << row.name;
}

TEST(ScriptSource, readsFilesLongerThanOneRead) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / ("script-" + std::to_string(::getpid()));
  std::vector<std::wstring> expected;
  {
    std::ofstream file(path);
    for (int i = 0; i < 50000; ++i) {
      file << "line " << i << '\n';
      expected.push_back(L"line " + std::to_wstring(i));
    }
  }
  auto source = ScriptSource::open(path.string());
  ASSERT_TRUE(source);
  EXPECT_EQ(linesOf(**source), expected);
  std::filesystem::remove(path);
}

TEST(ScriptSource, refusesWhatIsNoScript) {
  EXPECT_EQ(ScriptSource::open("/nowhere/x.scr").error().code, ErrorCode::fileNotFound);
  EXPECT_EQ(ScriptSource::open("/tmp").error().code, ErrorCode::isDirectory);
}

TEST(ScriptSource, endsAtALineWithoutEnd) {
  auto source = ScriptSource::open("/dev/zero");
  ASSERT_TRUE(source);
  EXPECT_EQ((*source)->next({}).kind, Kind::failure);
}

}  // namespace
}  // namespace torva::command

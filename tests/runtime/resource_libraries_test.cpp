#include "runtime/resource_libraries.h"

#include <gtest/gtest.h>
#include <minizip/zip.h>

#include "runtime/module_manifests.h"
#include "support/temporary_folder.h"

namespace torva::runtime {
namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

void writeArchive(const std::string& path, const Entries& entries) {
  const zipFile file = zipOpen64(path.c_str(), APPEND_STATUS_CREATE);
  ASSERT_NE(file, nullptr);
  for (const auto& [name, content] : entries) {
    const zip_fileinfo info = {};
    ASSERT_EQ(zipOpenNewFileInZip(file, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, 6), ZIP_OK);
    ASSERT_EQ(zipWriteInFileInZip(file, content.data(), static_cast<unsigned>(content.size())), ZIP_OK);
    ASSERT_EQ(zipCloseFileInZip(file), ZIP_OK);
  }
  ASSERT_EQ(zipClose(file, nullptr), ZIP_OK);
}

std::wstring textOf(const ResourceArchive* archive, unsigned id) {
  const std::wstring* text = archive ? archive->text(id) : nullptr;
  return text ? *text : L"(none)";
}

TEST(ResourceArchive, GivesTextsInTheBestLanguageThatHasThem) {
  const TemporaryFolder folder;
  writeArchive(folder.path("a.dll"), {{"texts.de_AT.txt", "1\tServus\n"},
                                      {"texts.de.txt", "1\tHallo\n2\tWelt\n"},
                                      {"texts.en.txt", "1\tHello\n2\tWorld\n3\tonly English\n"}});
  const std::pair<std::vector<std::string>, std::wstring> cases[] = {
      {{}, L"Hello World only English"},
      {{"de"}, L"Hallo Welt only English"},
      {{"de_AT", "de"}, L"Servus Welt only English"},
      {{"fr"}, L"Hello World only English"},
  };
  for (const auto& [languages, expected] : cases) {
    const auto archive = ResourceArchive::open(folder.path("a.dll"), languages);
    ASSERT_TRUE(archive) << archive.error().message();
    EXPECT_EQ(textOf(archive->get(), 1) + L' ' + textOf(archive->get(), 2) + L' ' + textOf(archive->get(), 3), expected);
    EXPECT_EQ((*archive)->text(4), nullptr);
  }
}

TEST(ResourceArchive, ReadsTheTableLineByLine) {
  const TemporaryFolder folder;
  const std::string table =
      "# comment\r\n\r\n7\ta\\nb\\tc\\\\d\r\n8\t\n9\t gr\xc3\xb6\xc3\x9f"
      "er \n10\ttab\tinside\n4294967295\tlast\\";
  writeArchive(folder.path("a.dll"), {{"texts.en.txt", table}});
  const auto archive = ResourceArchive::open(folder.path("a.dll"), {});
  ASSERT_TRUE(archive) << archive.error().message();
  EXPECT_EQ(textOf(archive->get(), 7), L"a\nb\tc\\d");
  EXPECT_EQ(textOf(archive->get(), 8), L"");
  EXPECT_EQ(textOf(archive->get(), 9), L" größer ");
  EXPECT_EQ(textOf(archive->get(), 10), L"tab\tinside");
  EXPECT_EQ(textOf(archive->get(), 4294967295u), L"last\\");
}

TEST(ResourceArchive, RefusesWhatItCannotRead) {
  const TemporaryFolder folder;
  writeArchive(folder.path("whole.dll"), {{"texts.en.txt", std::string(5000, '#') + "\n1\tx\n"}, {"pictures/a.png", "png"}});
  const std::string whole = folder.read("whole.dll");
  std::string flipped = whole;
  flipped[45] = static_cast<char>(flipped[45] ^ 0x55);

  folder.write("empty.dll", "");
  folder.write("text.dll", "1\tno archive\n");
  folder.write("cut.dll", whole.substr(0, whole.size() / 2));
  folder.write("flipped.dll", flipped);
  std::filesystem::create_directory(folder.path("folder.dll"));
  writeArchive(folder.path("foreign.dll"), {{"texts.de.txt", "1\tHallo\n"}});
  writeArchive(folder.path("huge.dll"), {{"texts.en.txt", std::string(17u << 20, '#')}});
  writeArchive(folder.path("letters.dll"), {{"texts.en.txt", "1\ta\n\nx\tb\n"}});
  writeArchive(folder.path("tabless.dll"), {{"texts.en.txt", "1\ta\n2 b\n"}});
  writeArchive(folder.path("large-number.dll"), {{"texts.en.txt", "4294967296\ta\n"}});

  const struct {
    const char* file;
    ErrorCode code;
    std::size_t line;
  } cases[] = {
      {"missing.dll", ErrorCode::fileNotFound, 0},  {"folder.dll", ErrorCode::fileNotFound, 0},
      {"empty.dll", ErrorCode::fileNotReadable, 0}, {"text.dll", ErrorCode::fileNotReadable, 0},
      {"cut.dll", ErrorCode::fileNotReadable, 0},   {"flipped.dll", ErrorCode::badText, 0},
      {"foreign.dll", ErrorCode::badText, 0},       {"huge.dll", ErrorCode::badText, 0},
      {"letters.dll", ErrorCode::badText, 3},       {"tabless.dll", ErrorCode::badText, 2},
      {"large-number.dll", ErrorCode::badText, 1},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.file);
    const auto archive = ResourceArchive::open(folder.path(each.file), {});
    ASSERT_FALSE(archive);
    EXPECT_EQ(archive.error().code, each.code) << archive.error().message();
    EXPECT_EQ(archive.error().line, each.line);
  }
  const auto archive = ResourceArchive::open(folder.path("whole.dll"), {});
  ASSERT_TRUE(archive);
  EXPECT_EQ((*archive)->picture("a"), "png");
  EXPECT_FALSE((*archive)->picture("b"));
}

class ResourceLibrariesTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* place : {"caller", "root", "root/bin", "root/Support"})
      std::filesystem::create_directories(folder.path(place));
  }
  void library(const std::string& path, const std::string& text) {
    writeArchive(folder.path(path), {{"texts.en.txt", "1\t" + text + "\n"}});
  }
  std::wstring textOf(KdModuleHandle handle) { return runtime::textOf(libraries.archive(handle), 1); }

  TemporaryFolder folder;
  ResourceLibraries libraries{Folders{folder.path("root/bin"), folder.path("root")}, {}};
};

TEST_F(ResourceLibrariesTest, LooksBesideTheCallerThenBesideTheProgramThenUnderTheRoot) {
  const std::string caller = folder.path("caller");
  EXPECT_EQ(libraries.open("x.dll", caller), nullptr);
  EXPECT_NE(libraries.takeFailure(), "");
  const std::pair<const char*, std::wstring> places[] = {
      {"root/Support", L"support"}, {"root", L"root"}, {"root/bin", L"program"}, {"caller", L"caller"}};
  for (const auto& [place, text] : places) {
    library(std::string(place) + "/x.dll", std::string(text.begin(), text.end()));
    EXPECT_EQ(textOf(libraries.open("x.dll", caller)), text);
    EXPECT_EQ(libraries.takeFailure(), "");
  }
  EXPECT_EQ(textOf(libraries.open(folder.path("root/x.dll"), caller)), L"root");
  EXPECT_EQ(textOf(libraries.open("x.dll", "")), L"program");
  EXPECT_EQ(libraries.open("", caller), nullptr);
}

TEST_F(ResourceLibrariesTest, DoesNotPassOverADamagedLibrary) {
  library("root/x.dll", "root");
  folder.write("caller/x.dll", "damaged");
  EXPECT_EQ(libraries.open("x.dll", folder.path("caller")), nullptr);
  EXPECT_NE(libraries.takeFailure().find("caller/x.dll"), std::string::npos);
  EXPECT_EQ(libraries.takeFailure(), "");
}

TEST_F(ResourceLibrariesTest, EveryOpeningHasAHandleOfItsOwn) {
  library("root/x.dll", "first");
  const KdModuleHandle kept = libraries.open("x.dll", "");
  const KdModuleHandle other = libraries.open("x.dll", "");
  ASSERT_NE(kept, other);
  EXPECT_TRUE(libraries.close(other));
  EXPECT_FALSE(libraries.close(other));
  EXPECT_FALSE(libraries.close(nullptr));
  EXPECT_EQ(textOf(kept), L"first");
  EXPECT_EQ(textOf(other), L"(none)");

  library("root/x.dll", "another text");
  EXPECT_EQ(textOf(libraries.open("x.dll", "")), L"another text");
  EXPECT_EQ(textOf(kept), L"first");
  std::filesystem::remove(folder.path("root/x.dll"));
  EXPECT_EQ(libraries.open("x.dll", ""), nullptr);
}

TEST_F(ResourceLibrariesTest, TheCurrentSourceIsAnOpenLibraryOrNone) {
  library("root/x.dll", "text");
  const KdModuleHandle handle = libraries.open("x.dll", "");
  EXPECT_EQ(libraries.current(), nullptr);
  libraries.setCurrent(handle);
  EXPECT_EQ(libraries.current(), handle);
  EXPECT_TRUE(libraries.close(handle));
  EXPECT_EQ(libraries.current(), nullptr);
  libraries.setCurrent(handle);
  EXPECT_EQ(libraries.current(), nullptr) << "a library that was freed became current";
}

TEST(ModuleManifests, NameTheModuleOfEachCommand) {
  const TemporaryFolder folder;
  folder.write("a/one.kdrx.commands", "# comment\r\nDraw\r\n\r\n  -draw  \nShared");
  folder.write("a/two.kdrx.commands", "SHARED\nOTHER\n");
  folder.write("a/notes.commands", "NOT\n");
  folder.write("b/three.kdrx.commands", "OTHER\nTHIRD\n");
  std::filesystem::create_directory(folder.path("b/four.kdrx.commands"));
  const std::map<std::wstring, std::string> expected = {{L"DRAW", folder.path("a/one.kdrx")},
                                                        {L"-DRAW", folder.path("a/one.kdrx")},
                                                        {L"SHARED", folder.path("a/one.kdrx")},
                                                        {L"OTHER", folder.path("a/two.kdrx")},
                                                        {L"THIRD", folder.path("b/three.kdrx")}};
  EXPECT_EQ(readModuleManifests({folder.path("missing"), folder.path("a"), folder.path("b")}), expected);
}

}  // namespace
}  // namespace torva::runtime

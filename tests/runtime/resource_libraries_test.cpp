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
  const std::pair<std::vector<std::string>, std::wstring> cases[] = {{{"de_AT", "de"}, L"Servus Welt only English"},
                                                                     {{"de"}, L"Hallo Welt only English"},
                                                                     {{"fr"}, L"Hello World only English"}};
  for (const auto& [languages, expected] : cases) {
    const auto archive = ResourceArchive::open(folder.path("a.dll"), languages);
    ASSERT_TRUE(archive) << archive.error().message();
    EXPECT_EQ(textOf(archive->get(), 1) + L' ' + textOf(archive->get(), 2) + L' ' + textOf(archive->get(), 3), expected);
  }
}

TEST(ResourceArchive, ReadsTheTableLineByLine) {
  const TemporaryFolder folder;
  writeArchive(
      folder.path("a.dll"),
      {{"texts.en.txt", "# comment\r\n\r\n7\ta\\nb\\tc\\\\d\r\n8\t\n9\t \xc3\xb6 \n10\ttab\tinside\n4294967295\tlast\\"}});
  const auto archive = ResourceArchive::open(folder.path("a.dll"), {});
  ASSERT_TRUE(archive) << archive.error().message();
  for (const auto& [id, text] : {std::pair<unsigned, const wchar_t*>{7, L"a\nb\tc\\d"},
                                 {8, L""},
                                 {9, L" \u00F6 "},
                                 {10, L"tab\tinside"},
                                 {4294967295u, L"last\\"}})
    EXPECT_EQ(textOf(archive->get(), id), text);
}

TEST(ResourceArchive, RefusesWhatItCannotRead) {
  const TemporaryFolder folder;
  writeArchive(folder.path("whole.dll"), {{"texts.en.txt", std::string(5000, '#') + "\n1\tx\n"}, {"pictures/a.png", "png"}});
  std::string flipped = folder.read("whole.dll");
  folder.write("cut.dll", flipped.substr(0, flipped.size() / 2));
  flipped[45] = static_cast<char>(flipped[45] ^ 0x55);
  folder.write("flipped.dll", flipped);
  std::filesystem::create_directory(folder.path("folder.dll"));
  writeArchive(folder.path("foreign.dll"), {{"texts.de.txt", "1\tHallo\n"}});
  writeArchive(folder.path("huge.dll"), {{"texts.en.txt", std::string(17u << 20, '#')}});
  writeArchive(folder.path("letters.dll"), {{"texts.en.txt", "1\ta\n\nx\tb\n"}});
  writeArchive(folder.path("large-number.dll"), {{"texts.en.txt", "4294967296\ta\n"}});
  const std::tuple<const char*, ErrorCode, std::size_t> cases[] = {
      {"folder.dll", ErrorCode::fileNotFound, 0}, {"cut.dll", ErrorCode::fileNotReadable, 0},
      {"flipped.dll", ErrorCode::badText, 0},     {"foreign.dll", ErrorCode::badText, 0},
      {"huge.dll", ErrorCode::badText, 0},        {"letters.dll", ErrorCode::badText, 3},
      {"large-number.dll", ErrorCode::badText, 1}};
  for (const auto& [file, code, line] : cases) {
    const auto archive = ResourceArchive::open(folder.path(file), {});
    ASSERT_FALSE(archive) << file;
    EXPECT_EQ(std::pair(archive.error().code, archive.error().line), std::pair(code, line)) << archive.error().message();
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
}

TEST_F(ResourceLibrariesTest, EveryOpeningHasAHandleOfItsOwnAndTheCurrentOneIsOpen) {
  library("root/x.dll", "first");
  const KdModuleHandle kept = libraries.open("x.dll", "");
  const KdModuleHandle other = libraries.open("x.dll", "");
  ASSERT_NE(kept, other);
  libraries.setCurrent(other);
  EXPECT_EQ(libraries.current(), other);
  EXPECT_TRUE(libraries.close(other));
  EXPECT_EQ(libraries.current(), nullptr);
  libraries.setCurrent(other);
  EXPECT_EQ(libraries.current(), nullptr) << "a library that was freed became current";
  EXPECT_FALSE(libraries.close(other));
  EXPECT_FALSE(libraries.close(nullptr));
  EXPECT_EQ(textOf(other), L"(none)");

  library("root/x.dll", "another text");
  EXPECT_EQ(textOf(libraries.open("x.dll", "")), L"another text");
  EXPECT_EQ(textOf(kept), L"first");
}

TEST(ModuleManifests, NameTheModuleOfEachCommand) {
  const TemporaryFolder folder;
  folder.write("a/one.kdrx.commands", "# comment\r\nDraw\r\n\r\n  -draw  \nShared");
  folder.write("a/notes.commands", "NOT\n");
  folder.write("b/two.kdrx.commands", "SHARED\n");
  const std::string one = folder.path("a/one.kdrx");
  EXPECT_EQ(readModuleManifests({folder.path("missing"), folder.path("a"), folder.path("b")}),
            (std::map<std::wstring, std::string>{{L"DRAW", one}, {L"-DRAW", one}, {L"SHARED", one}}));
}

}  // namespace
}  // namespace torva::runtime

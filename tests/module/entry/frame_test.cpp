#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "command/input_source.h"
#include "entry/commands.h"
#include "entry/module_entry.h"
#include "entry/tool_dispatch.h"
#include "runtime/host.h"
#include "support/temporary_folder.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using torva::command::Command;
using torva::command::Fault;

constexpr const char* kBuiltFolder = TORVA_BINARY_DIR "/bin/";
constexpr const char* kLibrary = "KdrxMLStyleRes.dll";
constexpr const wchar_t* kNames[] = {L"MLSTYLE", L"MLEDIT", L"-MLEDIT"};

class FrameTest : public testing::Test {
 protected:
  FrameTest() {
    std::filesystem::create_directory(folder.path("bin"));
    std::filesystem::copy_file(std::string(kBuiltFolder) + kLibrary, folder.path(libraryName));
    startHost(torva::runtime::DialogUse::none);
  }
  ~FrameTest() override { DllMain(nullptr, 0, nullptr); }

  void startHost(torva::runtime::DialogUse dialogUse) {
    torva::runtime::HostOptions options;
    options.profileFolder = folder.path("profile");
    options.programFolder = folder.path("bin");
    options.dialogUse = dialogUse;
    options.print = [this](std::wstring_view text) { printed += text; };
    options.report = [this](const std::string& text) { reported += text + "\n"; };
    host.reset();
    host = std::move(*torva::runtime::Host::create(options));
  }
  bool hasCommands() { return host->editor().commands().find(L"MLEDIT") != nullptr; }
  Fault run(const std::string& script) {
    printed.clear();
    return host->editor().run(*torva::command::ScriptSource::fromText(script, "test"), torva::command::OnFault::goOn);
  }

  const std::string libraryName = std::string("bin/") + kLibrary;
  TemporaryFolder folder;
  std::unique_ptr<torva::runtime::Host> host;
  std::wstring printed;
  std::string reported;
};

TEST_F(FrameTest, StartingRegistersServiceAndCommands) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  EXPECT_TRUE(kdrxServiceIsRegistered(L"KvMLStyleApps"));
  for (const wchar_t* name : kNames) {
    const Command* command = host->editor().commands().find(name);
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->group, L"TORVA_KVMLSTYLEGROUP");
    EXPECT_EQ(command->localName, name);
    EXPECT_EQ(command->flags, 2);
  }
}

TEST_F(FrameTest, StoppingRemovesServiceAndCommandsAndKeepsTheLibrary) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  ASSERT_EQ(kdrxEntryPoint(2, nullptr), 0);
  EXPECT_FALSE(kdrxServiceIsRegistered(L"KvMLStyleApps"));
  EXPECT_FALSE(hasCommands());
  EXPECT_EQ(LoadLocalCmdStr(4014), L"MLEDIT");
  EXPECT_EQ(kdrxEntryPoint(2, nullptr), 0);
}

TEST_F(FrameTest, OtherMessagesDoNothing) {
  for (const int message : {14, 0, 3, -1, 1000}) EXPECT_EQ(kdrxEntryPoint(message, nullptr), 0);
  EXPECT_FALSE(kdrxServiceIsRegistered(L"KvMLStyleApps"));
  EXPECT_FALSE(hasCommands());
}

TEST_F(FrameTest, WithoutItsLibraryTheModuleDoesNotStart) {
  std::filesystem::remove(folder.path(libraryName));
  EXPECT_EQ(kdrxEntryPoint(1, nullptr), 3);
  EXPECT_FALSE(kdrxServiceIsRegistered(L"KvMLStyleApps"));
  EXPECT_FALSE(hasCommands());
}

TEST_F(FrameTest, TheFirstAttachmentIsTheOneRemembered) {
  const KdModuleHandle library = loadResourceDll(kResourceLibrary);
  ASSERT_NE(library, nullptr);
  AfxSetResourceHandle(library);
  int first = 0, second = 0;
  const auto firstHandle = reinterpret_cast<KdModuleHandle>(&first),
             secondHandle = reinterpret_cast<KdModuleHandle>(&second);
  EXPECT_EQ(DllMain(firstHandle, 1, nullptr), 1);
  AfxSetResourceHandle(nullptr);
  EXPECT_EQ(DllMain(secondHandle, 1, nullptr), 1);
  EXPECT_EQ(extensionModule.ResourceAtAttach(), library);
  EXPECT_EQ(extensionModule.Instance(), firstHandle);
  EXPECT_EQ(hAppModule, secondHandle);

  EXPECT_EQ(DllMain(nullptr, 2, nullptr), 1);
  EXPECT_TRUE(extensionModule.IsAttached());
  EXPECT_EQ(DllMain(nullptr, 0, nullptr), 1);
  EXPECT_FALSE(extensionModule.IsAttached());
  EXPECT_EQ(extensionModule.AttachInstance(secondHandle), 1);
  EXPECT_EQ(extensionModule.ResourceAtAttach(), nullptr);
}

TEST_F(FrameTest, EveryCommandRestoresTheResourceHandle) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  const KdModuleHandle before = loadResourceDll(kResourceLibrary);
  AfxSetResourceHandle(before);
  for (const char* script : {"MLSTYLE\n", "MLEDIT\n", "-MLEDIT\n^C\n", "-MLEDIT\n\n", "-MLEDIT\nwa\n\n", "-MLEDIT CA\n\n"}) {
    SCOPED_TRACE(script);
    EXPECT_EQ(run(script), Fault::none) << reported;
    EXPECT_EQ(AfxGetResourceHandle(), before);
  }
}

TEST_F(FrameTest, WithoutTheLibraryACommandDoesAndShowsNothing) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  std::filesystem::remove(folder.path(libraryName));
  for (const auto command : {cmd_kvmlstyle, cmd_kvmledit, cmd_kvmleditcli}) command();
  EXPECT_THAT(printed, IsEmpty());
}

TEST_F(FrameTest, CommandsThatNeedADialogSaySo) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  EXPECT_EQ(run("MLSTYLE\n"), Fault::none);
  EXPECT_THAT(printed, AllOf(HasSubstr(L"MLSTYLE needs a dialog"), HasSubstr(L".\n")));
  EXPECT_EQ(run("MLEDIT\n"), Fault::none);
  EXPECT_THAT(printed, HasSubstr(L"Use -MLEDIT"));
}

TEST_F(FrameTest, WithoutTheLibraryOfDialogsTheCommandSaysSo) {
  // The module is part of this program here, and no library of dialogs lies beside that.
  startHost(torva::runtime::DialogUse::shown);
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  EXPECT_EQ(run("MLEDIT\n"), Fault::none);
  EXPECT_THAT(printed, HasSubstr(L"libKdrxMLStyleDialogs.so"));
}

TEST_F(FrameTest, TheToolPromptOffersEveryKeywordAndTakesNoOther) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  EXPECT_EQ(LoadLocalCmdStr(4000), L"CC OC MC CT OT MT CJ AV DV CS CA WA");
  EXPECT_EQ(run("-MLEDIT\nXX\n^C\n"), Fault::none);
  EXPECT_THAT(printed, HasSubstr(L"[CC/OC/MC/CT/OT/MT/CJ/AV/DV/CS/CA/WA]"));
  EXPECT_THAT(printed, HasSubstr(L"XX"));
  for (unsigned id = 4000; id <= 4019; ++id) EXPECT_FALSE(LoadLocalCmdStr(id).empty()) << id;
}

TEST(ToolDispatch, KeywordsNameToolsIgnoringCase) {
  const wchar_t* const keywords[] = {L"CC", L"OC", L"MC", L"CT", L"OT", L"MT", L"CJ", L"AV", L"DV", L"CS", L"CA", L"WA"};
  for (int i = 0; i < 12; ++i) EXPECT_EQ(toolOfKeyword(keywords[i]), i + 1);
  EXPECT_EQ(toolOfKeyword(L"wa"), 12);
  EXPECT_EQ(toolOfKeyword(L"cS"), 10);
  for (const wchar_t* other : {L"", L"C", L"CCC", L" CC", L"UNDO"}) EXPECT_EQ(toolOfKeyword(other), 0);
}

TEST(ToolDispatch, NumbersOfNoToolRunNothing) {
  for (const int tool : {0, 13, -1, 100}) mlineEditOperation(tool, nullptr);
}

TEST(BuiltModule, ItsManifestNamesTheCommandsItRegisters) {
  const TemporaryFolder folder;
  torva::runtime::HostOptions options;
  options.profileFolder = folder.path("profile");
  options.programFolder = folder.path("");
  auto plain = std::move(*torva::runtime::Host::create(options));
  const auto builtIn = plain->editor().commands().names();
  plain.reset();
  options.modules = {std::string(kBuiltFolder) + "libKdrxMLStyle.kdrx"};
  auto created = torva::runtime::Host::create(options);
  ASSERT_TRUE(created) << created.error().message();

  std::vector<std::wstring> registered, listed;
  for (const std::wstring& name : (*created)->editor().commands().names()) {
    if (std::find(builtIn.begin(), builtIn.end(), name) == builtIn.end()) registered.push_back(name);
  }
  std::ifstream manifest(std::string(kBuiltFolder) + "libKdrxMLStyle.kdrx.commands");
  for (std::string line; std::getline(manifest, line);) {
    if (!line.empty() && line.front() != '#') listed.emplace_back(line.begin(), line.end());
  }
  EXPECT_EQ(registered.size(), 3u);
  EXPECT_THAT(listed, testing::UnorderedElementsAreArray(registered));
}

}  // namespace

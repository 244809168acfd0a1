#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "entry/commands.h"
#include "entry/module_entry.h"
#include "entry/tool_dispatch.h"
#include "support/host_driver.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using torva::command::Command;
using torva::command::Fault;

constexpr const char* kBuiltFolder = TORVA_BINARY_DIR "/bin/";
constexpr const char* kLibrary = "KdrxMLStyleRes.dll";

class FrameTest : public testing::Test, protected HostDriver {
 protected:
  FrameTest() {
    std::filesystem::create_directory(folder.path("bin"));
    std::filesystem::copy_file(std::string(kBuiltFolder) + kLibrary, folder.path(libraryName));
    startHost(torva::runtime::DialogUse::none, folder.path("bin"));
  }
  ~FrameTest() override { DllMain(nullptr, 0, nullptr); }

  bool isStarted() {
    const bool hasCommands = host->editor().commands().find(L"MLEDIT") != nullptr;
    EXPECT_EQ(kdrxServiceIsRegistered(L"KvMLStyleApps"), hasCommands);
    return hasCommands;
  }
  Fault run(const std::string& script) {
    printed.clear();
    return HostDriver::run(script);
  }

  const std::string libraryName = std::string("bin/") + kLibrary;
};

TEST_F(FrameTest, StartsOnceAndStopsOnce) {
  for (const int message : {14, 0, 3, -1, 1000}) EXPECT_EQ(kdrxEntryPoint(message, nullptr), 0);
  EXPECT_FALSE(isStarted());
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  EXPECT_TRUE(isStarted());
  for (const wchar_t* name : {L"MLSTYLE", L"MLEDIT", L"-MLEDIT"}) {
    const Command* command = host->editor().commands().find(name);
    ASSERT_TRUE(command && command->group == L"TORVA_KVMLSTYLEGROUP" && command->flags == 2);
  }
  for (int i = 0; i < 2; ++i) EXPECT_EQ(kdrxEntryPoint(2, nullptr), 0);
  EXPECT_FALSE(isStarted());
  for (unsigned id = 4000; id <= 4019; ++id) EXPECT_FALSE(LoadLocalCmdStr(id).empty()) << "the library is kept " << id;
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

TEST_F(FrameTest, WithoutItsLibraryNothingStartsOrIsShown) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  std::filesystem::remove(folder.path(libraryName));
  for (const auto command : {cmd_kvmlstyle, cmd_kvmledit, cmd_kvmleditcli}) command();
  EXPECT_THAT(printed, IsEmpty());
  ASSERT_EQ(kdrxEntryPoint(2, nullptr), 0);
  EXPECT_EQ(kdrxEntryPoint(1, nullptr), 3);
  EXPECT_FALSE(isStarted());
}

TEST_F(FrameTest, WhatADialogCommandNeedsIsSaid) {
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  const auto printedBy = [&](const char* script) {
    EXPECT_EQ(run(script), Fault::none);
    return printed;
  };
  EXPECT_THAT(printedBy("MLSTYLE\n"), HasSubstr(L"MLSTYLE needs a dialog"));
  EXPECT_THAT(printedBy("MLEDIT\n"), HasSubstr(L"Use -MLEDIT"));
  // The module is part of this program here, and no library of dialogs lies beside that.
  startHost(torva::runtime::DialogUse::shown, folder.path("bin"));
  ASSERT_EQ(kdrxEntryPoint(1, nullptr), 0);
  EXPECT_THAT(printedBy("MLEDIT\n"), HasSubstr(L"libKdrxMLStyleDialogs.so"));
}

TEST(ToolDispatch, KeywordsNameToolsIgnoringCase) {
  const wchar_t* const keywords[] = {L"CC", L"OC", L"mc", L"CT", L"OT", L"MT", L"CJ", L"AV", L"DV", L"cS", L"CA", L"wa"};
  for (int i = 0; i < 12; ++i) EXPECT_EQ(toolOfKeyword(keywords[i]), i + 1);
  for (const wchar_t* other : {L"", L"C", L"CCC", L" CC", L"UNDO"}) EXPECT_EQ(toolOfKeyword(other), 0);
  for (const int tool : {0, 13, -1, 100}) mlineEditOperation(tool, nullptr);
}

}  // namespace

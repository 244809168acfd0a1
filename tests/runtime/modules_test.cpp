#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "command/input_source.h"
#include "runtime/host.h"
#include "support/temporary_folder.h"

#include <kdrx/rx.h>

namespace torva::runtime {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string modulePath(const std::string& name) {
  return std::string(TORVA_BAD_MODULES "/") + name + ".kdrx";
}

bool isInMemory(const std::string& name) {
  void* library = ::dlopen(modulePath(name).c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (library) ::dlclose(library);
  return library != nullptr;
}

class ModulesTest : public testing::Test {
 protected:
  ModulesTest() {
    options.profileFolder = folder.path("profile");
    options.programFolder = folder.path("bin");
    std::filesystem::create_directory(folder.path("bin"));
    options.print = [this](std::wstring_view text) { printed += text; };
    options.report = [this](const std::string& text) { reported += text + "\n"; };
  }

  Result<void> start(const std::vector<std::string>& modules) {
    host.reset();
    for (const std::string& module : modules) options.modules.push_back(modulePath(module));
    auto created = Host::create(options);
    if (!created) return tl::unexpected(created.error());
    host = std::move(*created);
    return {};
  }
  command::Fault run(const std::string& script) {
    return host->editor().run(*command::ScriptSource::fromText(script, "test"), command::OnFault::goOn);
  }

  TemporaryFolder folder;
  HostOptions options;
  std::wstring printed;
  std::string reported;
  std::unique_ptr<Host> host;
};

TEST_F(ModulesTest, AModuleIsStartedRunsAndIsStoppedAndUnloaded) {
  ASSERT_TRUE(start({"wellbehaved"}));
  EXPECT_TRUE(isInMemory("wellbehaved"));
  const std::string path = std::filesystem::canonical(modulePath("wellbehaved"));
  EXPECT_TRUE(kdrxServiceIsRegistered(std::wstring(path.begin(), path.end()).c_str()));
  EXPECT_TRUE(kdrxServiceIsRegistered(L"attached"));
  EXPECT_TRUE(kdrxServiceIsRegistered(L"unlocked"));
  EXPECT_FALSE(kdrxServiceIsRegistered(L"a stranger was unlocked"));
  EXPECT_EQ(run("wellBehaved\n"), command::Fault::none);
  EXPECT_THAT(printed, HasSubstr(L"well behaved"));
  host.reset();
  EXPECT_FALSE(isInMemory("wellbehaved"));
  EXPECT_EQ(kdrxSysRegistry(), nullptr);
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(ModulesTest, LoadingAModuleAgainChangesNothing) {
  std::filesystem::create_symlink(modulePath("wellbehaved"), folder.path("other.kdrx"));
  options.modules = {folder.path("other.kdrx")};
  ASSERT_TRUE(start({"wellbehaved", "wellbehaved"}));
  EXPECT_EQ(run("WELLBEHAVED\n"), command::Fault::none);
  host.reset();
  EXPECT_FALSE(isInMemory("wellbehaved"));
}

TEST_F(ModulesTest, WhatIsNoModuleOrRefusesIsReportedAndLeavesNothing) {
  const struct {
    const char* module;
    ErrorCode code;
    const char* text;
  } cases[] = {
      {"missing", ErrorCode::fileNotFound, "missing.kdrx"},
      {"nodllmain", ErrorCode::libraryNotLoadable, "DllMain"},
      {"noentrypoint", ErrorCode::libraryNotLoadable, "kdrxEntryPoint"},
      {"unresolved", ErrorCode::libraryNotLoadable, "functionOfANewerHost"},
      {"refusestoattach", ErrorCode::moduleRefused, "attached"},
      {"refusestostart", ErrorCode::moduleRefused, "result 3"},
      {"throwsonstart", ErrorCode::moduleRefused, "cannot start today"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.module);
    options.modules.clear();
    const auto started = start({each.module});
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().code, each.code);
    EXPECT_THAT(started.error().message(), HasSubstr(each.text));
    EXPECT_FALSE(isInMemory(each.module));
  }
}

TEST_F(ModulesTest, WhatIsNoRegularLibraryIsRefused) {
  ASSERT_EQ(::mkfifo(folder.path("pipe.kdrx").c_str(), 0600), 0);
  folder.write("text.kdrx", "no library");
  for (const char* name : {"pipe.kdrx", "text.kdrx", "."}) {
    options.modules = {folder.path(name)};
    EXPECT_FALSE(start({})) << name;
  }
}

TEST_F(ModulesTest, ACommandOfARefusedModuleIsGone) {
  folder.write("bin/refusestostart.kdrx.commands", "REFUSED\n");
  std::filesystem::copy_file(modulePath("refusestostart"), folder.path("bin/refusestostart.kdrx"));
  ASSERT_TRUE(start({}));
  for (int i = 0; i < 2; ++i) {
    reported.clear();
    EXPECT_EQ(run("REFUSED\n"), command::Fault::script);
    EXPECT_THAT(reported, HasSubstr("refused to start (result 3)"));
    EXPECT_THAT(reported, HasSubstr("unknown command"));
  }
  EXPECT_THAT(printed, Not(HasSubstr(L"runs although refused")));
  EXPECT_TRUE(kdrxServiceIsRegistered(L"detached"));
}

TEST_F(ModulesTest, AModuleIsLoadedWhenOneOfItsCommandsIsFirstGiven) {
  for (const char* place : {"bin", "."}) {
    SCOPED_TRACE(place);
    const TemporaryFolder root;
    options.programFolder = root.path("bin");
    root.write("bin/readme", "");
    root.write(std::string(place) + "/wellbehaved.kdrx.commands", "wellbehaved\nNEVER\n");
    std::filesystem::copy_file(modulePath("wellbehaved"), root.path(std::string(place) + "/wellbehaved.kdrx"));
    ASSERT_TRUE(start({}));
    EXPECT_EQ(run("NOSUCH\n"), command::Fault::script);
    EXPECT_FALSE(kdrxServiceIsRegistered(L"attached"));
    EXPECT_EQ(run("_WellBehaved\nWELLBEHAVED\n"), command::Fault::none);
    EXPECT_TRUE(kdrxServiceIsRegistered(L"attached"));
    EXPECT_EQ(run("NEVER\n"), command::Fault::script);
    host.reset();
  }
}

TEST_F(ModulesTest, WhatAModuleThrowsWhenStoppedIsReportedAndTheOthersAreStopped) {
  ASSERT_TRUE(start({"wellbehaved", "throwsonstop"}));
  EXPECT_EQ(run("STAYS\n"), command::Fault::none);
  host.reset();
  EXPECT_THAT(reported, HasSubstr("throwsonstop"));
  EXPECT_FALSE(isInMemory("wellbehaved"));
  // It never let itself be unlocked.
  EXPECT_TRUE(isInMemory("throwsonstop"));
}

TEST_F(ModulesTest, AnObjectLeftOpenIsReportedAndClosed) {
  ASSERT_TRUE(start({"misbehaves"}));
  for (int i = 0; i < 2; ++i) {
    printed.clear();
    reported.clear();
    EXPECT_EQ(run("LEAVEOPEN\n"), command::Fault::script);
    EXPECT_THAT(printed, HasSubstr(L"opened both")) << "the objects of the run before are still open";
    EXPECT_THAT(reported, HasSubstr("LEAVEOPEN"));
  }
}

TEST_F(ModulesTest, ACommandThatThrowsIsAFaultAndTheScriptGoesOn) {
  ASSERT_TRUE(start({"misbehaves", "wellbehaved"}));
  EXPECT_EQ(run("THROWS\nTHROWSANUMBER\nWELLBEHAVED\n"), command::Fault::script);
  EXPECT_THAT(reported, HasSubstr("out of luck"));
  EXPECT_THAT(printed, HasSubstr(L"well behaved"));
}

}  // namespace
}  // namespace torva::runtime

#include "dxf/file_content.h"

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/temporary_folder.h"

namespace torva::dxf {
namespace {

std::string largeContent() {
  std::string content;
  for (int i = 0; content.size() < (1 << 20); ++i) content += std::to_string(i) + "\n";
  return content;
}

/// Runs a change of a file in a program of its own; its exit status.
int inOtherProcess(const std::function<bool()>& change) {
  const pid_t child = fork();
  if (child == 0) _exit(change() ? 0 : 1);
  int status = -1;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(FileContent, SurvivesWhatOtherProgramsDoToTheFile) {
  const std::string content = largeContent();
  const std::pair<const char*, std::function<bool(const std::string&)>> cases[] = {
      {"cut short", [](const std::string& path) { return truncate(path.c_str(), 10) == 0; }},
      {"emptied by opening", [](const std::string& path) { return open(path.c_str(), O_WRONLY | O_TRUNC) >= 0; }},
      {"overwritten in place",
       [](const std::string& path) {
         const int file = open(path.c_str(), O_RDWR);
         const std::string other(1 << 20, '#');
         return write(file, other.data(), other.size()) == static_cast<ssize_t>(other.size());
       }},
      {"removed", [](const std::string& path) { return unlink(path.c_str()) == 0; }},
      {"replaced",
       [](const std::string& path) {
         const int file = open((path + ".new").c_str(), O_WRONLY | O_CREAT, 0666);
         return write(file, "new", 3) == 3 && rename((path + ".new").c_str(), path.c_str()) == 0;
       }},
  };
  for (const auto& [name, change] : cases) {
    const TemporaryFolder folder;
    const std::string path = folder.write("plan.dxf", content);
    auto opened = FileContent::open(path);
    ASSERT_TRUE(opened) << name;
    const char* address = opened->bytes().data();
    EXPECT_EQ(inOtherProcess([&, &change = change] { return change(path); }), 0) << name;
    const FileContent moved = std::move(*opened);
    EXPECT_TRUE(moved.bytes() == content) << name;
    EXPECT_EQ(moved.bytes().data(), address) << name;
    EXPECT_NE(identityOf(path), moved.identity()) << name;
  }
}

class LargeFile : public testing::Test {
 protected:
  const std::string content = largeContent();
  const TemporaryFolder folder;
  const std::string path = folder.write("plan.dxf", content);
};

TEST_F(LargeFile, SurvivesAChangeFromThisProgram) {
  const auto first = FileContent::open(path);
  const auto second = FileContent::open(path);
  ASSERT_TRUE(first && second);
  folder.write("plan.dxf", "short");
  EXPECT_TRUE(first->bytes() == content);
  EXPECT_TRUE(second->bytes() == content);
}

TEST_F(LargeFile, SurvivesAChangeWhileAndAfterOtherThreadsUseIt) {
  std::optional<FileContent> opened;
  std::thread([&] { opened.emplace(FileContent::open(path).value()); }).join();
  std::atomic<bool> isReading = false, isChanged = false;
  int differences = 0;
  std::thread reader([&] {
    for (bool isLast = false; !isLast; isReading = true) {
      isLast = isChanged;
      differences += opened->bytes() != content;
    }
  });
  while (!isReading) std::this_thread::yield();
  EXPECT_EQ(inOtherProcess([&] { return truncate(path.c_str(), 10) == 0; }), 0);
  isChanged = true;
  reader.join();
  EXPECT_EQ(differences, 0);
}

TEST_F(LargeFile, IsReadInWhenTheFileIsOpenForWriting) {
  const int writer = open(path.c_str(), O_WRONLY);
  ASSERT_GE(writer, 0);
  const auto opened = FileContent::open(path);
  ASSERT_TRUE(opened);
  ASSERT_EQ(ftruncate(writer, 0), 0);
  close(writer);
  EXPECT_TRUE(opened->bytes() == content);
}

TEST(FileContent, ManyFilesCanBeOpenAtOnce) {
  const TemporaryFolder folder;
  std::vector<FileContent> all;
  constexpr int kFiles = 100;  // more than there are places for leases
  for (int i = 0; i < kFiles; ++i) {
    auto opened = FileContent::open(folder.write(std::to_string(i), "content " + std::to_string(i)));
    ASSERT_TRUE(opened) << i;
    all.push_back(std::move(*opened));
  }
  for (int i = 0; i < kFiles; ++i) folder.write(std::to_string(i), "");
  for (int i = 0; i < kFiles; ++i) EXPECT_EQ(all[static_cast<std::size_t>(i)].bytes(), "content " + std::to_string(i));
}

TEST(FileContent, TellsWhyAFileCannotBeOpened) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0666), 0);
  const std::pair<std::string, ErrorCode> cases[] = {
      {folder.path("none.dxf"), ErrorCode::fileNotFound},
      {folder.write("file", "x") + "/below", ErrorCode::fileNotFound},
      {folder.path(), ErrorCode::isDirectory},
      {folder.write("empty.dxf", ""), ErrorCode::emptyFile},
      {folder.path("pipe"), ErrorCode::fileNotReadable},
      {"/dev/zero", ErrorCode::fileNotReadable},
      {"", ErrorCode::fileNotFound},
  };
  for (const auto& [path, code] : cases) {
    const auto opened = FileContent::open(path);
    ASSERT_FALSE(opened) << path;
    EXPECT_EQ(opened.error().code, code) << path;
    EXPECT_EQ(opened.error().file, path);
  }
}

bool asNobody(const std::function<bool()>& check) {
  constexpr uid_t kNobody = 65534;
  return inOtherProcess([&] { return (geteuid() != 0 || seteuid(kNobody) == 0) && check(); }) == 0;
}

TEST_F(LargeFile, OfSomebodyElseIsReadInOrRefused) {
  ASSERT_EQ(chmod(folder.path().c_str(), 0777), 0);
  ASSERT_EQ(chmod(path.c_str(), 0666), 0);
  EXPECT_TRUE(asNobody([&] {
    const auto opened = FileContent::open(path);
    return opened && truncate(path.c_str(), 0) == 0 && opened->bytes() == content;
  }));
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  EXPECT_TRUE(asNobody([&] {
    const auto opened = FileContent::open(path);
    return !opened && opened.error().code == ErrorCode::fileNotReadable;
  }));
}

}  // namespace
}  // namespace torva::dxf

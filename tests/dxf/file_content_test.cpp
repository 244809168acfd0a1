#include "dxf/file_content.h"

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "support/other_process.h"
#include "support/temporary_folder.h"

namespace torva::dxf {
namespace {

std::string largeContent() {
  std::string content;
  for (int i = 0; content.size() < (1 << 20); ++i) content += std::to_string(i) + "\n";
  return content;
}

TEST(FileContent, SurvivesWhatOtherProgramsDoToTheFile) {
  const std::string content = largeContent();
  const std::pair<const char*, std::function<bool(const std::string&)>> cases[] = {
      {"cut short", [](const std::string& path) { return truncate(path.c_str(), 10) == 0; }},
      {"overwritten in place",
       [](const std::string& path) {
         const int file = open(path.c_str(), O_RDWR);
         const std::string other(1 << 20, '#');
         return write(file, other.data(), other.size()) == static_cast<ssize_t>(other.size());
       }},
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
    EXPECT_TRUE(inOtherProcess([&, &change = change] { return change(path); })) << name;
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
  EXPECT_TRUE(inOtherProcess([&] { return truncate(path.c_str(), 10) == 0; }));
  isChanged = true;
  reader.join();
  EXPECT_EQ(differences, 0);
}

TEST_F(LargeFile, SurvivesAChangeFromThisProgramAndFromAWriterThatWasThereBefore) {
  const auto first = FileContent::open(path);
  const int writer = open(path.c_str(), O_WRONLY);
  ASSERT_GE(writer, 0);
  const auto readIn = FileContent::open(path);
  ASSERT_TRUE(first && readIn);
  ASSERT_EQ(ftruncate(writer, 0), 0);
  close(writer);
  EXPECT_TRUE(first->bytes() == content);
  EXPECT_TRUE(readIn->bytes() == content);
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

bool asNobody(const std::function<bool()>& check) {
  constexpr uid_t kNobody = 65534;
  return inOtherProcess([&] { return (geteuid() != 0 || seteuid(kNobody) == 0) && check(); });
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

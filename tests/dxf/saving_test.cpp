#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dxf/drawing_file.h"
#include "dxf/sample_drawing.h"
#include "support/other_process.h"
#include "support/temporary_folder.h"

namespace torva::dxf {
namespace {

using test::sampleGroups;

std::string sample() {
  return test::textForm(sampleGroups(), "\r\n");
}

DrawingFile openFile(const std::string& path) {
  std::vector<Finding> findings;
  auto opened = DrawingFile::open(path, DamagePolicy::refuse, findings);
  EXPECT_TRUE(opened) << opened.error().message();
  return std::move(*opened);
}

void addLine(DrawingFile& file) {
  RecordBuilder builder(file);
  builder.name(0, "LINE");
  builder.handle(5, file.newHandle());
  file.insertAfter(file.find(0x2F), builder.take());
}

/// A sample drawing in a folder of its own.
class Saving : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const std::string path = folder.write("plan.dxf", sample());
  DrawingFile file = openFile(path);
};

TEST_F(Saving, AnUneditedDrawingIsTheSameByteForByte) {
  for (const std::string& bytes :
       {sample(), test::binaryForm(sampleGroups(), BinaryCodes::twoBytes), sample() + "behind EOF"}) {
    file = openFile(folder.write("plan.dxf", bytes));
    for (const char* target : {"copy.dxf", "plan.dxf"}) {
      ASSERT_TRUE(file.save(folder.path(target), {})) << target;
      EXPECT_EQ(folder.read(target), bytes);
      EXPECT_EQ(file.path(), folder.path(target));
    }
    EXPECT_EQ(folder.fileCount(), 2u) << "nothing is left beside";
  }
}

TEST_F(Saving, EditsAreSavedAgainAndAgainAndTheSeedFollowsNewHandlesAlone) {
  file.setBytes(file.find(0x31), std::string("  0\r\nLINE\r\n  5\r\n31\r\n"));
  ASSERT_TRUE(file.save(file.path(), {}));
  EXPECT_FALSE(file.isChanged(file.section("HEADER")));
  for (int i = 0; i < 3; ++i) {
    addLine(file);
    EXPECT_TRUE(file.isModified());
    ASSERT_TRUE(file.save(file.path(), {}));
    EXPECT_FALSE(file.isModified());
    EXPECT_TRUE(file.isUnchangedOnDisk());
    EXPECT_EQ(folder.read("plan.dxf"), file.toBytes());
  }
  EXPECT_EQ(openFile(path).headerVariable("$HANDSEED").at(0).value, "43");
}

TEST_F(Saving, WhatIsTakenBackAfterSavingLeavesNoTrace) {
  addLine(file);
  ASSERT_TRUE(file.save(file.path(), {}));
  const std::string saved = folder.read("plan.dxf");
  const RecordId line = file.find(0x40), header = file.section("HEADER");
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"erased", [&] { file.setErased(line, true); }}, {"in the header", [&] { file.setHeaderVariable("$EXTMIN", {}); }}};
  for (const auto& [name, change] : changes) {
    SCOPED_TRACE(name);
    const RecordState before[] = {file.state(line), file.state(header)};
    change();
    EXPECT_TRUE(file.isModified());
    file.setState(line, before[0]);
    file.setState(header, before[1]);
    EXPECT_FALSE(file.isModified());
  }
  addLine(file);
  EXPECT_TRUE(file.isModified());
  file.setErased(file.find(0x41), true);
  EXPECT_FALSE(file.isModified());
  ASSERT_TRUE(file.save(file.path(), {}));
  EXPECT_EQ(folder.read("plan.dxf"), saved) << "the seed is that of the records that are there";
  addLine(file);
  EXPECT_EQ(file.handle(file.recordCount() - 1), 0x42u) << "no handle is given out twice";
  ASSERT_TRUE(file.save(file.path(), {}));
  EXPECT_EQ(file.headerVariable("$HANDSEED").at(0).value, "43");
}

TEST_F(Saving, PermissionsLinksDevicesAndBackupAreKept) {
  const auto modeOf = [](const std::string& name) {
    struct stat status {};
    EXPECT_EQ(lstat(name.c_str(), &status), 0);
    return status.st_mode;
  };
  const std::string real = folder.write("real/plan.dxf", sample()), link = folder.path("link.dxf");
  ASSERT_EQ(chmod(real.c_str(), 0640), 0);
  ASSERT_EQ(symlink("real/plan.dxf", link.c_str()), 0);
  file = openFile(link);
  addLine(file);
  ASSERT_TRUE(file.save(link, {.keepsBackup = true}));
  EXPECT_TRUE(S_ISLNK(modeOf(link)));
  EXPECT_EQ(modeOf(real) & 07777, 0640u);
  EXPECT_TRUE(file.isUnchangedOnDisk());
  EXPECT_EQ(folder.read("real/plan.dxf"), file.toBytes());
  EXPECT_EQ(folder.read("real/plan.bak"), sample());
  EXPECT_EQ(folder.fileCount(), 4u) << "two drawings, the backup, and one drawing through its link";

  ASSERT_EQ(symlink("real/later.dxf", folder.path("dangling.dxf").c_str()), 0);
  const mode_t former = umask(027);
  ASSERT_TRUE(file.save(folder.path("dangling.dxf"), {}));
  umask(former);
  EXPECT_EQ(folder.read("real/later.dxf"), file.toBytes());
  EXPECT_EQ(modeOf(folder.path("real/later.dxf")) & 07777, 0640u);
  EXPECT_TRUE(file.save("/dev/null", {}));
  EXPECT_TRUE(S_ISCHR(modeOf("/dev/null")));
}

TEST_F(Saving, AFileThatAnotherProgramChangedIsNotOverwrittenUnlessToldTo) {
  addLine(file);
  folder.write("plan.dxf", "somebody else's work");
  EXPECT_FALSE(file.isUnchangedOnDisk());
  const auto saved = file.save(path, {});
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.error().code, ErrorCode::fileChangedOnDisk);
  EXPECT_EQ(folder.read("plan.dxf"), "somebody else's work");
  EXPECT_TRUE(file.isModified());
  ASSERT_EQ(symlink("plan.dxf", folder.path("link.dxf").c_str()), 0);
  EXPECT_FALSE(file.save(folder.path("link.dxf"), {})) << "the same file by another name";
  EXPECT_TRUE(file.save(folder.path("other.dxf"), {})) << "another file is free to be written";

  DrawingFile again = openFile(folder.path("other.dxf"));
  const std::string content = again.toBytes();
  folder.write("other.dxf", "somebody else's work");
  ASSERT_TRUE(again.save(again.path(), {.replacesChangedFile = true}));
  EXPECT_EQ(folder.read("other.dxf"), content);
  std::filesystem::remove(again.path());
  ASSERT_TRUE(again.save(again.path(), {})) << "there is nothing to overwrite";
  EXPECT_EQ(folder.read("other.dxf"), content);
}

TEST_F(Saving, AWriteProtectedFileIsNotReplaced) {
  ASSERT_EQ(chmod(folder.path().c_str(), 0777), 0);
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  const bool isRefused = inOtherProcess([&] {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setreuid(kNobody, kNobody) != 0) return false;
    const auto saved = openFile(path).save(path, {});
    return !saved && saved.error().code == ErrorCode::fileNotWritable;
  });
  EXPECT_TRUE(isRefused);
  EXPECT_EQ(folder.fileCount(), 1u);
}

TEST_F(Saving, ManyPiecesAreWrittenInTheirOrder) {
  auto groups = sampleGroups();
  constexpr int kPoints = 5000;  // more pieces than one call of the system takes
  for (int i = 0; i < kPoints; ++i) groups.insert(groups.begin() + 34, {{0, "POINT"}, {5, std::to_string(100000 + i)}});
  const std::string bytes = test::textForm(groups);
  file = openFile(folder.write("plan.dxf", bytes));
  for (RecordId id = 0; id < file.originalCount(); ++id) {
    if (file.type(id) == RecordType::point && id % 2 == 0) file.setBytes(id, std::string(file.bytes(id)));
  }
  EXPECT_TRUE(file.isModified());
  ASSERT_TRUE(file.save(folder.path("copy.dxf"), {}));
  EXPECT_EQ(folder.read("copy.dxf"), bytes);
}

}  // namespace
}  // namespace torva::dxf

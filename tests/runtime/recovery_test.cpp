#include "runtime/recovery.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "dxf/sample_drawing.h"
#include "runtime/recent_files.h"
#include "support/temporary_folder.h"

namespace torva::runtime {
namespace {

std::unique_ptr<db::Database> openPlan(const std::string& path) {
  std::vector<dxf::Finding> findings;
  auto opened = db::Database::open(path, dxf::DamagePolicy::refuse, findings);
  return opened ? std::move(*opened) : throw std::runtime_error(opened.error().message());
}

/// One step that adds a line with a new handle.
void addLine(db::Database& database) {
  database.beginUndoStep(L"LINE");
  const dxf::Handle handle = database.file().newHandle();
  dxf::RecordBuilder record(database.file());
  record.name(0, "LINE");
  record.handle(5, handle);
  database.appendToModelSpace(record.take());
  database.endUndoStep();
}

class RecoveryTest : public testing::Test {
 protected:
  const TemporaryFolder m_folder;
  const std::string m_place = m_folder.path("state/recovery");
  const std::string m_plan = m_folder.write("plan.dxf", dxf::test::textForm(dxf::test::sampleGroups()));
  const std::string m_before = m_folder.read("plan.dxf");

  std::size_t keptFiles() const {
    std::error_code none;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_place, none)) count += entry.is_regular_file();
    return count;
  }
  std::string copyOf(pid_t program) const { return m_place + "/" + std::to_string(program) + "-0/drawing.dxf"; }
};

TEST_F(RecoveryTest, OffersWhatAKilledProgramLeft) {
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    Recovery recovery(m_place);
    const auto database = openPlan(m_plan);
    addLine(*database);
    const bool isKept = recovery.keep(*database) && recovery.finish();
    if (::write(pipe[1], isKept ? "y" : "n", 1) == 1) ::pause();
    ::_exit(1);
  }
  char isKept = 0;
  ASSERT_EQ(::read(pipe[0], &isKept, 1), 1);
  Recovery recovery(m_place);
  EXPECT_TRUE(recovery.list().empty()) << "that program is still running";
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  ASSERT_EQ(isKept, 'y');

  const std::vector<LeftDrawing> left = recovery.list();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].original.path, m_plan);
  EXPECT_EQ(left[0].original.identity, dxf::identityOf(m_plan));
  EXPECT_NEAR(static_cast<double>(left[0].keptAt), static_cast<double>(::time(nullptr)), 600);
  EXPECT_EQ(m_folder.read("plan.dxf"), m_before);
  const auto database = openPlan(left[0].copy);
  EXPECT_NE(database->file().find(0x40), dxf::kNoRecord) << "the line";

  ASSERT_TRUE(recovery.take(left[0]));
  EXPECT_TRUE(Recovery(m_place).list().empty());
  EXPECT_EQ(Recovery(m_place).discard(left[0]).error().code, ErrorCode::fileNotFound);
  database->file().setOrigin(left[0].original);
  ASSERT_TRUE(recovery.keep(*database) && recovery.finish());
  EXPECT_EQ(keptFiles(), 3u);
  ASSERT_TRUE(database->save(m_plan, {}));
  ASSERT_TRUE(recovery.keep(*database));
  EXPECT_EQ(keptFiles(), 0u);
  EXPECT_EQ(Recovery(m_place).take(left[0]).error().code, ErrorCode::fileNotFound);
}

TEST_F(RecoveryTest, KeepsWhatHasChangedAndNothingElse) {
  const auto database = openPlan(m_plan);
  const std::string copy = copyOf(::getpid());
  {
    Recovery recovery(m_place);
    const auto keep = [&] { return recovery.keep(*database) && recovery.finish(); };
    ASSERT_TRUE(keep());
    EXPECT_EQ(keptFiles(), 0u) << "nothing is unsaved";

    addLine(*database);
    const std::string former = database->file().toBytes();
    ASSERT_TRUE(keep());
    EXPECT_TRUE(database->file().isModified() && database->file().isUnchangedOnDisk());
    EXPECT_EQ(database->file().path(), m_plan);
    EXPECT_EQ(database->file().toBytes(), former);
    EXPECT_EQ(openPlan(copy)->file().headerVariable("$HANDSEED").at(0).value, "41") << "as saving would have written it";

    const auto first = dxf::identityOf(copy);
    ASSERT_TRUE(keep());
    EXPECT_EQ(dxf::identityOf(copy), first) << "nothing was new";
    addLine(*database);
    ASSERT_TRUE(keep());
    EXPECT_NE(openPlan(copy)->file().find(0x41), dxf::kNoRecord);

    ASSERT_TRUE(database->undo() && database->undo() && keep());
    EXPECT_EQ(keptFiles(), 0u) << "all was taken back";
    addLine(*database);
    ASSERT_TRUE(keep());
    recovery.drop();
    EXPECT_EQ(keptFiles(), 0u);
    ASSERT_TRUE(keep());
    EXPECT_EQ(keptFiles(), 3u);
  }
  EXPECT_EQ(keptFiles(), 0u) << "the program came to its end";
}

TEST_F(RecoveryTest, ACopyOutlivesItsDrawingAndANewOneHasNoPath) {
  auto database = db::Database::create();
  addLine(*database);
  Recovery recovery(m_place);
  ASSERT_TRUE(recovery.keep(*database));
  ASSERT_TRUE(database->save(m_folder.path("saved.dxf"), {}));
  database.reset();
  ASSERT_TRUE(recovery.finish());
  const std::string name = "state/recovery/" + std::to_string(::getpid()) + "-0/";
  EXPECT_EQ(m_folder.read(name + "drawing.dxf"), m_folder.read("saved.dxf"));
  EXPECT_TRUE(m_folder.read(name + "original.txt").ends_with("\noriginal "));
}

TEST_F(RecoveryTest, ReadsWhatItFinds) {
  const struct {
    const char* name;
    std::optional<std::string> text, copy, original;  // no original: not offered
  } cases[] = {
      {"whole", "kept 7\nfile 1 2 3 4 5\noriginal /a/b\nc.dxf", "x", "/a/b\nc.dxf"},
      {"new drawing", "kept 7\nfile 0 0 0 0 0\noriginal ", "x", ""},
      {"text not yet written", {}, "x", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    m_folder.write("state/recovery/1-0/lock", "");
    if (c.text) m_folder.write("state/recovery/1-0/original.txt", *c.text);
    if (c.copy) m_folder.write("state/recovery/1-0/drawing.dxf", *c.copy);
    m_folder.write("state/recovery/1-0/.torva-1-0.tmp", "half");
    const Recovery recovery(m_place);
    const auto left = recovery.list();
    ASSERT_EQ(left.size(), c.original ? 1u : 0u);
    if (c.original) {
      EXPECT_EQ(left[0].original.path, *c.original);
      EXPECT_TRUE(Recovery(m_place).discard(left[0]));
    }
    EXPECT_FALSE(std::filesystem::exists(m_place + "/1-0"));
  }
}

TEST_F(RecoveryTest, SaysWhyNothingCanBeKept) {
  const auto database = openPlan(m_plan);
  addLine(*database);
  Recovery nowhere(""), inAFile(m_plan + "/recovery");
  EXPECT_TRUE(nowhere.keep(*database)) << "asked for nothing";
  const auto kept = inAFile.keep(*database);
  ASSERT_FALSE(kept);
  EXPECT_EQ(kept.error().code, ErrorCode::fileNotWritable);
  EXPECT_TRUE(inAFile.list().empty());

  // The copy's name is taken by a folder: its writing fails later, on the thread.
  Recovery recovery(m_place);
  ASSERT_TRUE(recovery.keep(*database) && recovery.finish());
  const std::string copy = copyOf(::getpid());
  std::filesystem::remove(copy);
  std::filesystem::create_directories(copy + "/x");
  addLine(*database);
  ASSERT_TRUE(recovery.keep(*database));
  EXPECT_FALSE(recovery.finish());
  std::filesystem::remove_all(copy);
  ASSERT_TRUE(recovery.keep(*database) && recovery.finish()) << "it is tried again";
  EXPECT_TRUE(std::filesystem::is_regular_file(copy));
}

TEST(RecentFiles, AreTheLatestFirstAndNoneTwice) {
  const TemporaryFolder folder;
  ASSERT_EQ(::symlink(folder.write("real/plan.dxf", "x").c_str(), folder.path("link.dxf").c_str()), 0);
  Profile profile(folder.path("profile")), other(folder.path("profile"));
  RecentFiles files(profile), elsewhere(other);
  ASSERT_TRUE(files.add(folder.path("link.dxf")));
  ASSERT_TRUE(elsewhere.add(folder.path("gone/../missing \xfc.dxf")));
  ASSERT_TRUE(files.add(folder.path("real/./plan.dxf")));
  ASSERT_TRUE(files.add(""));
  EXPECT_EQ(files.list(), (std::vector{folder.path("real/plan.dxf"), folder.path("missing \xfc.dxf")}));
  for (int i = 0; i < 12; ++i) ASSERT_TRUE(files.add(folder.path(std::to_string(i) + ".dxf")));
  std::vector<std::string> latest;
  for (int i = 11; i > 2; --i) latest.push_back(folder.path(std::to_string(i) + ".dxf"));
  Profile later(folder.path("profile"));
  EXPECT_EQ(RecentFiles(later).list(), latest);
  for (const char* key : {"File1", "File3"}) ASSERT_TRUE(other.setText("RecentFiles", key, L"/x"));
  const auto mixed = elsewhere.list();
  EXPECT_EQ(std::count(mixed.begin(), mixed.end(), "/x"), 1) << "two programs wrote at the same moment";
}

}  // namespace
}  // namespace torva::runtime

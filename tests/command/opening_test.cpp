#include "command/opening.h"

#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

#include "command/test_editor.h"
#include "dxf/sample_drawing.h"
#include "support/temporary_folder.h"

namespace torva::command {
namespace {

constexpr int kLines = 60'000;  // several stretches of a file, and more entities than are passed over between two looks

dxf::test::SampleGroups manyLines() {
  dxf::test::SampleGroups groups = {{0, "SECTION"}, {2, "ENTITIES"}};
  for (int i = 0; i < kLines; ++i) {
    const std::string x = std::to_string(i) + ".5";
    groups.insert(groups.end(),
                  {{0, "LINE"}, {8, "0"}, {10, x}, {20, "0.0"}, {30, "0.0"}, {11, x}, {21, "9.0"}, {31, "0.0"}});
  }
  groups.insert(groups.end(), {{0, "ENDSEC"}, {0, "EOF"}});
  return groups;
}

/// The open files and the maps of a path in this program.
std::size_t holdsOf(const std::string& path) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code ignored;
    count += std::filesystem::read_symlink(entry.path(), ignored) == path;
  }
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) count += line.ends_with(path);
  return count;
}

class Opening : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const std::string path = folder.write("text.dxf", dxf::test::textForm(manyLines()));
};

TEST_F(Opening, TellsHowFarItIsAndIsCancelledAtEachPlace) {
  const auto groups = manyLines();
  const struct {
    const char* name;
    std::string path;
    bool isWriterAround;  // no lease can be had then, and the file is read in
  } cases[] = {
      {"mapped text", path, false},
      {"text read in", folder.write("read.dxf", dxf::test::textForm(groups)), true},
      {"binary", folder.write("binary.dxf", dxf::test::binaryForm(groups, dxf::BinaryCodes::twoBytes)), false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const int writer = c.isWriterAround ? ::open(c.path.c_str(), O_WRONLY | O_CLOEXEC) : -1;
    const std::size_t holdsBefore = holdsOf(c.path);
    std::vector<double> shares;
    Watch whole([&](double share) { shares.push_back(share); });
    ASSERT_TRUE(openWithPicker({c.path}, whole));
    EXPECT_LT(shares.front(), 0.01);
    EXPECT_EQ(shares.back(), 1);
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    ASSERT_GE(shares.size(), 10u);
    for (std::size_t place = 0; place < shares.size(); ++place) {
      std::size_t seen = 0;
      std::optional<Watch> watch;
      watch.emplace([&](double) {
        if (seen++ == place) watch->cancel();
      });
      const auto opened = openWithPicker({c.path, dxf::DamagePolicy::refuse}, *watch);
      ASSERT_FALSE(opened) << place;
      EXPECT_EQ(opened.error().code, ErrorCode::cancelled) << place;
      EXPECT_LE(seen, place + 2) << "it went on after place " << place;
      EXPECT_EQ(holdsOf(c.path), holdsBefore) << place;
    }
    if (writer >= 0) ::close(writer);
  }
}

TEST_F(Opening, AThreadThatIsNotWaitedForIsCancelledAndItsFindingsAreNotKept) {
  std::atomic<int> doneCount = 0;
  {
    const OpeningThread opening({path}, [&] { ++doneCount; });
  }
  EXPECT_EQ(doneCount, 1) << "the thread has not come to its end";
  EXPECT_EQ(holdsOf(path), 0u);
  const std::string cut = folder.write("cut.dxf", "999\ncut\n" + folder.read("text.dxf").substr(0, 3 << 20));
  std::vector<dxf::Finding> findings;
  Watch watch([&](double share) { share < 1 ? void() : watch.cancel(); });
  EXPECT_FALSE(dxf::DrawingFile::open(cut, dxf::DamagePolicy::recover, findings, watch));
  EXPECT_TRUE(findings.empty());
  EXPECT_TRUE(dxf::DrawingFile::open(cut, dxf::DamagePolicy::recover, findings));
  EXPECT_FALSE(findings.empty());
}

TEST_F(Opening, TheEditorTakesWhatAThreadHasPrepared) {
  TestEditor test;
  const view::Picker* prepared = nullptr;
  test.editor.setOpener([&](const OpeningRequest& request) {
    std::promise<void> isDone;
    OpeningThread thread(request, [&] { isDone.set_value(); });
    isDone.get_future().wait();
    auto opened = thread.take();
    EXPECT_EQ(opened.has_value(), thread.shareDone() == 1);
    prepared = opened ? opened->picker.get() : nullptr;
    return opened;
  });
  test.run("OPEN " + path + "\n");
  ASSERT_TRUE(test.faults.empty()) << test.faults.front();
  ASSERT_EQ(&test.editor.picker(), prepared);
  const geom::Box3 box{{10, 0, 0}, {20, 1, 0}};
  EXPECT_EQ(test.editor.picker().query(box).size(), 10u);
  test.run("LINE 15,0.5 16,0.5 \"\"\n");
  EXPECT_EQ(test.editor.picker().query(box).size(), 11u);

  const db::Database* database = &test.editor.database();
  EXPECT_EQ(test.run("QSAVE\nOPEN none.dxf\n"), Fault::drawing);
  test.editor.setOpener([](const OpeningRequest& request) -> Result<OpenedDrawing> {
    return fail(ErrorCode::cancelled, "opening was cancelled", request.path);
  });
  EXPECT_EQ(test.run("OPEN " + path + "\n"), Fault::none) << "to cancel is no fault";
  EXPECT_EQ(&test.editor.database(), database);
}

TEST_F(Opening, ACopyIsOpenedAsItsOriginal) {
  const std::string original = folder.write("plan.dxf", dxf::test::textForm(dxf::test::sampleGroups()));
  const auto identity = dxf::identityOf(original);
  ASSERT_TRUE(identity);
  const std::string copied = folder.read("plan.dxf") + "999\nkept\n";
  TestEditor test;
  ASSERT_TRUE(test.editor.openCopy(folder.write("copy.dxf", copied), {original, *identity}));
  const dxf::DrawingFile& file = test.editor.database().file();
  EXPECT_EQ(file.path(), original);
  EXPECT_TRUE(file.isUnchangedOnDisk());
  EXPECT_TRUE(test.editor.hasUnsavedChanges());
  test.run("LINE 0,0 1,1 \"\"\nUNDO\n");
  EXPECT_TRUE(test.editor.hasUnsavedChanges()) << "what is on disk is still another state";
  test.run("QSAVE\n");
  EXPECT_FALSE(test.editor.hasUnsavedChanges());
  EXPECT_TRUE(folder.read("plan.dxf").ends_with("999\nkept\n"));
  EXPECT_FALSE(test.editor.isChangedOnDisk());
  folder.write("plan.dxf", "somebody else's work");
  EXPECT_TRUE(test.editor.isChangedOnDisk());
  std::filesystem::remove(original);
  EXPECT_TRUE(test.editor.isChangedOnDisk());
}

}  // namespace
}  // namespace torva::command

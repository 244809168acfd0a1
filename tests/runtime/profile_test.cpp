#include "runtime/profile.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace torva::runtime {
namespace {

class ProfileTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
};

TEST_F(ProfileTest, GivesBackInTheNextRunWhatWasKept) {
  const std::wstring odd = L" a=b;\\n\\ \r\n[x]\tübergröße \U0001F600 ";
  {
    Profile profile(folder.path("new/deep"));
    ASSERT_TRUE(profile.setText("Settings", "File", odd));
    ASSERT_TRUE(profile.setText("Settings", "Empty", L""));
    ASSERT_TRUE(profile.setInteger("Settings", "PosLeft", -10000));
    ASSERT_TRUE(profile.setInteger("ListCtrls", "PosLeft", 2147483647));
    ASSERT_TRUE(profile.save());
  }
  const Profile profile(folder.path("new/deep"));
  EXPECT_EQ(profile.text("Settings", "File"), odd);
  EXPECT_EQ(profile.text("Settings", "Empty"), L"");
  EXPECT_EQ(profile.integer("Settings", "PosLeft"), -10000);
  EXPECT_EQ(profile.integer("ListCtrls", "PosLeft"), 2147483647);
  EXPECT_EQ(profile.integer("ListCtrls", "PosTop"), std::nullopt);
  EXPECT_EQ(folder.fileCount(), 1u) << "something besides the profile was left behind";
}

TEST_F(ProfileTest, IsNotWrittenWhenNothingChanged) {
  folder.write("profile.ini", "# mine\n[A]\nx=1\n");
  Profile profile(folder.path());
  ASSERT_TRUE(profile.setInteger("A", "x", 1));
  ASSERT_TRUE(profile.save());
  EXPECT_EQ(folder.read("profile.ini"), "# mine\n[A]\nx=1\n");
}

TEST_F(ProfileTest, KeepsWhatAnotherProgramWroteMeanwhile) {
  Profile first(folder.path()), second(folder.path());
  for (const char* key : {"both", "first"}) ASSERT_TRUE(first.setInteger("A", key, 1));
  ASSERT_TRUE(first.save());
  ASSERT_TRUE(second.setInteger("A", "both", 2));
  ASSERT_TRUE(second.save());
  const Profile now(folder.path());
  EXPECT_EQ(now.integer("A", "first"), 1);
  EXPECT_EQ(now.integer("A", "both"), 2);
}

TEST_F(ProfileTest, ReadsFilesEditedByHand) {
  const struct {
    const char* name;
    const char* content;
    std::optional<int> expected;
  } cases[] = {
      {"CR LF and no end of line", "[S]\r\nk=7", 7},
      {"the last of several wins", "[S]\nk=1\n[T]\nk=2\n[S]\nk=3\n", 3},
      {"outside 32 bits", "[S]\nk=2147483648\n", std::nullopt},
      {"bytes that are no text", "\xff\xfe\x00[S]\nk=1\n\\", std::nullopt},
  };
  for (const auto& each : cases) {
    folder.write("profile.ini", each.content);
    EXPECT_EQ(Profile(folder.path()).integer("S", "k"), each.expected) << each.name;
  }
}

TEST_F(ProfileTest, SaysSoWhenItCannotBeWrittenAndLeavesNothing) {
  // The name of the profile is taken by a folder, so that the last step, the renaming, fails.
  std::filesystem::create_directories(folder.path("profile.ini/x"));
  Profile profile(folder.path());
  ASSERT_TRUE(profile.setInteger("A", "x", 1));
  const auto saved = profile.save();
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.error().code, ErrorCode::fileNotWritable);
  EXPECT_EQ(folder.fileCount(), 0u) << "a half-written profile was left behind";
}

TEST_F(ProfileTest, RefusesNamesThatTheFileCannotHold) {
  Profile profile(folder.path());
  for (const char* name : {"", "a=b", "[a", "a]", "a\nb", " a", "a ", "#a"}) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(profile.setInteger("A", name, 1));
    EXPECT_FALSE(profile.setInteger(name, "A", 1));
  }
}

}  // namespace
}  // namespace torva::runtime

#include "command/command_stack.h"

#include <gtest/gtest.h>

namespace torva::command {
namespace {

void nothing() {}

KdStatus add(CommandStack& stack, const wchar_t* group, const wchar_t* global, const wchar_t* local) {
  return stack.addCommand(group, global, local, 2, nothing, nullptr, -1, nullptr, nullptr);
}

TEST(CommandStack, findsNamesIgnoringCase) {
  CommandStack stack;
  ASSERT_EQ(add(stack, L"G", L"-MLEDIT", L"-MLBEARB"), KdStatus::ok);
  for (const wchar_t* name : {L"-mledit", L"_-MLEDIT", L"-mlBEARB"})
    EXPECT_TRUE(stack.find(name)) << testing::PrintToString(name);
  for (const wchar_t* name : {L"MLEDIT", L"_-MLBEARB", L"", L"_"})
    EXPECT_FALSE(stack.find(name)) << testing::PrintToString(name);
}

TEST(CommandStack, refusesASecondCommandOfANameInAGroup) {
  CommandStack stack;
  EXPECT_EQ(add(stack, L"G", L"A", L"A"), KdStatus::ok);
  EXPECT_EQ(add(stack, L"g", L"a", L"B"), KdStatus::duplicateKey);
  EXPECT_EQ(add(stack, L"H", L"A", L"A"), KdStatus::ok);
  EXPECT_EQ(add(stack, nullptr, L"B", L"B"), KdStatus::nullPointer);
  EXPECT_EQ(stack.names(), std::vector<std::wstring>{L"A"});
}

TEST(CommandStack, removesGroups) {
  CommandStack stack;
  add(stack, L"G", L"A", L"A");
  add(stack, L"G", L"B", L"B");
  add(stack, L"H", L"C", L"C");
  EXPECT_EQ(stack.removeGroup(L"G"), KdStatus::ok);
  EXPECT_EQ(stack.removeGroup(L"G"), KdStatus::keyNotFound);
  EXPECT_FALSE(stack.find(L"A"));
  EXPECT_TRUE(stack.find(L"C"));
}

TEST(CommandStack, asksTheLoaderForUnknownNamesInCapitals) {
  CommandStack stack;
  std::vector<std::wstring> asked;
  stack.setLoader([&](const std::wstring& name) {
    asked.push_back(name);
    return name == L"MLSTYLE" && add(stack, L"G", L"MLSTYLE", L"MLSTYLE") == KdStatus::ok;
  });
  EXPECT_TRUE(stack.find(L"_mlstyle"));
  EXPECT_TRUE(stack.find(L"mlstyle"));
  EXPECT_FALSE(stack.find(L"other"));
  EXPECT_EQ(asked, (std::vector<std::wstring>{L"MLSTYLE", L"OTHER"}));
}

}  // namespace
}  // namespace torva::command

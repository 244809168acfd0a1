#include "command/command_stack.h"

#include <gtest/gtest.h>

namespace torva::command {
namespace {

void nothing() {}

KdStatus add(CommandStack& stack, const wchar_t* group, const wchar_t* global, const wchar_t* local) {
  return stack.addCommand(group, global, local, 2, nothing, nullptr, -1, nullptr, nullptr);
}

TEST(CommandStack, refusesASecondCommandOfANameInAGroup) {
  CommandStack stack;
  EXPECT_EQ(add(stack, L"G", L"A", L"A"), KdStatus::ok);
  EXPECT_EQ(add(stack, L"g", L"a", L"B"), KdStatus::duplicateKey);
  EXPECT_EQ(add(stack, L"H", L"A", L"A"), KdStatus::ok);
  EXPECT_EQ(add(stack, nullptr, L"B", L"B"), KdStatus::nullPointer);
  EXPECT_EQ(stack.names(), std::vector<std::wstring>{L"A"});
}

}  // namespace
}  // namespace torva::command

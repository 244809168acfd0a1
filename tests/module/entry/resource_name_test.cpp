#include <algorithm>
#include <cwchar>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "entry/module_entry.h"

// The two host functions below stand in for the host's, to see which library is asked for.

namespace {

std::wstring moduleFile;
std::optional<std::wstring> askedFor;

}  // namespace

unsigned GetModuleFileNameW(KdModuleHandle, wchar_t* path, unsigned capacity) noexcept {
  const std::size_t length = std::min<std::size_t>(moduleFile.size(), capacity - 1);
  std::wmemcpy(path, moduleFile.c_str(), length + 1);
  path[length] = L'\0';
  return static_cast<unsigned>(length);
}

KdModuleHandle loadResourceDll(const wchar_t* name) noexcept {
  askedFor = name;
  return reinterpret_cast<KdModuleHandle>(&moduleFile);
}

namespace {

TEST(LoadResLib, NamesTheLibraryAfterTheModuleFile) {
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"C:\\torva\\libKdrxMLStyle.kdrx", L"libKdrxMLStyleRes.dll"},
      {L"/opt/torva/libKdrxMLStyle.kdrx", L"/opt/torva/libKdrxMLStyleRes.dll"},
      {L"two.dots.kdrx", L"two.dotsRes.dll"},
      {L"a.kx", L"a.kx"},
      {L"noending", L"noendingRes.dll"},
  };
  for (const auto& [file, library] : cases) {
    SCOPED_TRACE(testing::PrintToString(file));
    moduleFile = file;
    EXPECT_NE(_loadResLib(nullptr), nullptr);
    EXPECT_EQ(askedFor, library);
  }
  moduleFile.clear();
  askedFor.reset();
  EXPECT_EQ(_loadResLib(nullptr), nullptr);
  EXPECT_EQ(askedFor, std::nullopt);
}

}  // namespace

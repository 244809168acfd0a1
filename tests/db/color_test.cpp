#include <gtest/gtest.h>

#include <kdrx/cm_color.h>

namespace {

TEST(Color, IsCalledByItsBookNameOrItsValue) {
  const auto named = [](KdCmColor color, const wchar_t* key) {
    color.setNamesFromDictionaryKey(key);
    return color;
  };
  const std::pair<KdCmColor, std::wstring> cases[] = {
      {KdCmColor(), L"ByLayer"},
      {KdCmColor::byIndex(0), L"ByBlock"},
      {KdCmColor::byIndex(30), L"30"},
      {KdCmColor::trueColor(0xFF8000), L"255,128,0"},
      {named(KdCmColor::trueColor(0xFF8000), L"BOOK$DEEP SEA"), L"DEEP SEA"},
      {named(KdCmColor::byIndex(3), L"PLAIN"), L"PLAIN"},
      {named(KdCmColor::byIndex(3), L""), L"3"},
  };
  for (const auto& [color, name] : cases) EXPECT_EQ(color.displayName(), name);
  KdCmColor color = cases[4].first;
  EXPECT_EQ(color.bookName(), L"BOOK");
  EXPECT_TRUE(color.setColorIndex(3));
  EXPECT_EQ(color.dictionaryKey(), L"") << "an index has no name";
}

TEST(Color, PaletteIsTheUsualOneAndItsColorsAreNearestToThemselves) {
  // Read from an independent program's table.
  const std::pair<int, std::uint32_t> cases[] = {{1, 0xFF0000},  {8, 0x808080},   {11, 0xFF7F7F},  {27, 0x4C2F26},
                                                 {93, 0x52A552}, {108, 0x002609}, {181, 0x9F7FFF}, {247, 0x4C262F}};
  for (const auto& [index, rgb] : cases) EXPECT_EQ(KdCmColor::byIndex(index).rgb(), rgb) << index;
  for (int index = 1; index < 256; ++index) {
    const std::uint32_t rgb = KdCmColor::byIndex(index).rgb();
    EXPECT_EQ(KdCmColor::byIndex(KdCmColor::trueColor(rgb).colorIndex()).rgb(), rgb) << index;
  }
  EXPECT_EQ(KdCmColor::trueColor(0xFE0101).colorIndex(), 1);
}

}  // namespace

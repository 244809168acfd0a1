#include <gtest/gtest.h>

#include <kdrx/cm_color.h>

namespace {

TEST(Color, IndexValuesSayTheirMethod) {
  EXPECT_TRUE(KdCmColor().isByLayer());
  EXPECT_EQ(KdCmColor().colorIndex(), 256);
  EXPECT_TRUE(KdCmColor::byIndex(0).isByBlock());
  EXPECT_EQ(KdCmColor::byIndex(0).colorIndex(), 0);
  EXPECT_EQ(KdCmColor::byIndex(255).colorMethod(), KdCmColor::kByIndex);
  KdCmColor color = KdCmColor::byIndex(9);
  for (const int outside : {257, -1}) EXPECT_FALSE(color.setColorIndex(outside));
  EXPECT_EQ(color, KdCmColor::byIndex(9));
}

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
  EXPECT_EQ(cases[5].first.bookName(), L"");
  EXPECT_TRUE(color.setColorIndex(3));
  EXPECT_EQ(color.dictionaryKey(), L"") << "an index has no name";
}

TEST(Color, RawWordsAreTakenWithTheirMethod) {
  KdCmColor color;
  color.setColor(192);
  EXPECT_EQ(color.color(), 192u);
  EXPECT_TRUE(color.isByLayer()) << "no method";
  color.setColorMethod(194);
  color.setColor(0xC2000000u + 0x102030u);
  EXPECT_EQ(color, KdCmColor::trueColor(0x102030));
  EXPECT_EQ(color.rgb(), 0x102030u);
}

TEST(Color, PaletteIsTheUsualOne) {
  // Read from an independent program's table.
  const std::pair<int, std::uint32_t> cases[] = {
      {1, 0xFF0000},   {5, 0x0000FF},   {8, 0x808080},   {10, 0xFF0000}, {11, 0xFF7F7F},  {20, 0xFF3F00},
      {21, 0xFF9F7F},  {27, 0x4C2F26},  {90, 0x00FF00},  {93, 0x52A552}, {108, 0x002609}, {130, 0x00FFFF},
      {170, 0x0000FF}, {181, 0x9F7FFF}, {210, 0xFF00FF}, {63, 0x91A552}, {247, 0x4C262F}};
  for (const auto& [index, rgb] : cases) EXPECT_EQ(KdCmColor::byIndex(index).rgb(), rgb) << index;
  EXPECT_EQ(KdCmColor().rgb(), 0u);
}

TEST(Color, NearestIndexOfAPaletteColorIsItself) {
  for (int index = 1; index < 256; ++index) {
    const std::uint32_t rgb = KdCmColor::byIndex(index).rgb();
    EXPECT_EQ(KdCmColor::byIndex(KdCmColor::trueColor(rgb).colorIndex()).rgb(), rgb) << index;
  }
  EXPECT_EQ(KdCmColor::trueColor(0xFE0101).colorIndex(), 1);
}

}  // namespace

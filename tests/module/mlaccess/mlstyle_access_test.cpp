#include "mlaccess/mlstyle_access.h"

#include <gmock/gmock.h>

#include "module/mlstyle/style_drawing.h"

namespace {

using testing::ElementsAre;

std::unique_ptr<KdDbMlineStyle> styleWith(std::initializer_list<double> offsets) {
  auto style = std::make_unique<KdDbMlineStyle>();
  int index = 0;
  for (const double offset : offsets) {
    EXPECT_EQ(style->addElement(index, offset, KdCmColor::byIndex(style->numElements() + 1), {}), KdStatus::ok);
  }
  return style;
}

TEST(MlstyleAccess, ElementsComeAtTheEndAndGoFromTheFront) {
  const auto style = styleWith({4, 3, 2, 1});
  EXPECT_EQ(SetNumElements(style.get(), 2), 1);
  EXPECT_EQ(elementsOf(*style), L" 2:bylayer:3 1:bylayer:4");
  EXPECT_EQ(SetNumElements(style.get(), 4), 1);
  EXPECT_EQ(elementsOf(*style), L" 2:bylayer:3 1:bylayer:4 0.5:bylayer:bylayer 0.5:bylayer:bylayer");
  EXPECT_EQ(SetNumElements(style.get(), -7), 1);
  EXPECT_EQ(style->numElements(), 0);
}

TEST(MlstyleAccess, PropertiesAreSetOneByOne) {
  const auto style = styleWith({4, 3, 2, 1});
  const auto expectColors = [&](const std::wstring& first, const std::wstring& second) {
    EXPECT_EQ(elementsOf(*style),
              L" 10:bylayer:" + first + L" 9:bylayer:" + second + L" 0:bylayer:bylayer 0:bylayer:bylayer");
  };
  const double offsets[] = {10, 9};
  EXPECT_EQ(SetElemOffset(style.get(), offsets, 2), 1);
  double read[] = {-1, -1, -1, -1, -1, -1};
  EXPECT_EQ(GetElemOffset(style.get(), read, 5), 1);
  EXPECT_THAT(read, ElementsAre(10, 9, 0, 0, 0, -1));

  int indices[] = {300, 0, -1, 7};
  EXPECT_EQ(SetElemColor(style.get(), indices, 3), 1);
  EXPECT_THAT(indices, ElementsAre(256, 0, 256, 7)) << "only what is read is rewritten";
  expectColors(L"bylayer", L"byblock");
  const unsigned rgbs[] = {0x102030, kNoRgb, 0x1000000, 5};
  EXPECT_EQ(SetElemRgb(style.get(), rgbs, 3), 1);
  expectColors(L"16,32,48", L"byblock");
  const wchar_t* names[] = {L"BOOK$SEA", nullptr, L"$BAD", L"BOOK$SKY"};
  EXPECT_EQ(SetElemName(style.get(), names, 3), 1);
  expectColors(L"sea", L"byblock");
  std::swap(names[0], names[1]);
  EXPECT_EQ(SetElemName(style.get(), names, 3), 1) << "without a first name nothing changes";
  for (KdDbMlineStyle* const target : {style.get(), static_cast<KdDbMlineStyle*>(nullptr)}) {
    EXPECT_EQ(SetElemOffset(target, nullptr, 4) + SetElemColor(target, nullptr, 4) + SetElemRgb(target, nullptr, 4) +
                  SetElemName(target, nullptr, 4) + SetElemLtype(target, nullptr, 4, nullptr),
              target ? 5 : 0);
  }
  expectColors(L"sea", L"byblock");
}

TEST(MlstyleAccess, ColorBookNamesHaveAtMostOneMarkInside) {
  for (const wchar_t* good : {L"BOOK$RED", L"RED", L" A$B"}) EXPECT_TRUE(IsColorBookNameValid(good)) << good;
  for (const wchar_t* bad : {L"$RED", L"BOOK$", L"A$B$C", L"$", L""}) EXPECT_FALSE(IsColorBookNameValid(bad)) << bad;
  EXPECT_FALSE(IsColorBookNameValid(nullptr));
}

}  // namespace

#include "mlaccess/mlstyle_access.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "command/editor.h"
#include "db/database.h"
#include "db/linetype_file.h"
#include "support/host_driver.h"

namespace {

using testing::ElementsAre;
using testing::Pair;

using ElementText = std::pair<double, std::wstring>;

// Offset and color of each element.
std::vector<ElementText> elementsOf(const KdDbMlineStyle& style) {
  std::vector<ElementText> elements;
  for (int i = 0; i < style.numElements(); ++i) {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId linetype;
    EXPECT_EQ(style.getElementAt(i, offset, color, linetype), KdStatus::ok);
    elements.emplace_back(offset, color.displayName());
  }
  return elements;
}

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
  EXPECT_THAT(elementsOf(*style), ElementsAre(Pair(2, L"3"), Pair(1, L"4")));
  EXPECT_EQ(SetNumElements(style.get(), 2), 1);
  EXPECT_EQ(SetNumElements(style.get(), 4), 1);
  EXPECT_THAT(elementsOf(*style), ElementsAre(Pair(2, L"3"), Pair(1, L"4"), Pair(0.5, L"ByLayer"), Pair(0.5, L"ByLayer")));
  EXPECT_EQ(SetNumElements(style.get(), -7), 1);
  EXPECT_EQ(style->numElements(), 0);
}

TEST(MlstyleAccess, PropertiesAreSetOneByOne) {
  const auto style = styleWith({4, 3, 2, 1});
  const double offsets[] = {10, 9};
  EXPECT_EQ(SetElemOffset(style.get(), offsets, 2), 1);
  EXPECT_THAT(elementsOf(*style), ElementsAre(Pair(10, L"1"), Pair(9, L"2"), Pair(0, L"3"), Pair(0, L"4")));
  double read[] = {-1, -1, -1, -1, -1, -1};
  EXPECT_EQ(GetElemOffset(style.get(), read, 5), 1);
  EXPECT_THAT(read, ElementsAre(10, 9, 0, 0, 0, -1));

  int indices[] = {300, 0, -1, 7};
  EXPECT_EQ(SetElemColor(style.get(), indices, 3), 1);
  EXPECT_THAT(indices, ElementsAre(256, 0, 256, 7)) << "only what is read is rewritten";
  EXPECT_THAT(elementsOf(*style),
              ElementsAre(Pair(10, L"ByLayer"), Pair(9, L"ByBlock"), Pair(0, L"ByLayer"), Pair(0, L"ByLayer")));

  const unsigned rgbs[] = {0x102030, kNoRgb, 0x1000000, 5};
  EXPECT_EQ(SetElemRgb(style.get(), rgbs, 3), 1);
  EXPECT_THAT(elementsOf(*style),
              ElementsAre(Pair(10, L"16,32,48"), Pair(9, L"ByBlock"), Pair(0, L"ByLayer"), Pair(0, L"ByLayer")));

  const wchar_t* names[] = {L"BOOK$SEA", nullptr, L"$BAD", L"BOOK$SKY"};
  EXPECT_EQ(SetElemName(style.get(), names, 3), 1);
  EXPECT_THAT(elementsOf(*style),
              ElementsAre(Pair(10, L"SEA"), Pair(9, L"ByBlock"), Pair(0, L"ByLayer"), Pair(0, L"ByLayer")));
  names[1] = L"BOOK$SKY";
  names[0] = nullptr;
  EXPECT_EQ(SetElemName(style.get(), names, 3), 1);
  EXPECT_EQ(elementsOf(*style)[0].second, L"SEA") << "without a first name nothing changes";
  EXPECT_EQ(elementsOf(*style)[1].second, L"ByBlock");

  const auto before = elementsOf(*style);
  EXPECT_EQ(SetElemOffset(style.get(), nullptr, 4) + SetElemColor(style.get(), nullptr, 4) +
                SetElemRgb(style.get(), nullptr, 4) + SetElemName(style.get(), nullptr, 4) +
                SetElemLtype(style.get(), nullptr, 4, nullptr),
            5);
  EXPECT_EQ(elementsOf(*style), before);
}

TEST(MlstyleAccess, ANullStyleFails) {
  EXPECT_EQ(SetNumElements(nullptr, 1) + SetElemOffset(nullptr, nullptr, 0) + GetElemOffset(nullptr, nullptr, 0) +
                SetElemColor(nullptr, nullptr, 0) + SetElemRgb(nullptr, nullptr, 0) + SetElemName(nullptr, nullptr, 0) +
                SetElemLtype(nullptr, nullptr, 0, nullptr) + SetFlag(static_cast<KdDbMlineStyle*>(nullptr), 1),
            0);
}

TEST(MlstyleAccess, ColorBookNamesHaveAtMostOneMarkInside) {
  for (const wchar_t* good : {L"BOOK$RED", L"RED", L" A$B"}) EXPECT_TRUE(IsColorBookNameValid(good)) << good;
  for (const wchar_t* bad : {L"$RED", L"BOOK$", L"A$B$C", L"$", L""}) EXPECT_FALSE(IsColorBookNameValid(bad)) << bad;
  EXPECT_FALSE(IsColorBookNameValid(nullptr));
}

TEST(MlstyleAccess, FlagsAreSetOnAndOff) {
  using Get = bool (KdDbMlineStyle::*)() const;
  const std::pair<int, Get> bits[] = {{1, &KdDbMlineStyle::filled},          {2, &KdDbMlineStyle::showMiters},
                                      {16, &KdDbMlineStyle::startSquareCap}, {32, &KdDbMlineStyle::startInnerArcs},
                                      {64, &KdDbMlineStyle::startRoundCap},  {256, &KdDbMlineStyle::endSquareCap},
                                      {512, &KdDbMlineStyle::endInnerArcs},  {1024, &KdDbMlineStyle::endRoundCap}};
  KdDbMlineStyle style;
  for (const int flags : {0x402, 0xFFFF, 1, 0x150, 0}) {
    EXPECT_EQ(SetFlag(&style, flags), 1);
    for (const auto& [bit, get] : bits) EXPECT_EQ((style.*get)(), (flags & bit) != 0) << flags << ' ' << bit;
  }
}

// A host whose root folder holds the linetype files.
class MlstyleLinetypesTest : public testing::Test, protected HostDriver {
 protected:
  MlstyleLinetypesTest() {
    std::filesystem::create_directory(folder.path("bin"));
    for (const char* file : {"torva.lin", "torvaiso.lin"}) {
      std::filesystem::copy_file(std::string(TORVA_SOURCE_DIR "/support/") + file, folder.path(file));
    }
    startHost(torva::runtime::DialogUse::none, folder.path("bin"));
  }
  void setMeasurement(short value) {
    KdResbuf buffer;
    buffer.restype = kKdResultShort;
    buffer.value.shortInteger = value;
    EXPECT_EQ(kdedSetVar(L"MEASUREMENT", &buffer), kKdInputNormal);
  }
  std::wstring linetypeAfter(const wchar_t* name) {
    const auto style = styleWith({1});
    EXPECT_EQ(SetElemLtype(style.get(), &name, 0, kddbWorkingDatabase()), 1);
    double offset = 0;
    KdCmColor color;
    KdDbObjectId id;
    EXPECT_EQ(style->getElementAt(0, offset, color, id), KdStatus::ok);
    KdDbLinetypeTableRecord* linetype = nullptr;
    EXPECT_EQ(kddbOpenObject(linetype, id, KdOpenMode::forRead), KdStatus::ok);
    const std::wstring found = linetype->name() + L" " + std::to_wstring(linetype->dashLengthAt(0));
    linetype->close();
    return found;
  }
};

TEST_F(MlstyleLinetypesTest, ComeFromTheDrawingThenFromTheFileOfItsUnits) {
  setMeasurement(0);
  EXPECT_EQ(linetypeAfter(L"dashed"), L"DASHED 0.400000");
  setMeasurement(1);
  EXPECT_EQ(linetypeAfter(L"Dashed"), L"DASHED 0.400000") << "the drawing has it now";
  EXPECT_EQ(linetypeAfter(L"HIDDENX2"), L"HIDDENX2 10.000000");
  EXPECT_EQ(linetypeAfter(L"none such"), L"Continuous 0.000000");
  EXPECT_EQ(linetypeAfter(L"BYLAYER"), L"ByLayer 0.000000");
  EXPECT_EQ(linetypeAfter(L"byblock"), L"ByBlock 0.000000");
  std::filesystem::remove(folder.path("torvaiso.lin"));
  EXPECT_EQ(linetypeAfter(L"CENTER"), L"Continuous 0.000000");
}

TEST_F(MlstyleLinetypesTest, TheFilesHoldTheUsualOnesInThreeScales) {
  for (const auto& [file, unit] : {std::pair{"torva.lin", 1.0}, {"torvaiso.lin", 25.0}}) {
    const std::string content = folder.read(file);
    for (const wchar_t* name : {L"DASHED", L"HIDDEN", L"CENTER", L"DASHDOT", L"BORDER", L"DIVIDE", L"DOT", L"PHANTOM"}) {
      const auto whole = torva::db::readLinetype(content, name);
      ASSERT_TRUE(whole) << file << torva::utf8FromWide(name);
      EXPECT_GE(whole->dashes[1], -0.2 * unit);
      for (const auto& [suffix, factor] : {std::pair{L"2", 0.5}, {L"X2", 2.0}}) {
        const auto scaled = torva::db::readLinetype(content, name + std::wstring(suffix));
        ASSERT_TRUE(scaled);
        ASSERT_EQ(scaled->dashes.size(), whole->dashes.size());
        for (std::size_t i = 0; i < whole->dashes.size(); ++i) {
          EXPECT_NEAR(scaled->dashes[i], whole->dashes[i] * factor, 1e-9 * unit);
        }
      }
    }
  }
}

}  // namespace

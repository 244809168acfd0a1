#include <cmath>
#include <numbers>

#include "mlstyle/preview/SampleMline.h"
#include "mlstyle/preview/StylePreview.h"
#include "style_dialogs.h"

namespace {

constexpr int kWidth = 240, kHeight = 100;
constexpr double kRight = std::numbers::pi / 2;

struct Look {
  const char* name;
  std::vector<double> offsets = {0.5, -0.5};
  double startRad = kRight, endRad = kRight;
};

void build(KdDbMlineStyle& style, const Look& look) {
  style.initMlineStyle();
  int index = 0;
  for (const double offset : look.offsets) style.addElement(index, offset, KdCmColor::byIndex(5), {});
  style.setStartAngle(look.startRad);
  style.setEndAngle(look.endRad);
}

using StylePreviewTest = StyleDialogTest;

TEST_F(StylePreviewTest, TheSampleIsLaidOutByOffsetsAndAngles) {
  constexpr double k10 = std::numbers::pi / 18;
  struct Case {
    Look look;
    std::vector<double> heights;  // above the axis at the middle vertex
    double reach;                 // along the axis from the first vertex to the first element
  };
  const Case cases[] = {
      {{"three, from the least", {-1, 0, 3}}, {0, 25, 100}, 0},
      {{"one offset", {2, 2, 2}}, {0, 0, 0}, 0},
      {{"slanting ends", {0.5, -0.5}, 6 * k10, 12 * k10}, {100, 0}, 100 / std::tan(6 * k10)},
      {{"steep ends reach a quarter of the width", {0.5, -0.5}, k10, 17 * k10}, {60 * std::tan(k10), 0}, 60},
      {{"an end along the axis", {0.5, -0.5}, 0}, {0.6, 0}, 60},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.look.name);
    KdDbMlineStyle style;
    build(style, c.look);
    const auto sample = makeSampleMline(style, kWidth + 1, kHeight);
    ASSERT_EQ(sample->numVertices(), 3);
    EXPECT_EQ(sample->vertexAt(1).x, kWidth / 2);
    for (std::size_t i = 0; i < c.heights.size(); ++i) {
      EXPECT_NEAR(sample->segmentsAt(1)[i].elementParameters[0], c.heights[i], 0.6) << i;
    }
    const double first = sample->segmentsAt(0)[0].elementParameters[0];
    EXPECT_NEAR((sample->vertexAt(0) + sample->miterAt(0) * first).x, c.reach, 0.6);
  }
}

TEST_F(StylePreviewTest, DashesAreSeenInInchesAndMillimetresAndTheDrawingStays) {
  for (const auto& [measurement, dash] : {std::pair{"0", "0.5"}, {"1", "12"}, {"0", "5000"}, {"1", "0.001"}}) {
    startHost(torva::runtime::DialogUse::shown);
    run(std::string("MEASUREMENT ") + measurement + "\n");
    const std::string file = folder.write("d.lin", std::string("*D,dashes\nA,") + dash + ",-" + dash + "\n");
    KdDbObjectId linetype;
    const std::wstring path(file.begin(), file.end());
    ASSERT_EQ(kddbLoadLinetypeFromFile(path.c_str(), L"D", linetype, &drawing(), 0), KdStatus::ok);
    KdDbMlineStyle style;
    int index = 0;
    ASSERT_EQ(style.addElement(index, 0, KdCmColor::byIndex(1), linetype), KdStatus::ok);
    const std::string before = bytes();
    const QImage picture = stylePicture(style, {kWidth, kHeight}, 1).toImage();
    const auto isInked = [&](int x) { return picture.pixelColor(x, kHeight / 2).alpha() > 100; };
    int strokes = 0;
    for (int x = 1; x < kWidth; ++x) strokes += isInked(x) && !isInked(x - 1);
    EXPECT_TRUE(strokes >= 4 && strokes <= 25) << dash << ": " << strokes;
    EXPECT_TRUE(bytes() == before);
  }
}

TEST_F(StylePreviewTest, ThePictureShowsFillAndCapsAndIsTheSameByItsHandle) {
  KdDbMlineStyle style;
  build(style, {"plain"});
  const auto shown = [&] { return stylePicture(style, {kWidth, kHeight}, 1).toImage(); };
  const QImage plain = shown();
  style.setFilled(true);
  style.setFillColor(KdCmColor::byIndex(1));
  const QImage filled = shown();
  EXPECT_NE(plain.pixelColor(kWidth / 2, kHeight / 2), QColor(Qt::red));
  EXPECT_EQ(filled.pixelColor(kWidth / 2, kHeight / 2), QColor(Qt::red));
  for (const auto flag :
       {&KdDbMlineStyle::setShowMiters, &KdDbMlineStyle::setStartSquareCap, &KdDbMlineStyle::setEndRoundCap}) {
    const QImage before = shown();
    (style.*flag)(true);
    EXPECT_NE(shown(), before);
  }
  const std::unique_ptr<QImage> picture(reinterpret_cast<QImage*>(VEX_MlstyleBitmap(kWidth, kHeight, &style)));
  ASSERT_TRUE(picture);
  EXPECT_EQ(*picture, shown().convertToFormat(picture->format()));
  EXPECT_EQ(stylePicture(style, {kWidth, kHeight}, 2).size(), QSize(kWidth, kHeight) * 2);
  EXPECT_EQ(VEX_MlstyleBitmap(kWidth, kHeight, nullptr) + VEX_MlstyleBitmap(0, kHeight, &style), 0);
  host.reset();
  EXPECT_EQ(VEX_MlstyleBitmap(kWidth, kHeight, &style), 0);
}

}  // namespace

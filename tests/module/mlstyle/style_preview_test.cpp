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
  std::vector<KdStatus (KdDbMlineStyle::*)(bool)> flags = {};
  KdCmColor color = KdCmColor::trueColor(0x0000FF);
};

void build(KdDbMlineStyle& style, const Look& look) {
  style.initMlineStyle();
  int index = 0;
  for (const double offset : look.offsets) style.addElement(index, offset, look.color, {});
  style.setStartAngle(look.startRad);
  style.setEndAngle(look.endRad);
  style.setFillColor(KdCmColor::byIndex(1));
  for (const auto flag : look.flags) (style.*flag)(true);
}

using StylePreviewTest = StyleDialogTest;

TEST_F(StylePreviewTest, TheSampleIsLaidOutByOffsetsAndAngles) {
  constexpr double k30 = std::numbers::pi / 6;
  const double shrunk = 60 * std::tan(std::numbers::pi / 18);  // ends reach a quarter of the width: 60
  struct Case {
    Look look;
    std::vector<double> heights;  // above the axis at the middle vertex
    double startReach, endReach;  // along the axis from the end vertices to the highest element
  };
  const Case cases[] = {
      {{"two, from the largest", {0.5, -0.5}}, {100, 0}, 0, 0},
      {{"three, from the least", {-1, 0, 3}}, {0, 25, 100}, 0, 0},
      {{"in no order", {0, 3, -1}}, {25, 100, 0}, 0, 0},
      {{"one", {7}}, {0}, 0, 0},
      {{"one offset", {2, 2, 2}}, {0, 0, 0}, 0, 0},
      {{"slanting ends", {0.5, -0.5}, 2 * k30, 4 * k30}, {100, 0}, 100 / std::tan(2 * k30), -100 / std::tan(2 * k30)},
      {{"steep ends", {0.5, -0.5}, k30 / 3, std::numbers::pi - k30 / 3}, {shrunk, 0}, 60, -60},
      {{"an end along the axis", {0.5, -0.5}, 0}, {0.6, 0}, 60, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.look.name);
    KdDbMlineStyle style;
    build(style, c.look);
    const auto sample = makeSampleMline(style, kWidth + 1, kHeight);
    ASSERT_EQ(sample->numVertices(), 3);
    EXPECT_EQ(sample->vertexAt(1).x, kWidth / 2);
    const auto topAt = [&](int vertex) {
      double most = 0;
      for (std::size_t i = 0; i < c.heights.size(); ++i) {
        most = std::max(most, sample->segmentsAt(vertex)[i].elementParameters[0]);
      }
      return sample->vertexAt(vertex) + sample->miterAt(vertex) * most;
    };
    for (std::size_t i = 0; i < c.heights.size(); ++i) {
      EXPECT_NEAR(sample->segmentsAt(1)[i].elementParameters[0], c.heights[i], 0.6) << i;
    }
    EXPECT_NEAR(topAt(0).x, c.startReach, 0.6);
    EXPECT_NEAR(topAt(2).x - (kWidth + 1), c.endReach, 0.6);
  }
}

/// The colors of a picture by place in shares of its size; '.' is the ground, 'x' any other color.
struct Ink {
  explicit Ink(const QImage& picture) : image(picture) {}
  char at(double x, double y) const {
    const QColor color = image.pixelColor(static_cast<int>(x * image.width()), static_cast<int>(y * image.height()));
    if (color.alpha() < 128) return '.';
    return color == QColor(Qt::red) ? 'r' : color.blue() > color.red() ? 'b' : 'x';
  }
  /// How often ink begins along a row or a column.
  int strokesAcross(bool isRow, double share) const {
    int count = 0;
    const int length = isRow ? image.width() : image.height();
    for (int i = 1; i < length; ++i) {
      const auto isInked = [&](int k) { return isRow ? inked(k, share * image.height()) : inked(share * image.width(), k); };
      count += isInked(i) && !isInked(i - 1);
    }
    return count;
  }
  bool inked(double x, double y) const { return image.pixelColor(static_cast<int>(x), static_cast<int>(y)).alpha() > 100; }
  bool touchesEdge() const {
    for (int x = 0; x < image.width(); ++x) {
      if (qAlpha(image.pixel(x, 0)) || qAlpha(image.pixel(x, image.height() - 1))) return true;
    }
    for (int y = 0; y < image.height(); ++y) {
      if (qAlpha(image.pixel(0, y)) || qAlpha(image.pixel(image.width() - 1, y))) return true;
    }
    return false;
  }
  QImage image;
};

TEST_F(StylePreviewTest, ThePictureShowsElementsFillCapsAndJoints) {
  using S = KdDbMlineStyle;
  std::vector<double> sixteen;
  for (int i = 0; i < 16; ++i) sixteen.push_back(i);
  struct Case {
    Look look;
    int linesAcross;        // at a quarter of the width
    int strokesAlong;       // at half of the height
    char middle, nextToIt;  // what is at the joint, and between it and the end
  };
  const Case cases[] = {
      {{"plain", {0.5, -0.5}}, 2, 0, '.', '.'},
      {{"one element", {3}}, 1, 1, 'b', 'b'},
      {{"one offset", {2, 2}}, 1, 1, 'b', 'b'},
      {{"sixteen", sixteen}, 16, 0, '.', '.'},
      {{"filled", {0.5, -0.5}, kRight, kRight, {&S::setFilled}}, 1, 1, 'r', 'r'},
      {{"joints", {0.5, -0.5}, kRight, kRight, {&S::setShowMiters}}, 2, 1, 'b', '.'},
      {{"lines", {0.5, -0.5}, kRight, kRight, {&S::setStartSquareCap, &S::setEndSquareCap}}, 2, 2, '.', '.'},
      {{"outer arcs", {0.5, -0.5}, kRight, kRight, {&S::setStartRoundCap, &S::setEndRoundCap}}, 2, 2, '.', '.'},
      {{"all arcs", {3, 1, -1, -3}, kRight, kRight, {&S::setEndInnerArcs, &S::setEndRoundCap}}, 4, 2, '.', '.'},
      {{"steep", {0.5, -0.5}, 0.18, 2.96, {&S::setStartSquareCap, &S::setEndSquareCap}}, 2, 2, '.', '.'},
  };
  for (const Case& c : cases) {
    for (const int scale : {1, 2}) {
      SCOPED_TRACE(std::string(c.look.name) + " at " + std::to_string(scale));
      KdDbMlineStyle style;
      build(style, c.look);
      const Ink ink(stylePicture(style, {kWidth, kHeight}, scale).toImage());
      ASSERT_EQ(ink.image.size(), QSize(kWidth, kHeight) * scale);
      EXPECT_FALSE(ink.touchesEdge());
      EXPECT_EQ(ink.strokesAcross(false, 0.4), c.linesAcross);
      EXPECT_EQ(ink.strokesAcross(true, 0.5), c.strokesAlong);
      EXPECT_EQ(ink.at(0.5, 0.5), c.middle);
      EXPECT_EQ(ink.at(0.4, 0.5), c.nextToIt);
    }
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
    const Ink ink(stylePicture(style, {kWidth, kHeight}, 1).toImage());
    EXPECT_GE(ink.strokesAcross(true, 0.5), 4) << dash;
    EXPECT_LE(ink.strokesAcross(true, 0.5), 25) << dash;
    EXPECT_TRUE(bytes() == before);
  }
}

TEST_F(StylePreviewTest, ThePictureByItsHandleIsTheSame) {
  KdDbMlineStyle style;
  build(style, {"plain"});
  const std::unique_ptr<QImage> picture(reinterpret_cast<QImage*>(VEX_MlstyleBitmap(kWidth, kHeight, &style)));
  ASSERT_TRUE(picture);
  EXPECT_EQ(*picture, stylePicture(style, {kWidth, kHeight}, 1).toImage().convertToFormat(picture->format()));
  EXPECT_EQ(VEX_MlstyleBitmap(kWidth, kHeight, nullptr), 0);
  EXPECT_EQ(VEX_MlstyleBitmap(0, kHeight, &style), 0);
  host.reset();
  EXPECT_EQ(VEX_MlstyleBitmap(kWidth, kHeight, &style), 0);
}

}  // namespace

#include "command/plotter.h"

#include <gtest/gtest.h>
#include <memory>
#include <numbers>

#include <QImage>

extern "C" torva::command::Plotter* torvaCreatePlotter();

namespace torva::paint {
namespace {

using command::PlotFormat;
using draw::Appearance;

constexpr QRgb kWhite = 0xFFFFFFFF;

class PlotterTest : public testing::Test {
 protected:
  PlotterTest() {
    m_view.resize(200, 100);
    m_view.set({100, 50, 0}, 100);  // one unit a pixel, 0,0 at the lower left
  }

  void add(draw::Shape shape, const Appearance& appearance) {
    m_list.appearances.push_back(appearance);
    m_list.primitives.push_back({std::move(shape), static_cast<std::uint32_t>(m_list.appearances.size() - 1)});
  }

  Result<std::string> plot(PlotFormat format) {
    const std::unique_ptr<command::Plotter> plotter(torvaCreatePlotter());
    return plotter->plot(m_list, m_view, format);
  }

  QImage picture() {
    const auto bytes = plot(PlotFormat::png);
    return bytes ? QImage::fromData(QByteArray::fromStdString(*bytes)) : QImage();
  }

  view::View m_view;
  draw::DisplayList m_list;
};

const Appearance kRedPen{0xFF0000, false, {}, 300}, kForeground{0, true, {}, 300};

TEST_F(PlotterTest, PaintsShapesWhereTheViewShowsThem) {
  using Points = std::vector<KdGePoint3d>;
  add(draw::Fill{{Points{{10, 10, 0}, {60, 10, 0}, {60, 60, 0}, {10, 60, 0}},
                  Points{{20, 20, 0}, {50, 20, 0}, {50, 50, 0}, {20, 50, 0}}}},
      kRedPen);
  add(draw::Polyline{{{100, 20, 0}, {190, 20, 0}}, false}, kForeground);
  add(draw::Arc{{150, 60, 0}, {20, 0, 0}, {0, 20, 0}, 0, std::numbers::pi}, kForeground);
  add(draw::Polyline{{{-1e12, 90, 0}, {1e12, 90, 0}}, false}, kForeground);
  add(draw::Polyline{{{0, 5, 0}, {200, 5, 0}}, false}, {0, true, {40, -40}, 300});
  const QImage image = picture();
  ASSERT_EQ(image.size(), QSize(200, 100));
  constexpr QRgb kRedInk = 0xFFFF0000, kBlack = 0xFF000000;
  struct Case {
    const char* name;
    int x, y;
    QRgb color;
  };
  const Case cases[] = {
      {"area", 15, 85, kRedInk},
      {"hole of the area", 35, 65, kWhite},
      {"line", 145, 80, kBlack},
      {"beside the line", 145, 70, kWhite},
      {"top of the half circle", 150, 20, kBlack},
      {"where the circle is not drawn", 150, 60, kWhite},
      {"line that runs far out of the picture", 5, 10, kBlack},
      {"dash", 100, 95, kBlack},
      {"between dashes", 60, 95, kWhite},
  };
  for (const Case& c : cases) EXPECT_EQ(image.pixel(c.x, c.y), c.color) << c.name;
}

TEST_F(PlotterTest, FitsTextToItsNominalWidth) {
  const std::wstring letters = L"HHHH";
  add(draw::Text{letters, {20, 30, 0}, {40, 0, 0}, {0, 40, 0}}, kForeground);
  const QImage image = picture();
  const double right = 20 + 40 * draw::nominalTextWidth(letters);
  int inked = 0, first = 1000, last = -1, top = 1000, bottom = -1;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) == kWhite) continue;
      ++inked, first = std::min(first, x), last = std::max(last, x), top = std::min(top, y), bottom = std::max(bottom, y);
    }
  }
  EXPECT_GT(inked, 500);
  EXPECT_NEAR(first, 24, 6);
  EXPECT_NEAR(last, right - 4, 6);
  EXPECT_NEAR(top, 30, 2);
  EXPECT_NEAR(bottom, 70, 2);
}

TEST_F(PlotterTest, WritesLinesAsTheyAreAndNoPictureThatIsTooLarge) {
  add(draw::Polyline{{{10, 10, 0}, {190, 90, 0}}, false}, kRedPen);
  const std::string svg = plot(PlotFormat::svg).value();
  for (const char* part : {"viewBox=\"0 0 200 100\"", "#ff0000", "M10,90 L190,10"}) {
    EXPECT_NE(svg.find(part), std::string::npos) << svg;
  }
  EXPECT_TRUE(plot(PlotFormat::pdf).value().starts_with("%PDF-"));
  m_view.resize(2'000'000'000, 2'000'000'000);
  const auto result = plot(PlotFormat::png);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, ErrorCode::invalidValue);
}

}  // namespace
}  // namespace torva::paint

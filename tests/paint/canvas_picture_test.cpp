#include "paint/canvas_picture.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>

#include "draw/sample_drawing.h"
#include "paint/overlay.h"

#include <QGuiApplication>

namespace torva::paint {
namespace {

using std::chrono::milliseconds;
using test::entity;
using test::group;
using test::point;

constexpr QRgb kDark = 0xFF202020, kLight = 0xFFFFFFFF, kRed = 0xFFFF0000;

/// Lines along the axes, circles, areas, texts and dashed lines over 1000 x 1000.
std::string randomEntities(int count, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<> place(0, 1000), size(1, 60);
  std::string text;
  for (int i = 0; i < count; ++i) {
    const double x = place(random), y = place(random), s = size(random);
    const std::string layer = i % 4 ? "0" : "RED";
    if (i % 5 == 0) text += entity("LINE", point(10, x, y) + point(11, x + s, y), layer);
    if (i % 5 == 1) text += entity("LINE", point(10, x, y) + point(11, x, y + s), "DASHED");
    if (i % 5 == 2) text += entity("CIRCLE", point(10, x, y) + group(40, s / 8), layer);
    if (i % 5 == 3)
      text += entity("SOLID", point(10, x, y) + point(11, x + s, y) + point(12, x, y + s) + point(13, x + s, y + s), layer);
    if (i % 5 == 4) text += entity("TEXT", point(10, x, y) + group(40, s / 6) + group(1, "Wall 17"), layer);
  }
  return text;
}

std::string layer(const std::string& name, const std::string& color, const std::string& linetype) {
  return group(0, "LAYER") + group(100, "AcDbSymbolTableRecord") + group(100, "AcDbLayerTableRecord") + group(2, name) +
         group(70, "0") + group(62, color) + group(6, linetype);
}

const std::string kDashedLinetype =
    group(0, "LTYPE") + group(100, "AcDbSymbolTableRecord") + group(100, "AcDbLinetypeTableRecord") + group(2, "DASH") +
    group(70, "0") + group(3, "") + group(72, "65") + group(73, "2") + group(40, 6.0) + group(49, 4.0) + group(49, -2.0);

class CanvasPictureTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argumentCount = 1;
    static char name[] = "canvas";
    static char* arguments[] = {name, nullptr};
    static const QGuiApplication application(argumentCount, arguments);
  }

  void open(const std::string& entities) {
    m_database =
        test::SampleDrawing{.entities = entities, .layers = layer("DASHED", "3", "DASH"), .linetypes = kDashedLinetype}
            .open();
    m_picker = std::make_unique<view::Picker>(*m_database);
    m_view.resize(400, 300);
    m_view.set({500, 500, 0}, 300);  // one unit a pixel
  }

  static QImage finish(CanvasPicture& picture) {
    while (!picture.advance(milliseconds(5))) {
    }
    return picture.image().copy();
  }

  QImage afresh(const CanvasLook& look = {}) {
    view::Picker picker(*m_database);
    CanvasPicture picture(picker);
    picture.setLook(look);
    picture.show(m_view);
    return finish(picture);
  }

  dxf::RecordId first() const { return test::entitiesOf(*m_database).front(); }

  std::unique_ptr<db::Database> m_database;
  std::unique_ptr<view::Picker> m_picker;
  view::View m_view;
};

int inked(const QImage& image, QRgb background) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) != background;
  }
  return count;
}

/// Pixels that differ by more than what rounding makes of a slanting line at the border of a region.
int differing(const QImage& a, const QImage& b) {
  constexpr int kRounding = 8;
  if (a.size() != b.size()) return a.width() * a.height();
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      count += std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))}) >
               kRounding;
    }
  }
  return count;
}

/// Painted pixels of one picture that have none beside them in another: none where slanting lines were cut differently.
int strayed(const QImage& a, const QImage& b) {
  const QRgb ground = CanvasLook().background;
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (a.pixel(x, y) != ground) count += inked(b.copy(QRect(x - 1, y - 1, 3, 3) & b.rect()), ground) == 0;
    }
  }
  return count;
}

TEST_F(CanvasPictureTest, PannedAndZoomedIsAsPaintedAfresh) {
  open(randomEntities(1500, 1));
  CanvasPicture picture(*m_picker);
  picture.show(m_view);
  finish(picture);
  const struct {
    const char* name;
    double dx, dy, height;
    bool isFinished;
  } steps[] = {
      {"right and up", 37, 21, 300, true},
      {"left", -90, 0, 300, true},
      {"down, not painted on", 0, -44, 300, false},
      {"again before it is painted", 13, 8, 300, true},
      {"by a part of a pixel", 10.5, 3.25, 300, true},
      {"far away", 450, 20, 300, true},
      {"nearer", 0, 0, 120, true},
      {"farther", 0, 0, 1500, true},
      {"all but dots", 0, 0, 30'000, true},
  };
  for (const auto& step : steps) {
    const bool isZoomed = step.height != m_view.height();
    m_view.set(m_view.centerDcs() + KdGeVector3d{step.dx, step.dy, 0}, step.height);
    picture.show(m_view);
    if (isZoomed) {
      EXPECT_GT(inked(picture.image(), CanvasLook().background), 0) << step.name << ": a stand-in is shown";
    }
    if (step.isFinished) {
      EXPECT_EQ(differing(finish(picture), afresh()), 0) << step.name;
    }
  }
  m_view.resize(250, 350);
  picture.show(m_view);
  EXPECT_EQ(picture.image().size(), QSize(250, 350));
  EXPECT_EQ(differing(finish(picture), afresh()), 0);
}

TEST_F(CanvasPictureTest, PaintsManyEntitiesInPartsAndPauses) {
  open(randomEntities(45'000, 3));
  m_view.set({500, 500, 0}, 1000);
  CanvasPicture picture(*m_picker);
  picture.setMemoryLimit(1 << 20);
  picture.show(m_view);
  int slices = 1;
  while (!picture.advance(std::chrono::microseconds(200))) ++slices;
  EXPECT_GT(slices, 10);
  EXPECT_EQ(differing(picture.image(), afresh()), 0);
}

TEST_F(CanvasPictureTest, ShowsWhatWasChanged) {
  open(randomEntities(600, 4));
  CanvasPicture picture(*m_picker);
  picture.show(m_view);
  QImage before = finish(picture);
  const auto seen = m_picker->query({{400, 400, 0}, {600, 600, 0}});
  ASSERT_GT(seen.size(), 10u);
  const auto line = [](const char* onLayer, double x, double y) {
    return group(0, "LINE") + group(5, "AA") + group(330, "1F") + group(100, "AcDbEntity") + group(8, onLayer) +
           group(100, "AcDbLine") + point(10, 450, 450) + point(11, x, y);
  };
  const dxf::RecordId red = m_database->findSymbol(dxf::RecordType::layer, L"RED");
  dxf::RecordId added = dxf::kNoRecord;
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"erased", [&] { m_database->setErased(seen[3], true); }},
      {"added", [&] { added = m_database->appendToModelSpace(line("0", 550, 450)); }},
      {"moved", [&] { m_database->setBytes(added, line("0", 450, 590)); }},
      {"colored", [&] { m_database->setBytes(added, line("RED", 450, 590)); }},
      {"layer turned off",
       [&] {
         m_database->setBytes(red, layer("RED", "-1", "Continuous"));
         // Somebody else asks first: the picture must not miss the change.
         EXPECT_FALSE(m_picker->drawer().isVisible(added));
       }},
      {"taken back", [&] { m_database->undo(); }},
  };
  for (const auto& [name, change] : changes) {
    m_database->beginUndoStep(L"EDIT");
    change();
    m_database->endUndoStep();
    const QImage after = finish(picture);
    EXPECT_GT(differing(after, before), 0) << name;
    EXPECT_EQ(differing(after, afresh()), 0) << name;
    before = after;
  }
}

TEST_F(CanvasPictureTest, ChangesWhileItIsPaintedAreNotMissed) {
  open(randomEntities(1500, 5));
  CanvasPicture picture(*m_picker);
  picture.show(m_view);
  while (!picture.advance(std::chrono::microseconds(50))) {
    m_database->setErased(first(), true);
    ASSERT_FALSE(test::entitiesOf(*m_database).empty());
  }
  EXPECT_EQ(differing(finish(picture), afresh()), 0);
}

TEST_F(CanvasPictureTest, PaintsTheLooksOfTheDrawing) {
  const std::string heavy = group(100, "AcDbEntity") + group(8, "RED") + group(370, "200");
  open(entity("LINE", point(10, 350, 500) + point(11, 650, 500)) +
       entity("LINE", point(10, 350, 550) + point(11, 650, 550), "DASHED") + group(0, "LINE") + heavy +
       group(100, "AcDbLine") + point(10, 350, 450) + point(11, 650, 450) +
       entity("SOLID", point(10, 480, 480) + point(11, 520, 480) + point(12, 480, 520) + point(13, 520, 520), "RED"));
  const auto count = [](const QImage& image, int row, QRgb color) {
    int found = 0;
    for (int x = 60; x < 340; ++x) found += image.pixel(x, row) == color || image.pixel(x, row - 1) == color;
    return found;
  };
  const QImage onDark = afresh({kDark});
  EXPECT_GT(count(onDark, 150, 0xFFFFFFFF), 200) << "foreground on dark";
  EXPECT_GT(count(afresh({kLight}), 150, 0xFF000000), 200) << "foreground on light";
  EXPECT_EQ(onDark.pixel(200, 150), kRed) << "the area was drawn later than the line";
  const int dashes = count(onDark, 100, 0xFF00FF00);
  EXPECT_TRUE(dashes > 100 && dashes < 260) << dashes;
  EXPECT_EQ(onDark.pixel(200, 202), kDark);
  EXPECT_EQ(afresh({kDark, true}).pixel(200, 202), kRed) << "line weights";
  m_view.set({500, 500, 0}, 30'000);
  const int far = inked(afresh({kDark}), kDark);
  EXPECT_TRUE(far > 2 && far < 40) << far << ": dashes are no longer told apart, and the area is a dot";
}

TEST_F(CanvasPictureTest, OverlaysStandOut) {
  open(entity("LINE", point(10, 350, 500) + point(11, 650, 500)));
  draw::DisplayList list;
  m_picker->drawer().draw(first(), list);
  for (const OverlayLook look : {OverlayLook::highlight, OverlayLook::selection, OverlayLook::ghost}) {
    for (const QRgb background : {kDark, kLight}) {
      const QImage plain = afresh({background});
      QImage image = plain.copy();
      QPainter painter(&image);
      paintOverlay(painter, list, m_view, look);
      painter.end();
      int changed = 0;
      for (int x = 60; x < 340; ++x) changed += image.pixel(x, 150) != plain.pixel(x, 150);
      // The selection's gaps show the line itself.
      EXPECT_TRUE(look == OverlayLook::selection ? changed > 140 && changed < 280 : changed == 280) << changed;
    }
  }
}

TEST_F(CanvasPictureTest, PaintsTiltedViews) {
  const std::string viewport = group(0, "VPORT") + group(2, "*ACTIVE") + point(16, 1, -2, 1.5) + group(51, 20.0);
  open(randomEntities(3000, 6));
  m_view = view::View::ofDrawing(*test::SampleDrawing{.viewport = viewport}.open(), 400, 300);
  m_view.set(m_view.toDisplay({500, 500, 0}), 300);
  CanvasPicture picture(*m_picker);
  picture.show(m_view);
  finish(picture);
  m_view.set(m_view.centerDcs() + KdGeVector3d{25, -40, 0}, 300);
  picture.show(m_view);
  const QImage fresh = afresh(), panned = finish(picture);
  EXPECT_GT(inked(fresh, CanvasLook().background), 5000);
  EXPECT_EQ(strayed(panned, fresh) + strayed(fresh, panned), 0);
}

}  // namespace
}  // namespace torva::paint

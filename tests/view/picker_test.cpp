#include "view/picker.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "draw/sample_drawing.h"
#include "view/hit_test.h"

namespace torva::view {
namespace {

using test::circle;
using test::entity;
using test::group;
using test::line;
using test::point;

enum class Order { random, fromLeftToRight };

/// Lines, circles and two-element multilines spread over 1000 x 1000, at heights up to 300.
std::string randomEntities(int count, Order order, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<> place(0, 1000), size(-60, 60);
  std::string text;
  for (int i = 0; i < count; ++i) {
    const double x = order == Order::random ? place(random) : 1000.0 * i / count, y = place(random), z = place(random) * 0.3;
    const double width = size(random), height = size(random);
    if (i % 3 == 0) {
      text += line(x, y, x + width, y + height, z);
    } else if (i % 3 == 1) {
      text += circle(x, y, std::abs(width) + 1, z);
    } else {
      text += test::mlineBar({x, y, z}, width);
    }
  }
  return text;
}

dxf::RecordId pickAmongAll(const db::Database& database, const KdGePoint3d& point, double halfSide, const View& view) {
  const draw::Drawer drawer(database);
  dxf::RecordId nearest = dxf::kNoRecord;
  double least = 0;
  for (const dxf::RecordId record : test::entitiesOf(database)) {
    draw::DisplayList list;
    drawer.draw(record, list);
    const auto distance = distanceIfMet(list, view, {view.toDisplay(point), halfSide});
    if (distance && (nearest == dxf::kNoRecord || *distance <= least)) nearest = record, least = *distance;
  }
  return nearest;
}

std::vector<View> views() {
  std::vector<View> views;
  for (const std::string& groups : {std::string(), group(51, 30.0), point(16, 1, -2, 1.5) + group(51, 20.0)})
    views.push_back(View::ofDrawing(*test::SampleDrawing{.viewport = test::viewport(groups)}.open(), 1000, 1000));
  return views;
}

TEST(Picker, FindsWhatLookingAtAllFinds) {
  const auto database = test::SampleDrawing{.entities = randomEntities(1500, Order::random, 2)}.open();
  Picker picker(*database);
  std::mt19937 random(3);
  std::uniform_real_distribution<> place(0, 1000);
  const auto entities = test::entitiesOf(*database);
  std::size_t changed = 0;
  for (const View& view : views()) {
    int hits = 0;
    for (int i = 0; i < 150; ++i) {
      const KdGePoint3d at{place(random), place(random), 0};
      const dxf::RecordId expected = pickAmongAll(*database, at, 8, view);
      ASSERT_EQ(picker.pick(at, 8, view), expected) << at.x << "," << at.y;
      if (expected != dxf::kNoRecord) ++hits;
      // The drawing goes on changing: entities vanish, and others come with what was drawn elsewhere.
      const dxf::RecordId next = entities[changed++ % entities.size()];
      database->setErased(next, true);
      if (i % 2 == 0) database->appendToModelSpace(std::string(database->file().bytes(next)));
    }
    EXPECT_GT(hits, 50);
  }
}

TEST(Picker, FindsInWindowsWhatLookingAtAllFinds) {
  for (const Order order : {Order::random, Order::fromLeftToRight}) {
    const auto database = test::SampleDrawing{.entities = randomEntities(1500, order, 4)}.open();
    const draw::Drawer drawer(*database);
    Picker picker(*database);
    for (const View& view : views()) {
      const KdGePoint3d at = view.toDisplay({500, 400, 0});
      const PickWindow window{at, at + KdGeVector3d{220, 90, 0}};
      for (const WindowRule rule : {WindowRule::whole, WindowRule::part}) {
        std::vector<dxf::RecordId> expected;
        for (const dxf::RecordId record : test::entitiesOf(*database)) {
          draw::DisplayList list;
          drawer.draw(record, list);
          if (liesIn(list, view, window, rule)) expected.push_back(record);
        }
        EXPECT_GT(expected.size(), 8u);
        EXPECT_EQ(picker.pickAll(window, rule, view), expected);
      }
    }
  }
}

TEST(Picker, FollowsChangesAndPrefersTheLaterOfEquals) {
  const std::string line = group(0, "LINE") + group(5, "AA") + group(330, "1F") + group(100, "AcDbEntity") + group(8, "0") +
                           group(100, "AcDbLine") + point(10, 0, 0) + point(11, 10, 0);
  const auto database = test::SampleDrawing{.entities = line}.open();
  Picker picker(*database);
  const dxf::RecordId first = picker.pick({5, 0, 0}, 1, View());
  ASSERT_NE(first, dxf::kNoRecord);
  const dxf::RecordId added = database->appendToModelSpace(line);
  EXPECT_EQ(picker.pick({5, 0, 0}, 1, View()), added);
  EXPECT_EQ(picker.query({{4, -1, 0}, {6, 1, 0}}), (std::vector<dxf::RecordId>{first, added}));
  database->beginUndoStep(L"ERASE");
  database->setErased(added, true);
  database->endUndoStep();
  EXPECT_EQ(picker.pick({5, 0, 0}, 1, View()), first);
  database->undo();
  EXPECT_EQ(picker.pick({5, 0, 0}, 1, View()), added);
}

TEST(Picker, KnowsTheExtentsOfWhatIsDrawn) {
  const auto database =
      test::SampleDrawing{.entities = entity("MTEXT", point(10, 30, 9) + group(40, "2") + group(1, "Ground floor")) +
                                      line(-5, 1, 20, 7) +
                                      entity("TEXT", point(10, 3, 5) + group(40, "1") + group(1, "Bath")) +
                                      entity("LINE", point(10, 900, 900) + point(11, 950, 950), "FROZEN")}
          .open();
  const draw::Drawer drawer(*database);
  const dxf::RecordId label = test::entitiesOf(*database).front();
  const auto expectDrawn = [&](Picker& picker) {
    geom::Box3 drawn;
    for (const dxf::RecordId entity : test::entitiesOf(*database)) drawn.add(drawer.drawnExtents(entity));
    EXPECT_FALSE(drawn.holds(drawer.bounds(label)));
    EXPECT_LE(picker.extents().min.distanceTo(drawn.min), 1e-9);
    EXPECT_LE(picker.extents().max.distanceTo(drawn.max), 1e-9);
  };
  Picker picker(*database);
  expectDrawn(picker);
  database->appendToModelSpace(line(0, 0, 1, -3));
  expectDrawn(picker);
  EXPECT_TRUE(Picker(*test::SampleDrawing{}.open()).extents().isEmpty());
}

TEST(Picker, FindsWhatIsAddedToADrawingWithoutARecordOfModelSpace) {
  std::string text = test::SampleDrawing{}.text();
  text.replace(text.find("*Model_Space"), 12, "SOMEOTHER");
  const auto database = test::openText(text);
  Picker picker(*database);
  EXPECT_TRUE(picker.extents().isEmpty());
  const auto line = [](const char* space) {
    return group(0, "LINE") + group(330, "1F") + group(100, "AcDbEntity") + group(67, space) + group(8, "0") +
           group(100, "AcDbLine") + point(10, 0, 0) + point(11, 10, 0);
  };
  const dxf::RecordId added = database->appendToModelSpace(line("0"));
  database->appendToModelSpace(line("1"));
  EXPECT_EQ(picker.pick({5, 0, 0}, 1, View()), added);
}

}  // namespace
}  // namespace torva::view

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mledit/drawing.h"
#include "module/mledit/engine.h"

namespace {

using ::testing::ElementsAre;

MATCHER_P3(IsAt, x, y, z, "") {
  return std::abs(arg[0] - x) < 1e-9 && std::abs(arg[1] - y) < 1e-9 && std::abs(arg[2] - z) < 1e-9;
}

void resolve(CMlineEdit& engine, CMlineSegment& seg, KdDbObjectId id, double x, double y) {
  ASSERT_EQ(kddbGetName(engine.pickName, id), KdStatus::ok);
  engine.pickPoint[0] = x;
  engine.pickPoint[1] = y;
  engine.mlineEditInitialize(&seg, engine.pickName, nullptr);
}

// Element 0 runs on the path, element 1 at 3 units to the right of it.
const MlineSketch kAngle = {{{0, 0, 0}, {20, 0, 0}, {20, 20, 0}}, {0, -3}};
const MlineSketch kSquare = {{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {0}, true};

TEST(Pick, FindsTheSegmentAndTheElementLine) {
  constexpr int kNone = -1;
  struct Row {
    const char* name;
    MlineSketch sketch;
    std::vector<double> firstList;  // of element 0 at vertex 0, unless empty
    double x, y;
    int segment, element;
    double footX, footY;
  };
  const std::vector<double> kBroken = {0, 0, 4, 8};
  const Row rows[] = {
      {"first element", kAngle, {}, 5, 0.2, 0, 0, 5, 0},
      {"second element", kAngle, {}, 5, -2.8, 0, 1, 5, -3},
      {"upright segment", kAngle, {}, 20.3, 7, 1, 0, 20, 7},
      {"just within the tolerance", kAngle, {}, 5, 0.565, 0, 0, 5, 0},
      {"just beyond the tolerance", kAngle, {}, 5, 0.566, kNone, 0, 0, 0},
      {"at the very start", kAngle, {}, 0, 0, 0, 0, 0, 0},
      {"a vertex belongs to the segment that starts there", kAngle, {}, 20, 0, 1, 0, 20, 0},
      {"the far end belongs to none", kAngle, {}, 20, 20, kNone, 0, 0, 0},
      {"before the start", kAngle, {}, -0.1, 0, kNone, 0, 0, 0},
      {"in a gap", kAngle, kBroken, 6, 0.1, kNone, 0, 0, 0},
      {"before a gap", kAngle, kBroken, 3.99, 0, 0, 0, 3.99, 0},
      {"at the gap's start", kAngle, kBroken, 4, 0, kNone, 0, 0, 0},
      {"at the gap's end", kAngle, kBroken, 8, 0, 0, 0, 8, 0},
      {"nothing drawn on the segment", kAngle, {0}, 5, 0, kNone, 0, 0, 0},
      {"nearer to the start than a positive offset", {{{0, 0, 0}, {20, 0, 0}}, {3}}, {}, 2, 3, kNone, 0, 0, 0},
      {"as far as the offset", {{{0, 0, 0}, {20, 0, 0}}, {3}}, {}, 3, 3, 0, 0, 3, 3},
      {"first in order, not nearest", {{{0, 0, 0}, {20, 0, 0}}, {0, -0.4}}, {}, 5, -0.4, 0, 0, 5, 0},
      {"closing segment", kSquare, {}, 0.1, 5, 3, 0, 0, 5},
      {"closing segment comes last", kSquare, {}, 0, 0, 0, 0, 0, 0},
  };
  for (const Row& row : rows) {
    Drawing drawing;
    const auto handle = drawing.addMline(row.sketch);
    if (!row.firstList.empty()) drawing.edit(handle, [&](KdDbMline& mline) { setList(mline, 0, 0, row.firstList); });
    CMlineEdit engine;
    CMlineSegment& seg = engine.segFirst;
    seg.segment = kNone;
    resolve(engine, seg, drawing.idOf(handle), row.x, row.y);
    EXPECT_EQ(seg.segment, row.segment) << row.name;
    EXPECT_EQ(seg.element, row.element) << row.name;
    EXPECT_THAT(seg.point, IsAt(row.footX, row.footY, 0.0)) << row.name;
    EXPECT_EQ(seg.origSegment, seg.segment) << row.name;
    EXPECT_EQ(drawing.openCount(), 1u) << row.name;
    ASSERT_NE(seg.mline, nullptr) << row.name;
    EXPECT_EQ(seg.mline->close(), KdStatus::ok);
  }
}

TEST(Pick, ThatMissesKeepsTheFormerValues) {
  Drawing drawing;
  const auto handle = drawing.addMline(kAngle);
  CMlineEdit engine;
  CMlineSegment& seg = engine.segFirst;
  resolve(engine, seg, drawing.idOf(handle), 5, -2.8);
  seg.mline->close();
  seg.origSegment = 7;
  resolve(engine, seg, drawing.idOf(handle), 50, 50);
  seg.mline->close();
  EXPECT_EQ(seg.element, 1);
  EXPECT_EQ(seg.distance, 5);
  EXPECT_THAT(seg.origPoint, IsAt(5.0, -3.0, 0.0));
  EXPECT_EQ(seg.origSegment, 0);
  EXPECT_THAT(engine.pickName, ElementsAre(0, 0));
}

TEST(Pick, CountsOnMultilinesAlone) {
  Drawing drawing;
  const KdDbObjectId mline = drawing.idOf(drawing.addMline(kAngle)), line = drawing.idOf(drawing.add("LINE", "AcDbLine"));
  long name[2] = {0, 0};
  EXPECT_FALSE(needBreak(nullptr));
  EXPECT_FALSE(needBreak(name));
  for (const auto& [id, isMline] : {std::pair(line, false), {mline, true}}) {
    ASSERT_EQ(kddbGetName(name, id), KdStatus::ok);
    EXPECT_EQ(needBreak(name), isMline);
  }
  EXPECT_EQ(drawing.openCount(), 0u);
}

TEST(PointTable, HoldsWhereEachElementLinePassesEachVertex) {
  const auto mline = makeMline(kAngle);
  CMlineEdit engine;
  CMlineSegment& seg = engine.segFirst;
  engine.ptListInitialize(mline.get(), 3, 2, &seg.ptList, &seg.ptListCount);
  ASSERT_EQ(seg.ptListCount, 2);
  EXPECT_THAT(seg.ptList[0][2], IsAt(20.0, 20.0, 0.0));
  EXPECT_THAT(seg.ptList[1][0], IsAt(0.0, -3.0, 0.0));
  EXPECT_THAT(seg.ptList[1][1], IsAt(23.0, -3.0, 0.0));
  EXPECT_THAT(seg.ptList[1][2], IsAt(23.0, 20.0, 0.0));
  engine.ptListInitialize(nullptr, 3, 2, &seg.ptList, &seg.ptListCount);
  EXPECT_EQ(seg.ptListCount, 0);
  EXPECT_EQ(seg.ptList, nullptr);
}

TEST(Remapping, FindsTheSegmentAgainFromThePoint) {
  struct Row {
    const char* name;
    MlineSketch sketch;
    double x, y;
    int segment;  // 9: as it was
  };
  const Row rows[] = {
      {"first", kAngle, 5, 0, 0},
      {"within the tolerance", kAngle, 19.5, 7, 1},
      {"beyond it", kAngle, 19.4, 7, 9},
      {"a line counts beyond its ends", kAngle, 99, 0, 0},
      {"closing segment, on the line", kSquare, 0, 5, 9},
      {"closing segment, exactly at the tolerance", kSquare, 0.5, 5, 3},
  };
  for (const Row& row : rows) {
    const auto mline = makeMline(row.sketch);
    CMlineEdit engine;
    CMlineSegment& seg = engine.segFirst;
    seg.mline = mline.get();
    engine.spaceBetween = 0.5;
    seg.origPoint[0] = row.x;
    seg.origPoint[1] = row.y;
    seg.origSegment = 9;
    engine.correctMapping(&seg);
    EXPECT_EQ(seg.origSegment, row.segment) << row.name;
    EXPECT_EQ(seg.numVertices, mline->numVertices()) << row.name;
  }
}

}  // namespace

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mledit/drawing.h"
#include "module/mledit/engine.h"

namespace {

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
      {"second element", kAngle, {}, 5, -2.8, 0, 1, 5, -3},
      {"just within the tolerance", kAngle, {}, 5, 0.565, 0, 0, 5, 0},
      {"just beyond the tolerance", kAngle, {}, 5, 0.566, kNone, 0, 0, 0},
      {"at the very start", kAngle, {}, 0, 0, 0, 0, 0, 0},
      {"a vertex belongs to the segment that starts there", kAngle, {}, 20, 0, 1, 0, 20, 0},
      {"the far end belongs to none", kAngle, {}, 20, 20, kNone, 0, 0, 0},
      {"in a gap", kAngle, kBroken, 6, 0.1, kNone, 0, 0, 0},
      {"at the gap's start", kAngle, kBroken, 4, 0, kNone, 0, 0, 0},
      {"at the gap's end", kAngle, kBroken, 8, 0, 0, 0, 8, 0},
      {"nothing drawn on the segment", kAngle, {0}, 5, 0, kNone, 0, 0, 0},
      {"nearer to the start than a positive offset", {{{0, 0, 0}, {20, 0, 0}}, {3}}, {}, 2, 3, kNone, 0, 0, 0},
      {"as far as the offset", {{{0, 0, 0}, {20, 0, 0}}, {3}}, {}, 3, 3, 0, 0, 3, 3},
      {"first in order, not nearest", {{{0, 0, 0}, {20, 0, 0}}, {0, -0.4}}, {}, 5, -0.4, 0, 0, 5, 0},
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

TEST(Mapping, IsNotMisledByTheRoundingOfAnUprightLine) {
  for (int i = 1; i <= 100; ++i) {
    const auto mline = makeMline({{{i / 7.0, 0, 0}, {i / 7.0, 5 + i / 3.0, 0}}, {1, -1}});
    CMlineEdit engine;
    pick(engine, engine.segFirst, *mline, 1, 0, 1, 4);
    double& end = engine.segFirst.ptList[0][1][0];
    end = std::nextafter(end, 0);
    EXPECT_TRUE(engine.mappingToSpecifyMongline(&engine.segFirst, 0));
    EXPECT_NEAR(engine.segFirst.origPoint[1], 4, 1e-9) << i;
  }
}

TEST(Remapping, FindsTheSegmentAgainFromThePoint) {
  struct Row {
    const MlineSketch* sketch;
    double x, y;
    int segment;  // 9: as it was
  };
  // Within the tolerance of a line, beyond it, beyond its ends; on the closing segment only exactly at the tolerance.
  for (const Row& row :
       {Row{&kAngle, 19.5, 7, 1}, {&kAngle, 19.4, 7, 9}, {&kAngle, 99, 0, 0}, {&kSquare, 0, 5, 9}, {&kSquare, 0.5, 5, 3}}) {
    const auto mline = makeMline(*row.sketch);
    CMlineEdit engine;
    CMlineSegment& seg = engine.segFirst;
    seg.mline = mline.get();
    engine.spaceBetween = 0.5;
    seg.origPoint[0] = row.x;
    seg.origPoint[1] = row.y;
    seg.origSegment = 9;
    engine.correctMapping(&seg);
    EXPECT_EQ(seg.origSegment, row.segment) << row.x << ',' << row.y;
  }
}

}  // namespace

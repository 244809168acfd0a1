#include "draw/mline_shape.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace torva::draw {
namespace {

using Lists = std::vector<std::vector<double>>;
using Points = std::vector<KdGePoint3d>;

db::MlineVertex vertex(const KdGePoint3d& position, const KdGeVector3d& axis, const KdGeVector3d& miter,
                       const Lists& lists) {
  std::vector<KdMLSegment> elements;
  for (const auto& list : lists) elements.push_back({{}, list});
  return {position, axis, miter, elements};
}

/// A multiline along the x axis with vertices 10 apart.
db::MlineData straight(const std::vector<Lists>& listsOfVertices) {
  db::MlineData mline;
  for (std::size_t i = 0; i < listsOfVertices.size(); ++i) {
    mline.vertices.push_back(vertex({10.0 * static_cast<double>(i), 0, 0}, {1, 0, 0}, {0, 1, 0}, listsOfVertices[i]));
  }
  return mline;
}

/// A square of side 10 whose one element lies 1 inside.
db::MlineData square(const std::vector<std::vector<double>>& lists) {
  const double r = std::sqrt(0.5), d = std::sqrt(2.0);
  db::MlineData mline;
  mline.isClosed = true;
  const KdGePoint3d corners[] = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
  const KdGeVector3d axes[] = {{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
  const KdGeVector3d miters[] = {{r, r, 0}, {-r, r, 0}, {-r, -r, 0}, {r, -r, 0}};
  for (std::size_t i = 0; i < 4; ++i) {
    std::vector<double> list = lists[i];
    if (!list.empty()) list[0] = d;
    mline.vertices.push_back(vertex(corners[i], axes[i], miters[i], {list}));
  }
  return mline;
}

/// Appearances are the elements' indices; fill 100, elements beyond the style 101.
DisplayList drawn(const db::MlineData& mline, const db::MlineStyleData& style, std::size_t looks = 8) {
  MlineAppearances appearances{{}, 100, 101};
  for (std::uint32_t i = 0; i < looks; ++i) appearances.elements.push_back(i);
  DisplayList list;
  Sketch sketch(list, {});
  drawMline(mline, style, appearances, sketch);
  return list;
}

template <class Shape>
std::vector<std::pair<Shape, std::uint32_t>> shapesOf(const DisplayList& list) {
  std::vector<std::pair<Shape, std::uint32_t>> shapes;
  for (const Primitive& primitive : list.primitives) {
    if (const auto* shape = std::get_if<Shape>(&primitive.shape)) shapes.emplace_back(*shape, primitive.appearance);
  }
  return shapes;
}

void expectPoints(const Points& actual, const Points& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_LE(actual[i].distanceTo(expected[i]), 1e-12) << "point " << i;
}

db::MlineStyleData styleWith(int flags) {
  db::MlineStyleData style;
  style.flags = flags;
  return style;
}

TEST(MlineElements, FollowTheirLists) {
  struct Case {
    const char* name;
    db::MlineData mline;
    std::vector<Points> lines;
  };
  const std::vector<Case> cases = {
      {"whole", straight({{{2, 0}}, {{2, 0}}}), {{{0, 2, 0}, {10, 2, 0}}}},
      {"one gap", straight({{{2, 0, 3, 4}}, {{2, 0}}}), {{{0, 2, 0}, {3, 2, 0}}, {{4, 2, 0}, {10, 2, 0}}}},
      {"odd number ends at the last value", straight({{{2, 0, 3}}, {{2, 0}}}), {{{0, 2, 0}, {3, 2, 0}}}},
      {"starts late", straight({{{2, 7.5}}, {{2, 0}}}), {{{7.5, 2, 0}, {10, 2, 0}}}},
      {"starts before the vertex", straight({{{2, -2}}, {{2, 0}}}), {{{-2, 2, 0}, {10, 2, 0}}}},
      {"gap over a vertex", straight({{{2, 0, 8}}, {{2, 1}}, {{2, 0}}}), {{{0, 2, 0}, {8, 2, 0}}, {{11, 2, 0}, {20, 2, 0}}}},
      {"runs through a vertex", straight({{{2, 0}}, {{2, 0}}, {{2, 0}}}), {{{0, 2, 0}, {10, 2, 0}, {20, 2, 0}}}},
      {"segment without line between two with one",
       straight({{{2, 0}}, {{2}}, {{2, 0}}, {{2, 0}}}),
       {{{0, 2, 0}, {10, 2, 0}}, {{20, 2, 0}, {30, 2, 0}}}},
      {"empty list", straight({{{}}, {{2, 0}}}), {}},
      {"element missing at the next vertex", straight({{{2, 0}}, {}}), {}},
      {"element missing at the next vertex, cut before it", straight({{{2, 0, 4}}, {}}), {{{0, 2, 0}, {4, 2, 0}}}},
      {"the last vertex of an open one draws nothing", straight({{{2, 0, 4}}}), {}},
      {"no vertex", straight({}), {}},
      {"closed with a gap runs on to the first vertex",
       square({{0, 0}, {0, 0}, {0, 0}, {0, 0, 3, 5}}),
       {{{1, 1, 0}, {9, 1, 0}, {9, 9, 0}, {1, 9, 0}, {1, 6, 0}}, {{1, 4, 0}, {1, 1, 0}}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto lines = shapesOf<Polyline>(drawn(c.mline, {}));
    ASSERT_EQ(lines.size(), c.lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      EXPECT_FALSE(lines[i].first.isClosed);
      expectPoints(lines[i].first.points, c.lines[i]);
    }
  }
}

TEST(MlineElements, OfAWholeClosedMultilineFormARing) {
  const auto lines = shapesOf<Polyline>(drawn(square({{0, 0}, {0, 0}, {0, 0}, {0, 0}}), {}));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(lines[0].first.isClosed);
  expectPoints(lines[0].first.points, {{1, 1, 0}, {9, 1, 0}, {9, 9, 0}, {1, 9, 0}});
}

TEST(MlineElements, BeyondTheStyleAreDrawnInTheEntitysLook) {
  const auto lines = shapesOf<Polyline>(drawn(straight({{{1, 0}, {0, 0}, {-1, 0}}, {{1, 0}, {0, 0}, {-1, 0}}}), {}, 2));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[1].second, 1u);
  EXPECT_EQ(lines[2].second, 101u);
}

TEST(MlineCaps, SplitALineBetweenTheOutermostElements) {
  const auto mline = straight({{{1, 0}, {-1, 0}}, {{1, 0}, {-1, 0}}});
  const auto lines = shapesOf<Polyline>(drawn(mline, styleWith(db::kStyleEndSquareCap)));
  ASSERT_EQ(lines.size(), 4u);
  expectPoints(lines[0].first.points, {{10, 1, 0}, {10, 0, 0}});
  expectPoints(lines[1].first.points, {{10, 0, 0}, {10, -1, 0}});
  EXPECT_EQ(lines[0].second, 0u);
  EXPECT_EQ(lines[1].second, 1u);
}

TEST(MlineCaps, AreCountedByStyleFlagsAndSuppression) {
  constexpr int kAll = db::kStyleStartSquareCap | db::kStyleStartInnerArcs | db::kStyleStartRoundCap |
                       db::kStyleEndSquareCap | db::kStyleEndInnerArcs | db::kStyleEndRoundCap;
  struct Case {
    const char* name;
    std::vector<double> offsets;
    int flags;
    bool noStart, noEnd, isClosed;
    std::size_t arcs;  // two for each: the colors differ
  };
  const Case cases[] = {
      {"two elements have no inner arc", {1, -1}, kAll, false, false, false, 4},
      {"four have one", {2, 1, -1, -2}, kAll, false, false, false, 8},
      {"the middle one of five stays without", {2, 1, 0, -1, -2}, kAll, false, false, false, 8},
      {"six have two", {3, 2, 1, -1, -2, -3}, kAll, false, false, false, 12},
      {"start suppressed", {1, -1}, kAll, true, false, false, 2},
      {"end suppressed", {2, 1, -1, -2}, kAll, false, true, false, 4},
      {"closed ones have no caps", {1, -1}, kAll, false, false, true, 0},
      {"start outer arc alone", {2, 1, -1, -2}, db::kStyleStartRoundCap, false, false, false, 2},
      {"one element has no cap", {1}, kAll, false, false, false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Lists lists;
    for (const double offset : c.offsets) lists.push_back({offset, 0});
    db::MlineData mline = straight({lists, lists});
    mline.suppressesStartCaps = c.noStart;
    mline.suppressesEndCaps = c.noEnd;
    mline.isClosed = c.isClosed;
    EXPECT_EQ(shapesOf<Arc>(drawn(mline, styleWith(c.flags))).size(), c.arcs);
  }
}

TEST(MlineCaps, BulgeAwayFromTheMultilineAlsoWhenTheElementsLieMirrored) {
  for (const double side : {1.0, -1.0}) {
    const auto mline = straight({{{side, 0}, {-side, 0}}, {{side, 0}, {-side, 0}}});
    const auto arcs = shapesOf<Arc>(drawn(mline, styleWith(db::kStyleStartRoundCap | db::kStyleEndRoundCap)));
    ASSERT_EQ(arcs.size(), 4u);
    // Each element's quarter ends or begins on the axis, one unit outside.
    EXPECT_LE(arcs[0].first.at(std::numbers::pi / 2).distanceTo({-1, 0, 0}), 1e-12);
    EXPECT_LE(arcs[2].first.at(std::numbers::pi / 2).distanceTo({11, 0, 0}), 1e-12);
    EXPECT_LE(arcs[0].first.at(0).distanceTo({0, 1, 0}), 1e-12);
    EXPECT_EQ(arcs[0].second, side > 0 ? 0u : 1u);
  }
}

TEST(MlineJoints, StandAtInnerVerticesOnly) {
  const Lists lists = {{1, 0}, {-1, 0}};
  const auto open = shapesOf<Polyline>(drawn(straight({lists, lists, lists}), styleWith(db::kStyleShowMiters)));
  ASSERT_EQ(open.size(), 4u);  // one joint of two halves, two elements
  expectPoints(open[0].first.points, {{10, 1, 0}, {10, 0, 0}});
}

TEST(MlineFill, CoversTheSegmentsAndFollowsItsBreaks) {
  db::MlineData mline = straight({{{1, 0}, {-1, 0}}, {{1, 0}, {-1, 0}}});
  const auto whole = shapesOf<Fill>(drawn(mline, styleWith(db::kStyleFilled)));
  ASSERT_EQ(whole.size(), 1u);
  expectPoints(whole[0].first.loops[0], {{0, 1, 0}, {10, 1, 0}, {10, -1, 0}, {0, -1, 0}});
  EXPECT_EQ(whole[0].second, 100u);

  mline.vertices[0].elements = std::vector<KdMLSegment>{{{3, 5}, {1, 0}}, {{3, 6}, {-1, 0}}};
  const auto broken = shapesOf<Fill>(drawn(mline, styleWith(db::kStyleFilled)));
  ASSERT_EQ(broken.size(), 2u);
  expectPoints(broken[0].first.loops[0], {{0, 1, 0}, {3, 1, 0}, {3, -1, 0}, {0, -1, 0}});
  expectPoints(broken[1].first.loops[0], {{5, 1, 0}, {10, 1, 0}, {10, -1, 0}, {6, -1, 0}});

  mline.vertices[0].elements = std::vector<KdMLSegment>{{{3, 5}, {1, 0}}, {{3}, {-1, 0}}};
  EXPECT_EQ(shapesOf<Fill>(drawn(mline, styleWith(db::kStyleFilled))).size(), 1u);
}

TEST(MlineExtents, HoldWhatIsDrawn) {
  const auto mline = straight({{{1, -3, 4, 8}, {-1, 0}}, {{1, 0}, {-1, 0}}});
  const auto style = styleWith(db::kStyleEndRoundCap);
  const geom::Box3 box = mlineExtents(mline, style);
  EXPECT_LE(box.min.distanceTo({-3, -1, -1}), 1.0);
  EXPECT_DOUBLE_EQ(box.min.x, -3);
  EXPECT_DOUBLE_EQ(box.max.x, 11);
}

}  // namespace
}  // namespace torva::draw

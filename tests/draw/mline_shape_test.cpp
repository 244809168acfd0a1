#include "draw/mline_shape.h"

#include <cmath>
#include <gmock/gmock.h>
#include <iomanip>
#include <numbers>
#include <sstream>

namespace torva::draw {
namespace {

using testing::ElementsAre;
using Lists = std::vector<std::vector<double>>;

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
DisplayList drawn(const db::MlineData& mline, const db::MlineStyleData& style) {
  const MlineAppearances appearances{{0, 1, 2, 3, 4, 5}, 100, 101};
  DisplayList list;
  Sketch sketch(list, {});
  drawMline(mline, style, appearances, sketch);
  return list;
}

/// "look: x,y x,y ..."
std::string textOf(const Primitive& primitive, const std::vector<KdGePoint3d>& points) {
  std::ostringstream text;
  text << primitive.appearance << ':' << std::setprecision(13);
  for (const KdGePoint3d& point : points) text << ' ' << point.x + 0.0 << ',' << point.y + 0.0;
  return text.str();
}

/// The lines (each with its look, "closed" and its points), in drawing order.
std::vector<std::string> linesOf(const DisplayList& list) {
  std::vector<std::string> lines;
  for (const Primitive& primitive : list.primitives) {
    const auto* polyline = std::get_if<Polyline>(&primitive.shape);
    if (polyline) lines.push_back(textOf(primitive, polyline->points) + (polyline->isClosed ? " closed" : ""));
  }
  return lines;
}

std::vector<std::string> fillsOf(const DisplayList& list) {
  std::vector<std::string> fills;
  for (const Primitive& primitive : list.primitives) {
    if (const auto* fill = std::get_if<Fill>(&primitive.shape)) fills.push_back(textOf(primitive, fill->loops.at(0)));
  }
  return fills;
}

std::vector<std::pair<Arc, std::uint32_t>> arcsOf(const DisplayList& list) {
  std::vector<std::pair<Arc, std::uint32_t>> arcs;
  for (const Primitive& primitive : list.primitives) {
    if (const auto* arc = std::get_if<Arc>(&primitive.shape)) arcs.emplace_back(*arc, primitive.appearance);
  }
  return arcs;
}

db::MlineStyleData styleWith(int flags) {
  db::MlineStyleData style;
  style.flags = flags;
  return style;
}

TEST(MlineElements, FollowTheirLists) {
  const struct {
    const char* name;
    db::MlineData mline;
    std::vector<std::string> lines;
  } cases[] = {
      {"whole", straight({{{2, 0}}, {{2, 0}}}), {"0: 0,2 10,2"}},
      {"one gap", straight({{{2, 0, 3, 4}}, {{2, 0}}}), {"0: 0,2 3,2", "0: 4,2 10,2"}},
      {"odd number ends at the last value", straight({{{2, 0, 3}}, {{2, 0}}}), {"0: 0,2 3,2"}},
      {"starts before the vertex", straight({{{2, -2}}, {{2, 0}}}), {"0: -2,2 10,2"}},
      {"gap over a vertex", straight({{{2, 0, 8}}, {{2, 1}}, {{2, 0}}}), {"0: 0,2 8,2", "0: 11,2 20,2"}},
      {"segment without line", straight({{{2, 0}}, {{2}}, {{2, 0}}, {{2, 0}}}), {"0: 0,2 10,2", "0: 20,2 30,2"}},
      {"element missing at the next vertex, cut before it", straight({{{2, 0, 4}}, {}}), {"0: 0,2 4,2"}},
      {"closed, starting late", square({{0, 3}, {0, 0}, {0, 0}, {0, 0}}), {"0: 4,1 9,1 9,9 1,9 1,1"}},
      {"closed with a gap runs on to the first vertex",
       square({{0, 0}, {0, 0}, {0, 0}, {0, 0, 3, 5}}),
       {"0: 1,1 9,1 9,9 1,9 1,6", "0: 1,4 1,1"}},
  };
  for (const auto& c : cases) EXPECT_EQ(linesOf(drawn(c.mline, {})), c.lines) << c.name;
}

TEST(MlineCapsAndJoints, SplitALineBetweenTheOutermostElements) {
  const Lists lists = {{1, 0}, {-1, 0}};
  EXPECT_THAT(linesOf(drawn(straight({lists, lists}), styleWith(db::kStyleEndSquareCap))),
              ElementsAre("0: 10,1 10,0", "1: 10,0 10,-1", "0: 0,1 10,1", "1: 0,-1 10,-1"));
  EXPECT_THAT(linesOf(drawn(straight({lists, lists, lists}), styleWith(db::kStyleShowMiters))),
              ElementsAre("0: 10,1 10,0", "1: 10,0 10,-1", "0: 0,1 10,1 20,1", "1: 0,-1 10,-1 20,-1"));
}

TEST(MlineCaps, AreCountedByStyleFlagsAndSuppression) {
  constexpr int kAll = db::kStyleStartSquareCap | db::kStyleStartInnerArcs | db::kStyleStartRoundCap |
                       db::kStyleEndSquareCap | db::kStyleEndInnerArcs | db::kStyleEndRoundCap;
  const struct {
    const char* name;
    std::vector<double> offsets;
    int flags;
    bool noStart, noEnd, isClosed;
    std::size_t arcs;  // two for each: the colors differ
  } cases[] = {
      {"two elements have no inner arc", {1, -1}, kAll, false, false, false, 4},
      {"the middle one of five stays without", {2, 1, 0, -1, -2}, kAll, false, false, false, 8},
      {"six have two", {3, 2, 1, -1, -2, -3}, kAll, false, false, false, 12},
      {"start suppressed", {1, -1}, kAll, true, false, false, 2},
      {"closed ones have no caps", {1, -1}, kAll, false, false, true, 0},
      {"start outer arc alone", {2, 1, -1, -2}, db::kStyleStartRoundCap, false, true, false, 2},
      {"one element has no cap", {1}, kAll, false, false, false, 0},
  };
  for (const auto& c : cases) {
    Lists lists;
    for (const double offset : c.offsets) lists.push_back({offset, 0});
    db::MlineData mline = straight({lists, lists});
    mline.suppressesStartCaps = c.noStart;
    mline.suppressesEndCaps = c.noEnd;
    mline.isClosed = c.isClosed;
    EXPECT_EQ(arcsOf(drawn(mline, styleWith(c.flags))).size(), c.arcs) << c.name;
  }
}

TEST(MlineCaps, BulgeAwayFromTheMultilineAlsoWhenTheElementsLieMirrored) {
  for (const double side : {1.0, -1.0}) {
    const auto mline = straight({{{side, 0}, {-side, 0}}, {{side, 0}, {-side, 0}}});
    const auto arcs = arcsOf(drawn(mline, styleWith(db::kStyleStartRoundCap | db::kStyleEndRoundCap)));
    ASSERT_EQ(arcs.size(), 4u);
    // Each element's quarter ends or begins on the axis, one unit outside.
    EXPECT_LE(arcs[0].first.at(std::numbers::pi / 2).distanceTo({-1, 0, 0}), 1e-12);
    EXPECT_LE(arcs[2].first.at(std::numbers::pi / 2).distanceTo({11, 0, 0}), 1e-12);
    EXPECT_LE(arcs[0].first.at(0).distanceTo({0, 1, 0}), 1e-12);
    EXPECT_EQ(arcs[0].second, side > 0 ? 0u : 1u);
  }
}

TEST(MlineFill, CoversTheSegmentsAndFollowsItsBreaks) {
  db::MlineData mline = straight({{{1, 0}, {-1, 0}}, {{1, 0}, {-1, 0}}});
  const auto fills = [&](const std::vector<KdMLSegment>& elements) {
    mline.vertices[0].elements = elements;
    return fillsOf(drawn(mline, styleWith(db::kStyleFilled)));
  };
  EXPECT_THAT(fills({{{}, {1, 0}}, {{}, {-1, 0}}}), ElementsAre("100: 0,1 10,1 10,-1 0,-1"));
  EXPECT_THAT(fills({{{3, 5}, {1, 0}}, {{3, 6}, {-1, 0}}}),
              ElementsAre("100: 0,1 3,1 3,-1 0,-1", "100: 5,1 10,1 10,-1 6,-1"));
  EXPECT_EQ(fills({{{3, 5}, {1, 0}}, {{3}, {-1, 0}}}).size(), 1u) << "breaks that do not match";
}

}  // namespace
}  // namespace torva::draw

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "module/mledit/random_drawing.h"

namespace {

// One of two multilines that are joined at the crossing of their segments.
struct Leg {
  Leg(Wall& joined, int metSegment, const Spot& pick, const KdGePoint3d& firstCrossing) : wall(joined), segment(metSegment) {
    // It keeps the side of the crossing on which it was picked, seen along its first element.
    const RandomMline& sketch = wall.sketch;
    keepsStart = sketch.along(0, segment, sketch.pointOf(pick)) < sketch.along(0, segment, firstCrossing);
  }

  KdGePoint3d keptCorner(int element) const { return wall.sketch.corner(element, keepsStart ? segment : segment + 1); }

  void end(int element, const KdGePoint3d& point) {
    for (int s = 0; s < wall.sketch.segments(); ++s) {
      if (keepsStart ? s >= segment : s <= segment) wall.ink.lines.erase({element, s});
    }
    const double along = wall.sketch.along(element, segment, point);
    wall.ink.add(element, segment, keepsStart ? 0 : along, keepsStart ? along : wall.sketch.length(element, segment));
  }

  void check(RandomDrawing& drawing) const {
    RC_ASSERT(drawing.inkOf(wall.handle, wall.sketch) == wall.ink);
    const torva::db::MlineData mline = drawing.mline(wall.handle);
    RC_ASSERT(static_cast<int>(mline.vertices.size()) == (keepsStart ? segment + 2 : wall.sketch.vertices() - segment));
    RC_ASSERT(mline.suppressesStartCaps == !keepsStart);
    RC_ASSERT(mline.suppressesEndCaps == keepsStart);
  }

  Wall& wall;
  int segment;
  bool keepsStart;
};

// A single segment that has to be extended to be joined, on either side.
RandomMline shortened(RandomMline mline) {
  mline.path.resize(2);
  return opened(mline);
}

rc::Gen<double> sharesOutside() {
  return rc::gen::element(1.4, -0.4);
}

CrossingPair teed(RandomDrawing& drawing) {
  const RandomMline stem = *mlines(drawing.frame()), bar = *mlines(drawing.frame());
  if (*rc::gen::arbitrary<bool>()) return {drawing, opened(stem), bar};
  return {drawing, shortened(stem), shortened(bar), *sharesOutside()};
}

// Whether the line of another segment passes the pick, carried onto element 0: the tees open the bar on the first segment
// with such a line, our own decision.
bool isInLineWithAnother(const RandomMline& bar, const Spot& pick, double unit) {
  const KdGePoint3d point = bar.pointOf(bar.carried(pick, 0));
  for (int s = 0; s < bar.segments(); ++s) {
    const PlaneLine line = bar.line(0, s);
    if (s != pick.segment && std::abs(leftOf(line.direction).dotProduct(point - line.point)) <= unit) return true;
  }
  return false;
}

RC_GTEST_PROP(JointProperties, EveryLineOfAStemEndsOnOneOfTheBar, ()) {
  RandomDrawing drawing(*frames({kUp, kDown}));
  CrossingPair pair = teed(drawing);
  const std::string tool = *rc::gen::element("CT", "OT", "MT");
  RC_PRE(tool == "CT" || !isInLineWithAnother(pair.second.sketch, pair.onSecond, drawing.frame().unit()));
  Leg stem(pair.first, pair.firstSegment, pair.onFirst, pair.crossingOf(0, 0));
  const int m = pair.first.sketch.elements(), n = pair.second.sketch.elements();
  const auto near = [&](int element) {
    const KdGePoint3d from = stem.keptCorner(element);
    const double first = (pair.crossingOf(element, 0) - from).length(),
                 last = (pair.crossingOf(element, n - 1) - from).length();
    return last < first ? n - 1 : 0;
  };
  const auto line = [n, isFirst = near(0) == 0](int depth) { return isFirst ? depth : n - 1 - depth; };
  const int merged = std::min(m / 2, n - 2) < 1 ? n - 1 : std::min(m / 2, n - 2);
  const int deepest = tool == "CT" ? 0 : tool == "OT" ? 1 : merged;
  for (int i = 0; i < m; ++i) {
    const int depth = tool == "MT" ? std::min({deepest, i, m - 1 - i}) : 0;
    stem.end(i, pair.crossingOf(i, tool == "CT" ? near(i) : line(depth)));
  }
  for (int c = 0; c < deepest && c < m; ++c) pair.openSecond(line(c), c, m - 1 - c);
  drawing.mledit(tool, pair.picks());
  stem.check(drawing);
  RC_ASSERT(drawing.inkOf(pair.second.handle, pair.second.sketch) == pair.second.ink);
}

// The element of the other multiline that an element meets: the outer ones meet the outer ones, the inner ones an inner one
// where there is any.
int metBy(int element, int own, int other, bool isSameOrder, bool countsFromFirst) {
  if (element == 0) return isSameOrder ? 0 : other - 1;
  if (element == own - 1) return isSameOrder ? other - 1 : 0;
  if (other <= 2) return countsFromFirst ? 0 : other - 1;
  if (own < other) return countsFromFirst ? element : other - 1 - element;
  return isSameOrder ? std::min(element, other - 2) : std::max(other - 1 - element, 1);
}

CrossingPair cornered(RandomDrawing& drawing) {
  const RandomMline a = *mlines(drawing.frame());
  RandomMline b = *mlines(drawing.frame());
  if (*rc::gen::arbitrary<bool>()) b.offsets = a.offsets, b.scale = a.scale;
  if (*rc::gen::arbitrary<bool>()) return {drawing, opened(a), opened(b)};
  return {drawing, shortened(a), shortened(b), *sharesOutside(), *sharesOutside()};
}

RC_GTEST_PROP(JointProperties, ACornerIsMitredOnEveryElement, ()) {
  RandomDrawing drawing(*frames({kUp, kDown}));
  CrossingPair pair = cornered(drawing);
  Leg first(pair.first, pair.firstSegment, pair.onFirst, pair.crossingOf(0, 0));
  Leg second(pair.second, pair.secondSegment, pair.onSecond, pair.crossingOf(0, 0));
  const bool isSameOrder = first.keepsStart != second.keepsStart;
  const int m = pair.first.sketch.elements(), n = pair.second.sketch.elements();
  for (int i = 0; i < m; ++i) first.end(i, pair.crossingOf(i, metBy(i, m, n, isSameOrder, first.keepsStart)));
  for (int j = 0; j < n; ++j) second.end(j, pair.crossingOf(metBy(j, n, m, isSameOrder, second.keepsStart), j));
  drawing.mledit("CJ", pair.picks());
  first.check(drawing);
  second.check(drawing);
}

}  // namespace

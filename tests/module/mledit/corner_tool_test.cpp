#include <algorithm>
#include <gtest/gtest.h>
#include <numbers>

#include "module/mledit/bars.h"

namespace {

using torva::dxf::Handle;
using Points = std::vector<KdGePoint3d>;

// A multiline across the center, bent at both ends of its segment 1.
struct Leg {
  int elements;
  double angle;
  bool isStartKept;
  KdGePoint3d center = {};
  Handle handle = 0;

  double keptAngle() const { return angle + (isStartKept ? std::numbers::pi : 0); }
};

class CornerTool : public Bars {
 protected:
  CornerTool() { addTool(L"CJ", &CMlineEdit::cmd_mledit_CornerJoint); }

  std::string addAndPick(Leg& leg) {
    const auto point = [&](double along, double left) { return at(leg.center, leg.angle, along, left); };
    leg.handle = m_drawing.addMline(
        {{point(-120, 40), point(-kHalfLength, 0), point(kHalfLength, 0), point(120, 40)}, distances(leg.elements)});
    return pickBar(leg.handle, leg.elements, leg.angle, leg.center, leg.isStartKept ? -50 : 50);
  }

  // Where the drawn stretches of an element start and stop, in turn.
  Points drawn(Handle handle, int element) {
    Points points;
    m_drawing.edit(handle, [&](KdDbMline& mline) {
      for (int v = 0; v + 1 < mline.numVertices(); ++v) {
        const std::vector<double> list = listOf(mline, v, element);
        const KdGePoint3d start = mline.vertexAt(v) + mline.miterAt(v) * list[0];
        for (std::size_t i = 1; i < list.size(); ++i) points.push_back(start + mline.axisAt(v) * list[i]);
        if (list.size() % 2 == 1) continue;
        points.push_back(mline.vertexAt(v + 1) + mline.miterAt(v + 1) * listOf(mline, v + 1, element)[0]);
      }
    });
    return points;
  }
  void expectDrawn(Handle handle, int element, const Points& expected) {
    const Points points = drawn(handle, element);
    ASSERT_EQ(points.size(), expected.size()) << element;
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_NEAR((points[i] - expected[i]).length(), 0, 1e-9) << element << ": " << i;
    }
  }
  int flagsOf(Handle handle) {
    int flags = 0;
    m_drawing.edit(handle, [&](KdDbMline& mline) { GetFlag(&mline, &flags); });
    return flags;
  }

  // Where the elements of a leg end in the corner. Each is drawn whole on the two segments that are left.
  Points cornerEnds(const Leg& leg) {
    EXPECT_EQ(flagsOf(leg.handle), 1 | (leg.isStartKept ? kMlineEndCapsSuppressed : kMlineStartCapsSuppressed));
    Points ends;
    for (int e = 0; e < leg.elements; ++e) {
      const Points points = drawn(leg.handle, e);
      if (points.size() == 4u) ends.push_back(leg.isStartKept ? points.back() : points.front());
    }
    EXPECT_EQ(ends.size(), static_cast<std::size_t>(leg.elements));
    return ends;
  }
  // The ends lie on the elements' own lines and not beyond the other multiline; with as many elements there, on the mitre,
  // which is then the vertex's miter, so that a fill ends there too.
  void expectEnds(const Points& ends, const Leg& own, const Leg& other, double tolerance) {
    const KdGePoint3d p = at({}, own.keptAngle(), 1), q = at({}, other.keptAngle(), 1);
    const double mitre = std::atan2(p.y + q.y, p.x + q.x);
    for (std::size_t e = 0; e < ends.size(); ++e) {
      EXPECT_NEAR(leftOf(ends[e], own.center, own.angle), distances(own.elements)[e], tolerance);
      EXPECT_LE(std::abs(leftOf(ends[e], own.center, other.angle)), (other.elements - 1) / 2.0 + tolerance);
      if (own.elements == other.elements) {
        EXPECT_NEAR(leftOf(ends[e], own.center, mitre), 0, tolerance);
      }
    }
    if (own.elements != other.elements || own.elements == 1) return;
    m_drawing.edit(own.handle, [&](KdDbMline& mline) {
      const KdGeVector3d miter = mline.miterAt(own.isStartKept ? mline.numVertices() - 1 : 0);
      EXPECT_NEAR(leftOf({miter.x, miter.y, 0}, {}, mitre), 0, tolerance);
    });
  }
};

TEST_F(CornerTool, ElementsAreMitredOnTheSidesThatWerePicked) {
  forAllBars([&](int m, int n, double angle, const KdGePoint3d& center, double tolerance) {
    for (int sides = 0; sides < 4; ++sides) {
      SCOPED_TRACE(::testing::Message() << "sides " << sides);
      Leg first{m, 0, sides % 2 == 0, center}, second{n, angle, sides / 2 == 0, center};
      const std::string picks = addAndPick(first) + addAndPick(second);
      run("CJ", picks);
      Points ends = cornerEnds(first), otherEnds = cornerEnds(second);
      expectEnds(ends, first, second, tolerance);
      expectEnds(otherEnds, second, first, tolerance);
      if (HasFailure() || m == 1 || n == 1) continue;
      if (first.isStartKept == second.isStartKept) std::reverse(ends.begin(), ends.end());
      EXPECT_NEAR((ends.front() - otherEnds.front()).length(), 0, tolerance);
      EXPECT_NEAR((ends.back() - otherEnds.back()).length(), 0, tolerance);
    }
  });
}

TEST_F(CornerTool, GapsStayAndOneAtTheCornerIsCutOff) {
  const Handle first = m_drawing.addMline({{{0, 0, 0}, {40, 0, 0}}, {1, -1}});
  const Handle second = m_drawing.addMline({{{30, 20, 0}, {30, -20, 0}}, {1, -1}});
  m_drawing.edit(first, [](KdDbMline& mline) {
    setList(mline, 0, 0, {1, 0, 5, 8});
    setList(mline, 0, 1, {-1, 2, 28, 33});
  });
  m_drawing.edit(second, [](KdDbMline& mline) { setList(mline, 0, 0, {1, 0, 10, 23, 30}); });
  run("CJ", pick(first, 20, 1) + pick(second, 29, -18));
  expectDrawn(first, 0, {{0, 1, 0}, {5, 1, 0}, {8, 1, 0}, {31, 1, 0}});
  expectDrawn(first, 1, {{2, -1, 0}, {28, -1, 0}});
  expectDrawn(second, 0, {{31, -3, 0}, {31, -10, 0}});
  expectDrawn(second, 1, {{29, -1, 0}, {29, -20, 0}});
}

TEST_F(CornerTool, ElementsOnOneLineEndAtTheOthersToo) {
  const Handle first = m_drawing.addMline({{{0, 0, 0}, {40, 0, 0}}, {0, 0}});
  const Handle second = m_drawing.addMline({{{30, 20, 0}, {30, -20, 0}}, {1, -1}});
  run("CJ", pick(first, 20, 0) + pick(second, 31, -18));
  expectDrawn(first, 0, {{0, 0, 0}, {31, 0, 0}});
  expectDrawn(first, 1, {{0, 0, 0}, {29, 0, 0}});
  m_drawing.edit(first, [](KdDbMline& mline) { EXPECT_NEAR(mline.miterAt(1).x, 0, 1e-9) << "across the line"; });
  expectDrawn(second, 0, {{31, 0, 0}, {31, -20, 0}});
  expectDrawn(second, 1, {{29, 0, 0}, {29, -20, 0}});
}

TEST_F(CornerTool, OneMultilineIsClosedWhereverItsEndsCanReachTheCorner) {
  for (const double x : {20, -5, -70}) {  // falls short, runs over, and by more than half of the segment
    for (const double y : {20, -5, -70}) {
      SCOPED_TRACE(::testing::Message() << x << ", " << y);
      const MlineSketch sketch{{{x, 0, 0}, {60, 0, 0}, {60, 50, 0}, {0, 50, 0}, {0, y, 0}}, {2, 0, -3}};
      const Handle forward = m_drawing.addMline(sketch), backward = m_drawing.addMline(sketch);
      run("CJ", pick(forward, 40, 2) + pick(forward, 2, 30) + pick(backward, 2, 30) + pick(backward, 40, 2));
      for (const Handle handle : {forward, backward}) {
        EXPECT_EQ(flagsOf(handle), kMlineHasVertices | kMlineStartCapsSuppressed | kMlineEndCapsSuppressed);
        for (const auto& [e, in] : {std::pair(0, 2.0), {1, 0.0}, {2, -3.0}}) {
          const KdGePoint3d a{60 - in, in, 0}, b{60 - in, 50 - in, 0}, c{in, 50 - in, 0};
          expectDrawn(handle, e, {{in, in, 0}, a, a, b, b, c, c, {in, in, 0}});
        }
      }
    }
  }
}

TEST_F(CornerTool, RefusalsChangeNothingAndUndoBringsBothBack) {
  const auto add = [&](const MlineSketch& sketch) { return m_drawing.addMline(sketch); };
  const Handle level = add({{{0, 0, 0}, {40, 0, 0}, {40, 40, 0}, {0, 40, 0}, {0, 20, 0}}, {1, -1}});
  const Handle beside = add({{{0, 10, 0}, {35, 10, 0}}, {1, -1}});
  const Handle above = add({{{20, -20, 5}, {20, 20, 5}}, {1, -1}});
  const Handle opposite = add({{{0, 0, 0}, {-20, 0, 0}}, {1, -1}});
  const Handle ring = add({{{0, 80, 0}, {40, 80, 0}, {40, 99, 0}}, {1, -1}, true});
  const Handle across = add({{{20, -20, 0}, {20, 90, 0}}, {1, -1}});
  // The corner lies behind the far end of the first segment, and behind that of one of its elements.
  const Handle zed = add({{{0, -50, 0}, {20, -50, 0}, {22, -30, 0}, {40, -40, 0}}, {1, -1}});
  const Handle narrow = add({{{-70, -200, 0}, {3, -200, 0}, {3, -150, 0}, {0, -150, 0}, {0, -270, 0}}, {2, 0}});
  const auto stored = [&] {
    std::string text;
    for (const Handle handle : {level, beside, above, opposite, ring, across, zed, narrow}) {
      text += ::testing::PrintToString(m_drawing.listsOf(handle)) + std::to_string(flagsOf(handle));
      for (const KdGePoint3d& p : drawn(handle, 1)) text += ::testing::PrintToString(std::pair(p.x, p.y));
    }
    return text;
  };
  const std::string before = stored(), onLevel = pick(level, 10, 1), onRing = pick(ring, 10, 81),
                    onAcross = pick(across, 19, 10);
  const std::pair<const char*, std::string> rows[] = {
      {"parallel", onLevel + pick(beside, 10, 11)},
      {"at another height", onLevel + pick(above, 19, 10)},
      {"end to end", onLevel + pick(opposite, -10, 1)},
      {"end to end, the other way", pick(opposite, -10, 1) + onLevel},
      {"the only segment with itself", pick(beside, 10, 11) + pick(beside, 20, 11)},
      {"neighbours", onLevel + pick(level, 39, 20)},
      {"out of reach", pick(zed, 10, -49) + pick(zed, 30, -33.3)},
      {"out of an element's reach", pick(narrow, -30, -198) + pick(narrow, 2, -220)},
      {"closed", onRing + onAcross + "^C\n"},
      {"closed second", onLevel + onRing + "^C\n"},
      {"taken back", onLevel + onAcross + "undo\n"},
  };
  for (const auto& [name, picks] : rows) {
    run("CJ", picks);
    EXPECT_EQ(stored(), before) << name;
    EXPECT_EQ(m_drawing.openCount(), 0u) << name;
  }
  run("CJ", onLevel + onRing + onAcross);
  EXPECT_NE(stored(), before) << "a closed second pick asks for the second again";
}

TEST_F(CornerTool, InnerElementsOfFiveMeetTheOtherOnesInTurn) {
  struct Row {
    int otherCount;
    std::vector<int> withStart, withEnd;  // where the ends lie when the start of both is kept, and when only the other's is
  };
  const Row rows[] = {{1, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
                      {2, {1, 0, 0, 0, 0}, {0, 1, 1, 1, 1}},
                      {3, {2, 1, 1, 1, 0}, {0, 1, 1, 1, 2}},
                      {5, {4, 3, 2, 1, 0}, {0, 1, 2, 3, 4}},
                      {7, {6, 1, 2, 3, 0}, {0, 5, 4, 3, 6}}};
  for (const Row& row : rows) {
    for (const bool isStartKept : {true, false}) {
      Leg first{5, 0, isStartKept}, second{row.otherCount, 1, true};
      const std::string picks = addAndPick(first) + addAndPick(second);
      run("CJ", picks);
      const Points ends = cornerEnds(first);
      ASSERT_EQ(ends.size(), 5u);
      for (std::size_t e = 0; e < 5; ++e) {
        const auto met = static_cast<std::size_t>((isStartKept ? row.withStart : row.withEnd)[e]);
        EXPECT_NEAR(leftOf(ends[e], {}, 1), distances(row.otherCount)[met], 1e-9) << row.otherCount << ": " << e;
      }
    }
  }
}

}  // namespace

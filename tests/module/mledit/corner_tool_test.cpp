#include "module/mledit/tool_run.h"

namespace {

using torva::dxf::Handle;
using Points = std::vector<KdGePoint3d>;

class CornerTool : public ToolRun {
 protected:
  CornerTool() { addTool(L"CJ", &CMlineEdit::cmd_mledit_CornerJoint); }

  void join(const std::string& picks) { m_drawing.run("CJ\n" + picks + "\n"); }

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
};

TEST_F(CornerTool, GapsStayAndOneAtTheCornerIsCutOff) {
  const Handle first = m_drawing.addMline({{{0, 0, 0}, {40, 0, 0}}, {1, -1}});
  const Handle second = m_drawing.addMline({{{30, 20, 0}, {30, -20, 0}}, {1, -1}});
  m_drawing.edit(first, [](KdDbMline& mline) {
    setList(mline, 0, 0, {1, 0, 5, 8});
    setList(mline, 0, 1, {-1, 2, 28, 33});
  });
  m_drawing.edit(second, [](KdDbMline& mline) { setList(mline, 0, 0, {1, 0, 10, 23, 30}); });
  join(pick(first, 20, 1) + pick(second, 29, -18));
  expectDrawn(first, 0, {{0, 1, 0}, {5, 1, 0}, {8, 1, 0}, {31, 1, 0}});
  expectDrawn(first, 1, {{2, -1, 0}, {28, -1, 0}});
  expectDrawn(second, 0, {{31, -3, 0}, {31, -10, 0}});
  expectDrawn(second, 1, {{29, -1, 0}, {29, -20, 0}});
  for (const auto& [handle, vertex] : {std::pair(first, 1), {second, 0}}) {
    m_drawing.edit(handle, [at = vertex](KdDbMline& mline) {
      EXPECT_NEAR(mline.miterAt(at).x, mline.miterAt(at).y, 1e-9) << "on the mitre, so that a fill ends there too";
    });
  }
}

TEST_F(CornerTool, ElementsOnOneLineEndAtTheOthersToo) {
  const Handle first = m_drawing.addMline({{{0, 0, 0}, {40, 0, 0}}, {0, 0}});
  const Handle second = m_drawing.addMline({{{30, 20, 0}, {30, -20, 0}}, {1, -1}});
  join(pick(first, 20, 0) + pick(second, 31, -18));
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
      join(pick(forward, 40, 2) + pick(forward, 2, 30) + pick(backward, 2, 30) + pick(backward, 40, 2));
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
    join(picks);
    EXPECT_EQ(stored(), before) << name;
    EXPECT_EQ(m_drawing.openCount(), 0u) << name;
  }
  join(onLevel + onRing + onAcross);
  EXPECT_NE(stored(), before) << "a closed second pick asks for the second again";
}

}  // namespace

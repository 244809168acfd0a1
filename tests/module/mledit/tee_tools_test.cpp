#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

#include "module/mledit/engine.h"
#include "module/mledit/tool_run.h"

namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

constexpr double kSmall = 1e-9;
const double kRoot = std::sqrt(2.0);

class TeeTools : public ToolRun {
 protected:
  TeeTools() {
    addTool(L"CT", &CMlineEdit::cmd_mledit_ClosedTree);
    addTool(L"OT", &CMlineEdit::cmd_mledit_OpenTree);
  }

  void run(const char* tool, const std::string& picks) { m_drawing.run(std::string(tool) + '\n' + picks + "\n"); }

  KdGePoint3d vertex(torva::dxf::Handle handle, int index) {
    KdGePoint3d point;
    m_drawing.edit(handle, [&](KdDbMline& mline) { point = mline.vertexAt(index); });
    return point;
  }
};

// The bar stands upright with lines at x = -1 (element 0), 0 and 1. The stem meets it on y = 0, its elements lie 3 to either
// side; beside a square bend they pass its vertex 3 to the left and the right of it.
TEST_F(TeeTools, KeepGapsAndBendsOfTheStem) {
  struct Row {
    const char* name;
    std::vector<KdGePoint3d> path;
    double pickX;
    std::vector<double> gap, left, right;  // gap and lists on the segment that meets the bar, which is on y = 0
    double normal = 1;
  };
  const KdGePoint3d a{-20, 0, 0}, b{20, 0, 0}, aboveA{-20, 40, 0}, aboveB{20, 40, 0}, on{50, 50, 0};
  const double slant = 3 * kRoot;
  const Row rows[] = {
      {"start", {on, aboveA, a, b, aboveB, on}, -9, {2, 4, 30, 32}, {slant, 0, 2, 4, 16}, {-slant, 0, 2, 4, 22}},
      {"end", {a, b, aboveB}, 9, {3, 5, 25, 27}, {3, 1, 5, 7}, {-3, 1, 5, 7}},
      {"end, from below", {on, aboveA, a, b, aboveB}, 9, {}, {3, 1}, {-3, 1}, -1},
      {"short of the bar", {aboveA, a, {-5, 0, 0}}, -9, {2, 4}, {slant, 0, 2, 4, 16}, {-slant, 0, 2, 4, 22}},
      {"ended before the bar", {a, b}, -15, {9}, {3, 0, 19}, {-3, 0, 19}},
      {"ended beyond the bar", {a, b}, -15, {30}, {3, 0, 19}, {-3, 0, 19}},
      {"on the bar's axis", {a, {0, 0, 0}}, -9, {}, {3, 0, 19}, {-3, 0, 19}},
      {"bend before the bar", {{-5, 40, 0}, {-5, 0, 0}, b}, -1.5, {}, {slant, 0, 1}, {-slant, 0, 7}},
      {"bend beyond the bar", {a, {5, 0, 0}, {5, 30, 0}}, 1.5, {}, {slant, 4}, {-slant, -2}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const auto stem = m_drawing.addMline({row.path, {3, -3}});
    const auto bar = m_drawing.addMline({{{0, -100, 0}, {0, 100, 0}}, {1, 0, -1}});
    const bool isStart = row.pickX < 0;
    const int met = static_cast<int>(std::find_if(row.path.begin(), row.path.end(), [](auto& p) { return p.y == 0; }) -
                                     row.path.begin());
    m_drawing.edit(stem, [&](KdDbMline& mline) {
      EXPECT_EQ(mline.setNormal({0, 0, row.normal}), KdStatus::ok);
      for (const int e : {0, 1}) {
        std::vector<double> list = listOf(mline, met, e);
        list.insert(list.end(), row.gap.begin(), row.gap.end());
        setList(mline, met, e, list);
      }
    });
    run("OT", pick(stem, row.pickX, row.pickX == 1.5 ? 3 : -3) + pick(bar, -1, -50));
    const auto lists = m_drawing.listsOf(stem);
    ASSERT_EQ(static_cast<int>(lists[0].size()), isStart ? met + 2 : static_cast<int>(row.path.size()) - met);
    EXPECT_LT((vertex(stem, isStart ? met + 1 : 0) - KdGePoint3d()).length(), kSmall);
    const std::size_t joined = isStart ? lists[0].size() - 2 : 0;
    EXPECT_THAT(lists[0][joined], Pointwise(DoubleNear(kSmall), row.left));
    EXPECT_THAT(lists[1][joined], Pointwise(DoubleNear(kSmall), row.right));
    const std::vector<double> opened = {isStart ? 1.0 : -1.0, 0, 97, 103};
    EXPECT_THAT(m_drawing.listsOf(bar)[isStart ? 0 : 2][0], Pointwise(DoubleNear(kSmall), opened));
  }
}

TEST_F(TeeTools, AreNotMisledByRoundingFarFromTheOrigin) {
  constexpr unsigned kSeed = 5;
  SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> part(0, 1);
  const auto direction = [](double angle) { return KdGeVector3d{std::cos(angle), std::sin(angle), 0}; };
  const auto left = [](const KdGeVector3d& v) { return KdGeVector3d{-v.y, v.x, 0}; };
  for (int turn = 0; turn < 200; ++turn) {
    const double angle = turn * std::numbers::pi / 2;
    const KdGeVector3d u = direction(angle), w = direction(angle + 0.8 + 1.5 * part(random));
    const KdGePoint3d center{1e6 * part(random), 1e6 * part(random), 0};
    const auto stem = m_drawing.addMline({{center - u * 100, center + u * 100}, {0.5, -0.5}});
    const auto bar = m_drawing.addMline({{center - w * 100, center + w * 100}, {1, 0, -1}});
    const KdGePoint3d onStem = center - u * 50 + left(u) * 0.5, onBar = center - w * 50 + left(w);
    run("CT", pick(stem, onStem.x, onStem.y) + pick(bar, onBar.x, onBar.y));
    ASSERT_EQ(flagsOf(stem), 9) << turn;
    m_drawing.edit(stem, [&](KdDbMline& mline) {
      for (const int e : {0, 1}) {
        const std::vector<double> list = listOf(mline, 0, e);
        const KdGePoint3d end = mline.vertexAt(0) + mline.miterAt(0) * list[0] + mline.axisAt(0) * list.back();
        ASSERT_NEAR(left(w).dotProduct(end - center), 1, 1e-7) << turn;
      }
    });
  }
}

// A loop whose last segment runs down across its first one, at x = 50. On the first segment element 0 lies at y = 1, on the
// last at x = 51. What would be lost together with the bar is no stem.
TEST_F(TeeTools, AMultilineEndsAtItselfWhereTheSegmentBetweenRemains) {
  struct Row {
    KdGePoint3d stem, bar;
    std::size_t stemAfter, barAfter;  // their segments; the same for no edit
    std::vector<double> stemList, barList;
  };
  const Row rows[] = {{{51, 30, 0}, {20, 1, 0}, 4, 1, {kRoot, 0, 48}, {kRoot, 0, 50, 52}},
                      {{80, 1, 0}, {51, 30, 0}, 0, 3, {1, 1}, {kRoot, 0, 48, 50}},
                      {{51, -30, 0}, {20, 1, 0}, 1, 1, {}, {}},
                      {{20, 1, 0}, {51, 30, 0}, 1, 1, {}, {}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.stem.x << ',' << row.stem.y);
    const auto loop =
        m_drawing.addMline({{{0, -30, 0}, {0, 0, 0}, {100, 0, 0}, {100, 50, 0}, {50, 50, 0}, {50, -50, 0}}, {1, -1}});
    const auto whole = m_drawing.listsOf(loop);
    run("OT", pick(loop, row.stem.x, row.stem.y) + pick(loop, row.bar.x, row.bar.y));
    const auto lists = m_drawing.listsOf(loop);
    const bool isEdited = row.stemAfter != row.barAfter;
    EXPECT_EQ(flagsOf(loop), !isEdited ? 1 : row.stemAfter == 0 ? 5 : 9);
    EXPECT_EQ(lists != whole, isEdited);
    if (!isEdited) continue;
    EXPECT_THAT(lists[0][row.stemAfter], Pointwise(DoubleNear(kSmall), row.stemList));
    EXPECT_THAT(lists[0][row.barAfter], Pointwise(DoubleNear(kSmall), row.barList));
  }
}

// Two segments at a right angle; the element passes the corner at (9, 1).
TEST(VertexMove, KeepsWhatIsDrawnInPlace) {
  struct Row {
    const char* name;
    int vertex;
    KdGePoint3d to, position;
    KdGeVector3d miter;
    std::vector<double> lists[3], fill;  // of the three vertices, of the first
  };
  const KdGeVector3d up{0, 1, 0}, left{-1, 0, 0}, corner{-kRoot / 2, kRoot / 2, 0};
  const std::vector<double> broken = {1, 0, 3, 5}, ended = {kRoot, 0, 2, 4, 6}, open = {kRoot, 0, 2, 4}, last = {1, 0};
  const Row rows[] = {
      {"ahead", 0, {4, 7, 0}, {4, 0, 0}, up, {{1, -4, -1, 1}, ended, last}, {0, 2}},
      {"back", 0, {-2, 0, 0}, {-2, 0, 0}, up, {{1, 2, 5, 7}, ended, last}, {4, 8}},
      {"near", 0, {8.5, 0, 0}, {8.5, 0, 0}, corner, {{kRoot, -7.5, -4.5, -2.5}, ended, last}, {0, 0}},
      {"onto", 0, {10, 0, 0}, {10, 0, 0}, corner, {{kRoot, -9, -6, -4}, ended, last}, {0, 0}},
      {"beyond", 0, {12, 0, 0}, {12, 0, 0}, corner, {{kRoot, -11, -8, -6}, ended, last}, {0, 0}},
      {"end on", 2, {10, 20, 0}, {10, 20, 0}, left, {broken, open, last}, {2, 6}},
      {"end near", 2, {10, 0.5, 0}, {10, 0.5, 0}, corner, {broken, open, {kRoot, 0}}, {2, 6}},
      {"no end", 1, {5, 5, 0}, {10, 0, 0}, corner, {broken, ended, last}, {2, 6}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const auto mline = makeMline({{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, {1}});
    setList(*mline, 0, 0, broken);
    setList(*mline, 1, 0, ended);
    ASSERT_EQ(mline->setAreaFillParametersAt(0, 0, std::array{2.0, 6.0}), KdStatus::ok);
    CMlineEdit engine;
    pick(engine, engine.segFirst, *mline, 1, 0, 0, 0);
    const double to[] = {row.to.x, row.to.y, row.to.z};
    engine.changePTPosition(mline.get(), row.vertex, to, engine.segFirst.ptList);
    EXPECT_LT((mline->vertexAt(row.vertex) - row.position).length(), kSmall);
    EXPECT_LT((mline->axisAt(row.vertex) - (row.vertex == 0 ? KdGeVector3d{1, 0, 0} : up)).length(), kSmall);
    EXPECT_LT((mline->miterAt(row.vertex) - row.miter).length(), kSmall);
    for (const int v : {0, 1, 2}) EXPECT_THAT(listOf(*mline, v, 0), Pointwise(DoubleNear(kSmall), row.lists[v])) << v;
    EXPECT_THAT(fillOf(*mline, 0, 0), Pointwise(DoubleNear(kSmall), row.fill));
  }
}

TEST(VertexMove, RemovingARunIsRemovingOneByOne) {
  const MlineSketch sketch = {{{0, 0, 0}, {9, 3, 0}, {20, 0, 0}, {24, 9, 0}, {33, 9, 0}, {40, 20, 0}}, {1, -2}};
  for (const auto& [first, count] : {std::pair(0, 4), {0, 1}, {3, 3}, {2, 4}, {3, 0}}) {
    const auto atOnce = makeMline(sketch), oneByOne = makeMline(sketch);
    CMlineEdit engine;
    pick(engine, engine.segFirst, *atOnce, 1, 0, 0, 0);
    engine.removeEndVertices(&engine.segFirst, first, count);
    pick(engine, engine.segFirst, *oneByOne, 1, 0, 0, 0);
    for (int i = 0; i < count; ++i) engine.delete_OneVertex(&engine.segFirst, first);
    ASSERT_EQ(atOnce->numVertices(), 6 - count);
    for (int v = 0; v < 6 - count; ++v) {
      EXPECT_LT((atOnce->vertexAt(v) - oneByOne->vertexAt(v)).length(), kSmall);
      EXPECT_LT((atOnce->miterAt(v) - oneByOne->miterAt(v)).length(), kSmall);
      for (const int e : {0, 1}) EXPECT_THAT(listOf(*atOnce, v, e), Pointwise(DoubleNear(kSmall), listOf(*oneByOne, v, e)));
    }
  }
}

}  // namespace

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "module/mledit/engine.h"
#include "module/mledit/tool_run.h"

namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

constexpr double kSmall = 1e-9;
const double kRoot = std::sqrt(2.0);

class TeeTools : public ToolRun {
 protected:
  TeeTools() { addTool(L"OT", &CMlineEdit::cmd_mledit_OpenTree); }

  void run(const std::string& picks) { m_drawing.run("OT\n" + picks + "\n"); }

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
    std::vector<double> fill = {2, 26};
  };
  const KdGePoint3d a{-20, 0, 0}, b{20, 0, 0}, aboveA{-20, 40, 0}, aboveB{20, 40, 0}, on{50, 50, 0};
  const double slant = 3 * kRoot;
  const Row rows[] = {
      {"start", {on, aboveA, a, b, aboveB, on}, -9, {2, 4, 30, 32}, {slant, 0, 2, 4, 16}, {-slant, 0, 2, 4, 22}},
      {"end", {a, b, aboveB}, 9, {3, 5, 25, 27}, {3, 1, 5, 7}, {-3, 1, 5, 7}, {0, 6}},
      {"short of the bar", {aboveA, a, {-5, 0, 0}}, -9, {2, 4}, {slant, 0, 2, 4, 16}, {-slant, 0, 2, 4, 22}},
      {"ended before the bar", {a, b}, -15, {9}, {3, 0, 19}, {-3, 0, 19}},
      {"on the bar's axis", {a, {0, 0, 0}}, -9, {}, {3, 0, 19}, {-3, 0, 19}},
      {"bend before the bar", {{-5, 40, 0}, {-5, 0, 0}, b}, -1.5, {}, {slant, 0, 1}, {-slant, 0, 7}},
      {"bend beyond the bar", {a, {5, 0, 0}, {5, 30, 0}}, 1.5, {}, {slant, 4}, {-slant, -2}, {0, 9}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const auto stem = m_drawing.addMline({row.path, {3, -3}});
    const auto bar = m_drawing.addMline({{{0, -100, 0}, {0, 100, 0}}, {1, 0, -1}});
    const bool isStart = row.pickX < 0;
    const int met = static_cast<int>(std::find_if(row.path.begin(), row.path.end(), [](auto& p) { return p.y == 0; }) -
                                     row.path.begin());
    m_drawing.edit(stem, [&](KdDbMline& mline) {
      EXPECT_EQ(mline.setAreaFillParametersAt(met, 0, std::array{2.0, 26.0}), KdStatus::ok);
      for (const int e : {0, 1}) {
        std::vector<double> list = listOf(mline, met, e);
        list.insert(list.end(), row.gap.begin(), row.gap.end());
        setList(mline, met, e, list);
      }
    });
    run(pick(stem, row.pickX, row.pickX == 1.5 ? 3 : -3) + pick(bar, -1, -50));
    const auto lists = m_drawing.listsOf(stem);
    ASSERT_EQ(static_cast<int>(lists[0].size()), isStart ? met + 2 : static_cast<int>(row.path.size()) - met);
    EXPECT_LT((vertex(stem, isStart ? met + 1 : 0) - KdGePoint3d()).length(), kSmall);
    const std::size_t joined = isStart ? lists[0].size() - 2 : 0;
    EXPECT_THAT(lists[0][joined], Pointwise(DoubleNear(kSmall), row.left));
    EXPECT_THAT(lists[1][joined], Pointwise(DoubleNear(kSmall), row.right));
    m_drawing.edit(stem, [&](KdDbMline& mline) {
      EXPECT_THAT(fillOf(mline, static_cast<int>(joined), 0), Pointwise(DoubleNear(kSmall), row.fill));
    });
    const std::vector<double> opened = {isStart ? 1.0 : -1.0, 0, 97, 103};
    EXPECT_THAT(m_drawing.listsOf(bar)[isStart ? 0 : 2][0], Pointwise(DoubleNear(kSmall), opened));
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
    run(pick(loop, row.stem.x, row.stem.y) + pick(loop, row.bar.x, row.bar.y));
    const auto lists = m_drawing.listsOf(loop);
    const bool isEdited = row.stemAfter != row.barAfter;
    EXPECT_EQ(flagsOf(loop), !isEdited ? 1 : row.stemAfter == 0 ? 5 : 9);
    EXPECT_EQ(lists != whole, isEdited);
    if (!isEdited) continue;
    EXPECT_THAT(lists[0][row.stemAfter], Pointwise(DoubleNear(kSmall), row.stemList));
    EXPECT_THAT(lists[0][row.barAfter], Pointwise(DoubleNear(kSmall), row.barList));
  }
}

}  // namespace

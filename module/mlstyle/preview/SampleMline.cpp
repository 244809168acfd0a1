#include "mlstyle/preview/SampleMline.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <kdrx/db_mline_imp.h>
#include <kdrx/db_mline_style.h>

namespace {

/// Offsets that differ by less are one.
constexpr double kLeastSpan = 1e-10;
/// Sine below which an end runs along the axis; drawings may hold such angles.
constexpr double kLeastSine = 0.01;
/// How far an end may reach along the axis, as a share of the width.
constexpr double kLongestReach = 0.25;

/// The direction along which the elements are offset at a vertex, and how much longer the way is along it than straight
/// across.
struct Miter {
  explicit Miter(double angleRad)
      : direction{std::cos(angleRad), std::sin(angleRad), 0},
        factor(1 / std::max(std::abs(std::sin(angleRad)), kLeastSine)) {}

  double ReachPerHeight() const { return std::abs(direction.x) * factor; }

  KdGeVector3d direction;
  double factor;
};

/// How far each element is above the lowest one. A style has its elements in either order of their offsets.
std::vector<double> HeightsOf(const KdDbMlineStyle& style, double height) {
  std::vector<double> offsets(static_cast<std::size_t>(style.numElements()));
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    KdCmColor color;
    KdDbObjectId linetype;
    static_cast<void>(style.getElementAt(static_cast<int>(i), offsets[i], color, linetype));
  }
  if (offsets.empty()) return offsets;
  const auto [least, most] = std::minmax_element(offsets.begin(), offsets.end());
  const double lowest = *least, span = *most - *least;
  for (double& offset : offsets) offset = span > kLeastSpan ? (offset - lowest) / span * height : 0;
  return offsets;
}

/// Lists of elements that are drawn whole.
KdMLSegments ListsAt(const Miter& miter, const std::vector<double>& heights) {
  std::vector<KdMLSegment> lists;
  for (const double height : heights) lists.push_back({{}, {height * miter.factor, 0}});
  return lists;
}

}  // namespace

std::unique_ptr<KdDbMline> makeSampleMline(const KdDbMlineStyle& style, int width, int height) {
  const Miter start(style.startAngle()), middle(std::acos(0.0)), end(style.endAngle());
  const double reach = std::max(start.ReachPerHeight(), end.ReachPerHeight()) * height;
  const double most = kLongestReach * width;
  const std::vector<double> heights = HeightsOf(style, reach > most ? height * most / reach : height);

  auto mline = std::make_unique<KdDbMline>();
  std::vector<KdGeVector3d> directions;
  int vertex = 0;
  for (const auto& [x, miter] : {std::pair{0, start}, {width / 2, middle}, {width, end}}) {
    static_cast<void>(mline->appendSeg({static_cast<double>(x), 0, 0}));
    directions.push_back(miter.direction);
  }
  KdDbMlineImp::of(KdDbSystemInternals::getImpObject(mline.get()))->appendSeg(directions, KdDbMlineImp::kMiters);
  for (const Miter& miter : {start, middle, end}) mline->setSegmentsAt(vertex++, ListsAt(miter, heights));
  return mline;
}

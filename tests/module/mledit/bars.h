#pragma once

#include <algorithm>
#include <vector>

#include "module/mledit/drawing.h"
#include "module/mledit/engine.h"
#include "module/mledit/tool_run.h"

inline constexpr double kHalfLength = 100;

/// Straight multilines that cross in the middle. Their elements lie one drawing unit apart, element 0 leftmost.
class Bars : public ToolRun {
 protected:
  static std::vector<double> distances(int elements) {
    std::vector<double> result;
    for (int e = 0; e < elements; ++e) result.push_back((elements - 1) / 2.0 - e);
    return result;
  }

  static KdGePoint3d at(const KdGePoint3d& center, double angle, double along, double left = 0) {
    return {center.x + along * std::cos(angle) - left * std::sin(angle),
            center.y + along * std::sin(angle) + left * std::cos(angle), center.z};
  }

  torva::dxf::Handle addBar(int elements, double angle, const KdGePoint3d& center = {}) {
    return m_drawing.addMline({{at(center, angle, -kHalfLength), at(center, angle, kHalfLength)}, distances(elements)});
  }

  /// A pick on element 0 of a bar.
  std::string pickBar(torva::dxf::Handle handle, int elements, double angle, const KdGePoint3d& center = {},
                      double along = -50) {
    const KdGePoint3d point = at(center, angle, along, (elements - 1) / 2.0);
    return pick(handle, point.x, point.y);
  }
  void run(const char* tool, const std::string& answers) { m_drawing.run(std::string(tool) + '\n' + answers + "\n"); }

  /// Where an element of a bar starts or stops: the stored distances from `first` on, as points.
  std::vector<KdGePoint3d> breaks(torva::dxf::Handle handle, int element, std::size_t first) {
    std::vector<KdGePoint3d> points;
    m_drawing.edit(handle, [&](KdDbMline& mline) {
      const std::vector<double> list = listOf(mline, 0, element);
      for (std::size_t i = first; i < list.size(); ++i) {
        points.push_back(mline.vertexAt(0) + mline.miterAt(0) * list[0] + mline.axisAt(0) * list[i]);
      }
    });
    return points;
  }

  /// The ends of the gaps of one element of a bar.
  std::vector<KdGePoint3d> gapEnds(torva::dxf::Handle handle, int element) { return breaks(handle, element, 2); }

  std::vector<KdGePoint3d> gapEnds(torva::dxf::Handle handle) {
    std::vector<KdGePoint3d> ends;
    const int elements = static_cast<int>(m_drawing.listsOf(handle).size());
    for (int e = 0; e < elements; ++e) {
      for (const KdGePoint3d& end : gapEnds(handle, e)) ends.push_back(end);
    }
    return ends;
  }
};

inline bool isIn(const std::vector<KdGePoint3d>& points, const KdGePoint3d& point, double tolerance) {
  return std::any_of(points.begin(), points.end(),
                     [&](const KdGePoint3d& other) { return (other - point).length() <= tolerance; });
}

/// How far left of a bar's path a point lies.
inline double leftOf(const KdGePoint3d& point, const KdGePoint3d& center, double angle) {
  return (point.y - center.y) * std::cos(angle) - (point.x - center.x) * std::sin(angle);
}

inline constexpr struct {
  int first, second;
} kSizes[] = {{1, 1}, {1, 4}, {2, 1}, {2, 2}, {3, 3}, {3, 5}, {4, 2}, {5, 3}, {5, 5}, {6, 7}, {16, 3}, {3, 16}, {16, 16}};
inline constexpr double kAngles[] = {1.5707963267948966, 0.9, -2.2};
inline constexpr KdGePoint3d kCenters[] = {{0, 0, 0}, {7, -3, 5}, {1e6, 1e6, 0}};

/// Calls check(m, n, angle, center, tolerance) for bars of m and n elements that cross at an angle; the first lies along x.
template <class Check>
void forAllBars(Check check) {
  for (const auto& sizes : kSizes) {
    for (const double angle : kAngles) {
      for (const KdGePoint3d& center : kCenters) {
        SCOPED_TRACE(::testing::Message() << sizes.first << " over " << sizes.second << " at " << angle << ", " << center.x);
        const double tolerance = 1e-9 * std::max(kHalfLength, std::abs(center.x));
        check(sizes.first, sizes.second, angle, center, tolerance);
      }
    }
  }
}

#include "mledit/SegmentTree.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int kLeafSize = 4;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kOnSegmentTolerance = 1e-7;  // product of two distances, as in gx_linexline()
constexpr double kParallelTolerance = 1e-11;  // of a cross product, as there
constexpr double kSineRounding = 1e-15;
// Of the largest coordinate: end points that gx_linexline() takes for equal, and its rounding.
constexpr double kRelativeSlack = 1e-10;

using Directions = SegmentTree::Directions;

double length(double x, double y) {
  return std::sqrt(x * x + y * y);
}

Directions merged(const Directions& a, const Directions& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  const double sign = a.x * b.x + a.y * b.y < 0 ? -1 : 1;
  const double x = a.x + sign * b.x, y = a.y + sign * b.y, size = length(x, y);
  // The angle from the middle to either vector, and then on to the farther side of the wider one.
  const double cosine = std::abs(x * a.x + y * a.y) / size, sine = std::abs(x * a.y - y * a.x) / size;
  const Directions& wider = a.sine > b.sine ? a : b;
  const double sumCosine = cosine * wider.cosine - sine * wider.sine, sumSine = sine * wider.cosine + cosine * wider.sine;
  if (sumCosine <= 0) return {x / size, y / size, 0, 1};
  return {x / size, y / size, sumCosine, sumSine};
}

// How far beyond its end, along the wider axis, a point still counts as on a segment: d (d + extent) <= tolerance.
double overshoot(double extent) {
  return 2 * kOnSegmentTolerance / (extent + std::sqrt(extent * extent + 4 * kOnSegmentTolerance));
}

// Half the width of the node's box across the directions of `lines`, at most.
double halfWidthAcross(const SegmentTree::Node& node, const SegmentTree::Node& lines) {
  const double x = (node.high[0] - node.low[0]) / 2, y = (node.high[1] - node.low[1]) / 2;
  return std::abs(lines.directions.y) * x + std::abs(lines.directions.x) * y + lines.directions.sine * length(x, y);
}

}  // namespace

SegmentTree::SegmentTree(const double (*points)[3], int count, int segments)
    : m_points(points), m_count(count), m_rounding(0) {
  for (int i = 0; i < count; ++i) {
    for (int k = 0; k < 3; ++k) m_rounding = std::max(m_rounding, kRelativeSlack * std::abs(points[i][k]));
  }
  if (segments < 1) return;
  m_nodes.reserve(static_cast<std::size_t>(2 * (2 * segments / kLeafSize + 1)));
  build(0, segments);
}

int SegmentTree::build(int first, int last) {
  const auto index = m_nodes.size();
  m_nodes.push_back({first, last, -1, {kInfinity, kInfinity}, {-kInfinity, -kInfinity}, {}, 0});
  if (last - first <= kLeafSize) {
    measureLeaf(m_nodes[index]);
    return static_cast<int>(index);
  }
  const int middle = first + (last - first) / 2;
  const int left = build(first, middle), right = build(middle, last);
  Node& node = m_nodes[index];
  node.right = right;
  for (const int child : {left, right}) {
    node.longest = std::max(node.longest, (*this)[child].longest);
    for (int k = 0; k < 2; ++k) {
      node.low[k] = std::min(node.low[k], (*this)[child].low[k]);
      node.high[k] = std::max(node.high[k], (*this)[child].high[k]);
    }
  }
  node.directions = merged((*this)[left].directions, (*this)[right].directions);
  return static_cast<int>(index);
}

void SegmentTree::measureLeaf(Node& leaf) const {
  for (int s = leaf.first; s < leaf.last; ++s) {
    const double* from = startOf(s);
    const double* to = endOf(s);
    const double slack = overshoot(std::max(std::abs(to[0] - from[0]), std::abs(to[1] - from[1]))) + m_rounding;
    leaf.longest = std::max(leaf.longest, length(to[0] - from[0], to[1] - from[1]));
    for (int k = 0; k < 2; ++k) {
      leaf.low[k] = std::min(leaf.low[k], std::min(from[k], to[k]) - slack);
      leaf.high[k] = std::max(leaf.high[k], std::max(from[k], to[k]) + slack);
    }
  }
  leaf.directions = leafDirections(leaf);
}

Directions SegmentTree::leafDirections(const Node& leaf) const {
  double x = 0, y = 0;
  for (int s = leaf.first; s < leaf.last; ++s) {
    const double dx = endOf(s)[0] - startOf(s)[0], dy = endOf(s)[1] - startOf(s)[1];
    const double sign = x * dx + y * dy < 0 ? -1 : 1;
    x += sign * dx;
    y += sign * dy;
  }
  const double size = length(x, y);
  if (size == 0) return {};
  Directions directions{x / size, y / size, 1, 0};
  for (int s = leaf.first; s < leaf.last; ++s) {
    const double dx = endOf(s)[0] - startOf(s)[0], dy = endOf(s)[1] - startOf(s)[1], extent = length(dx, dy);
    if (extent == 0) continue;
    directions.cosine = std::min(directions.cosine, std::abs(directions.x * dx + directions.y * dy) / extent);
    directions.sine = std::max(directions.sine, std::abs(directions.x * dy - directions.y * dx) / extent);
  }
  return directions;
}

bool isOverlapping(const SegmentTree::Node& a, const SegmentTree::Node& b) {
  return a.low[0] <= b.high[0] && b.low[0] <= a.high[0] && a.low[1] <= b.high[1] && b.low[1] <= a.high[1];
}

bool isMetByLines(const SegmentTree::Node& node, const SegmentTree::Node& lines) {
  if (lines.directions.isEmpty()) return false;
  const double x = (node.low[0] + node.high[0] - lines.low[0] - lines.high[0]) / 2;
  const double y = (node.low[1] + node.high[1] - lines.low[1] - lines.high[1]) / 2;
  const double across = std::abs(lines.directions.x * y - lines.directions.y * x);
  const double along = std::abs(lines.directions.x * x + lines.directions.y * y);
  return across * lines.directions.cosine - along * lines.directions.sine <=
         halfWidthAcross(node, lines) + halfWidthAcross(lines, lines);
}

bool isAllParallel(const SegmentTree::Node& a, const SegmentTree::Node& b) {
  const Directions& u = a.directions;
  const Directions& v = b.directions;
  if (u.isEmpty() || v.isEmpty()) return true;
  const double sine = std::abs(u.x * v.y - u.y * v.x) + u.sine + v.sine + kSineRounding;
  return sine * a.longest * b.longest < kParallelTolerance / 2;
}

double planDistance(const SegmentTree::Node& node, const double* point) {
  const double x = std::max({node.low[0] - point[0], 0.0, point[0] - node.high[0]});
  const double y = std::max({node.low[1] - point[1], 0.0, point[1] - node.high[1]});
  return length(x, y);
}

#pragma once

#include <cmath>
#include <memory>
#include <vector>

#include "mlaccess/mline_access.h"

/// What a test says of a multiline: a path in the plan and the distance of each element from it, positive to the left.
struct MlineSketch {
  std::vector<KdGePoint3d> path;
  std::vector<double> distances;
  bool isClosed = false;
};

using ElementLists = std::vector<std::vector<double>>;

inline void setList(KdDbMline& mline, int vertex, int element, const std::vector<double>& values) {
  SetNumLine(&mline, static_cast<int>(values.size()), vertex, element);
  SetLineArray(&mline, values.data(), vertex, element);
}

inline std::vector<double> listOf(const KdDbMline& mline, int vertex, int element) {
  const auto list = mline.segmentsAt(vertex)[static_cast<std::size_t>(element)].elementParameters;
  return {list.begin(), list.end()};
}

inline std::vector<double> fillOf(const KdDbMline& mline, int vertex, int element) {
  const auto list = mline.segmentsAt(vertex)[static_cast<std::size_t>(element)].areaFillParameters;
  return {list.begin(), list.end()};
}

/// The lists of one element at all vertices.
inline ElementLists listsOf(const KdDbMline& mline, int element) {
  ElementLists lists;
  for (int vertex = 0; vertex < mline.numVertices(); ++vertex) lists.push_back(listOf(mline, vertex, element));
  return lists;
}

/// Draws the sketch whole, with mitred corners, into `mline`, which can be written.
inline void draw(KdDbMline& mline, const MlineSketch& sketch) {
  const int n = static_cast<int>(sketch.path.size());
  std::vector<KdGeVector3d> axes, lefts;
  for (int i = 0; i < n; ++i) {
    const bool hasNext = sketch.isClosed || i + 1 < n;
    const KdGeVector3d axis =
        hasNext ? (sketch.path[static_cast<std::size_t>((i + 1) % n)] - sketch.path[static_cast<std::size_t>(i)]).normal()
                : axes.back();
    axes.push_back(axis);
    lefts.push_back({-axis.y, axis.x, 0});
  }
  const auto triples = [&] { return std::make_unique<double[][3]>(static_cast<std::size_t>(n)); };
  const auto points = triples(), directions = triples(), miters = triples();
  const auto store = [](const auto& from, double* to) { to[0] = from.x, to[1] = from.y, to[2] = from.z; };
  std::vector<double> stretches;
  for (std::size_t i = 0; i < axes.size(); ++i) {
    const KdGeVector3d before = i > 0 ? lefts[i - 1] : sketch.isClosed ? lefts.back() : lefts[i];
    const KdGeVector3d miter = (before + lefts[i]).normal();
    store(miter, miters[i]);
    store(axes[i], directions[i]);
    store(sketch.path[i], points[i]);
    stretches.push_back(1 / miter.dotProduct(lefts[i]));
  }
  SetNumVertices(&mline, n);
  SetVertices(&mline, points.get());
  SetFlag(&mline, sketch.isClosed ? kMlineIsClosed : 0);
  SetAxis(&mline, directions.get());
  SetMilters(&mline, miters.get());
  SetSegmentsSize(&mline, static_cast<int>(sketch.distances.size()));
  for (int i = 0; i < n; ++i) {
    for (std::size_t e = 0; e < sketch.distances.size(); ++e) {
      setList(mline, i, static_cast<int>(e), {sketch.distances[e] * stretches[static_cast<std::size_t>(i)], 0});
    }
  }
}

/// The sketch as a multiline outside any drawing.
inline std::unique_ptr<KdDbMline> makeMline(const MlineSketch& sketch) {
  auto mline = std::make_unique<KdDbMline>();
  draw(*mline, sketch);
  return mline;
}

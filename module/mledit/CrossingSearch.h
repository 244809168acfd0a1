#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "mledit/MlineEdit.h"
#include "mledit/SegmentTree.h"

/// The search for the segments at which two multilines meet: it chooses as if it ran through all pairs in order, those of
/// the first multiline's first segment first, without looking at most of them.
class CrossingSearch {
 public:
  /// The records have to stay as they are during the search; their segments exist. The closing segment of `b` is searched,
  /// that of `a` is not. For `touching` see CMlineEdit::getSegmentNumbers().
  CrossingSearch(const CMlineSegment& a, const CMlineSegment& b, bool touching);

  /// The first pair that meets within both segments and is the picked one, or lies in line with it on both multilines.
  std::optional<CMlineEdit::xPtList> onPickedLines() const;
  /// The pair whose crossing has the smallest sum of distances from two points; of equals the first.
  std::optional<CMlineEdit::xPtList> nearestTo(const double* pickA, const double* pickB);

 private:
  struct Crossing {
    CMlineEdit::xPtList pair;
    short onSegments;  // as gx_linexline() returns it
  };

  int nextB(int j) const { return j + 1 < m_b.numVertices ? j + 1 : 0; }
  std::optional<Crossing> crossingOf(int i, int j) const;
  bool isCandidate(int i, int j, short onSegments, const double* x) const;
  bool isOnPickedLines(int i, int j) const;
  double lowestScore(int nodeA, int nodeB) const;
  void searchNearest(int nodeA, int nodeB);
  void compareNearest(const SegmentTree::Node& a, const SegmentTree::Node& b);

  const CMlineSegment& m_a;
  const CMlineSegment& m_b;
  const bool m_touching, m_isSame;
  const std::unique_ptr<double[][3]> m_pointsA, m_pointsB;
  const SegmentTree m_treeA, m_treeB;
  std::vector<double> m_scoresA, m_scoresB;  // for each node, what no point on its segments falls below
  const double* m_pickA = nullptr;
  const double* m_pickB = nullptr;
  std::optional<CMlineEdit::xPtList> m_nearest;
  double m_bestScore = 0;
};

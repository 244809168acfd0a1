#include "mledit/CrossingSearch.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "geometry/intersect.h"
#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"

namespace {

constexpr double kWorstScore = 4294967295.0;
constexpr short kOnSecond = 2, kOnBoth = 3;

std::unique_ptr<double[][3]> readVertices(const CMlineSegment& seg) {
  auto points = std::make_unique<double[][3]>(static_cast<std::size_t>(seg.numVertices));
  GetVertices(seg.mline, points.get());
  return points;
}

double planLength(double x, double y) {
  return std::sqrt(x * x + y * y);
}

KdGePoint3d toPoint(const double* p) {
  return {p[0], p[1], p[2]};
}

bool isBefore(const CMlineEdit::xPtList& a, const CMlineEdit::xPtList& b) {
  return std::tie(a.firstSegment, a.secondSegment) < std::tie(b.firstSegment, b.secondSegment);
}

// Splits the node with more segments.
bool isFirstSplit(const SegmentTree::Node& a, const SegmentTree::Node& b) {
  return b.isLeaf() || (!a.isLeaf() && a.last - a.first >= b.last - b.first);
}

// Calls visit(a, b) for all leaves with overlapping boxes.
template <class Visit>
void visitOverlaps(const SegmentTree& treeA, int nodeA, const SegmentTree& treeB, int nodeB, const Visit& visit) {
  const SegmentTree::Node& a = treeA[nodeA];
  const SegmentTree::Node& b = treeB[nodeB];
  if (!isOverlapping(a, b)) return;
  if (a.isLeaf() && b.isLeaf()) return visit(a, b);
  if (isFirstSplit(a, b)) {
    for (const int child : {nodeA + 1, a.right}) visitOverlaps(treeA, child, treeB, nodeB, visit);
  } else {
    for (const int child : {nodeB + 1, b.right}) visitOverlaps(treeA, nodeA, treeB, child, visit);
  }
}

// For each node what the sum of distances from p and q does not fall below, wherever in its box.
std::vector<double> lowestScores(const SegmentTree& tree, const double* p, const double* q) {
  std::vector<double> scores;
  scores.reserve(static_cast<std::size_t>(tree.size()));
  for (int i = 0; i < tree.size(); ++i) {
    const SegmentTree::Node& node = tree[i];
    const double x = (node.low[0] + node.high[0]) / 2, y = (node.low[1] + node.high[1]) / 2;
    const double diagonal = planLength(node.high[0] - node.low[0], node.high[1] - node.low[1]);
    const double fromCenter = planLength(x - p[0], y - p[1]) + planLength(x - q[0], y - q[1]) - diagonal;
    scores.push_back(std::max(planDistance(node, p) + planDistance(node, q), fromCenter));
  }
  return scores;
}

}  // namespace

CrossingSearch::CrossingSearch(const CMlineSegment& a, const CMlineSegment& b, bool touching)
    : m_a(a),
      m_b(b),
      m_touching(touching),
      m_isSame(a.isSameEntity(b)),
      m_pointsA(readVertices(a)),
      m_pointsB(readVertices(b)),
      m_treeA(m_pointsA.get(), a.numVertices, a.numVertices - 1),
      m_treeB(m_pointsB.get(), b.numVertices, b.isClosed() ? b.numVertices : b.numVertices - 1) {}

std::optional<CMlineEdit::xPtList> CrossingSearch::onPickedLines() const {
  std::optional<CMlineEdit::xPtList> first;
  if (m_treeA.isEmpty() || m_treeB.isEmpty()) return first;
  visitOverlaps(m_treeA, 0, m_treeB, 0, [&](const SegmentTree::Node& a, const SegmentTree::Node& b) {
    for (int i = a.first; i < a.last; ++i) {
      for (int j = b.first; j < b.last; ++j) {
        const std::optional<Crossing> crossing = crossingOf(i, j);
        if (!crossing || crossing->onSegments != kOnBoth || (first && !isBefore(crossing->pair, *first))) continue;
        if ((i == m_a.segment && j == m_b.segment) || isOnPickedLines(i, j)) first = crossing->pair;
      }
    }
  });
  return first;
}

std::optional<CMlineEdit::xPtList> CrossingSearch::nearestTo(const double* pickA, const double* pickB) {
  if (m_treeA.isEmpty() || m_treeB.isEmpty()) return std::nullopt;
  m_scoresA = lowestScores(m_treeA, pickA, pickB);
  m_scoresB = lowestScores(m_treeB, pickA, pickB);
  m_pickA = pickA;
  m_pickB = pickB;
  m_nearest.reset();
  m_bestScore = kWorstScore;
  searchNearest(0, 0);
  return m_nearest;
}

// What no crossing of a segment of one node with one of the other falls below. A candidate lies on one of the two segments
// at least, and then the line of the other meets that one's box.
double CrossingSearch::lowestScore(int nodeA, int nodeB) const {
  double score = kWorstScore;
  if (m_touching && isMetByLines(m_treeA[nodeA], m_treeB[nodeB])) score = m_scoresA[static_cast<std::size_t>(nodeA)];
  const double scoreB = m_scoresB[static_cast<std::size_t>(nodeB)];
  return scoreB < score && isMetByLines(m_treeB[nodeB], m_treeA[nodeA]) ? scoreB : score;
}

void CrossingSearch::searchNearest(int nodeA, int nodeB) {
  const double lowest = lowestScore(nodeA, nodeB);
  // An equal score may still belong to an earlier pair.
  if (lowest > m_bestScore || lowest >= kWorstScore) return;
  const SegmentTree::Node& a = m_treeA[nodeA];
  const SegmentTree::Node& b = m_treeB[nodeB];
  if (isAllParallel(a, b)) return;
  if (a.isLeaf() && b.isLeaf()) return compareNearest(a, b);
  const bool isFirst = isFirstSplit(a, b);
  int children[] = {isFirst ? nodeA + 1 : nodeB + 1, isFirst ? a.right : b.right};
  const std::vector<double>& scores = isFirst ? m_scoresA : m_scoresB;
  // The nearer one first: what it finds lets most of the other be passed over.
  if (scores[static_cast<std::size_t>(children[1])] < scores[static_cast<std::size_t>(children[0])]) {
    std::swap(children[0], children[1]);
  }
  for (const int child : children) searchNearest(isFirst ? child : nodeA, isFirst ? nodeB : child);
}

void CrossingSearch::compareNearest(const SegmentTree::Node& a, const SegmentTree::Node& b) {
  for (int i = a.first; i < a.last; ++i) {
    for (int j = b.first; j < b.last; ++j) {
      const std::optional<Crossing> crossing = crossingOf(i, j);
      if (!crossing) continue;
      const CMlineEdit::xPtList& pair = crossing->pair;
      const double score = vexengine_distance(pair.point, m_pickA) + vexengine_distance(pair.point, m_pickB);
      const bool isEarlierEqual = m_nearest && score == m_bestScore && isBefore(pair, *m_nearest);
      if (!(score < m_bestScore) && !isEarlierEqual) continue;
      m_bestScore = score;
      m_nearest = pair;
    }
  }
}

// Where two segments are candidates, and whether the point lies on them.
std::optional<CrossingSearch::Crossing> CrossingSearch::crossingOf(int i, int j) const {
  if (m_isSame && i == j) return std::nullopt;
  Crossing crossing{{{0, 0, m_pointsA[i][2]}, i, j}, 0};
  double* x = crossing.pair.point;
  crossing.onSegments = gx_linexline(m_pointsA[i], m_pointsA[i + 1], m_pointsB[j], m_pointsB[nextB(j)], x);
  if (crossing.onSegments < 0 || !isCandidate(i, j, crossing.onSegments, x)) return std::nullopt;
  return crossing;
}

bool CrossingSearch::isCandidate(int i, int j, short onSegments, const double* x) const {
  if (m_touching && onSegments > 0) return true;
  const double *from = m_pointsA[i], *to = m_pointsA[i + 1];
  if (CMlineEdit::leadsOn(from, x, to) && CMlineEdit::leadsOn(m_pointsB[j], x, m_pointsB[nextB(j)])) return true;
  const bool isAtEnd = CMlineEdit::isSamePlace(from, x) || CMlineEdit::isSamePlace(x, to);
  return onSegments == kOnSecond || (onSegments == kOnBoth && isAtEnd);
}

bool CrossingSearch::isOnPickedLines(int i, int j) const {
  const int pickedA = m_a.segment, pickedB = m_b.segment;
  return isCollinear(toPoint(m_pointsA[i]), toPoint(m_pointsA[i + 1]), toPoint(m_pointsA[pickedA]),
                     toPoint(m_pointsA[m_a.nextVertex(pickedA)])) &&
         isCollinear(toPoint(m_pointsB[j]), toPoint(m_pointsB[nextB(j)]), toPoint(m_pointsB[pickedB]),
                     toPoint(m_pointsB[m_b.nextVertex(pickedB)]));
}

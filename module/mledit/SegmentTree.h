#pragma once

#include <vector>

/// The segments of a path in the plan as a tree of boxes, for searches that pass over most of them.
///
/// Boxes are a little wider than what lies in them: a point that gx_linexline() takes to be on a segment, rounding included,
/// is in every box around that segment.
class SegmentTree {
 public:
  /// Directions without regard to their sign: all within an acute angle of a unit vector.
  struct Directions {
    double x = 0, y = 0;
    double cosine = 0, sine = 0;  ///< Of that angle. Both zero: there are no directions.

    bool isEmpty() const { return cosine == 0 && sine == 0; }
  };

  struct Node {
    int first, last;  ///< The segments first to last - 1.
    int right = -1;   ///< Index of the second child; the first child follows its parent. -1 for a leaf.
    double low[2], high[2];
    Directions directions;
    double longest;  ///< Length of the longest segment in the plan.

    bool isLeaf() const { return right < 0; }
  };

  /// Segment k runs from point k to the next; segment count - 1 of `count` points (`isClosed`) to point 0.
  SegmentTree(const double (*points)[3], int count, int segments);

  bool isEmpty() const { return m_nodes.empty(); }
  int size() const { return static_cast<int>(m_nodes.size()); }
  const Node& operator[](int index) const { return m_nodes[static_cast<std::size_t>(index)]; }

 private:
  int build(int first, int last);
  const double* startOf(int segment) const { return m_points[segment]; }
  const double* endOf(int segment) const { return m_points[segment + 1 < m_count ? segment + 1 : 0]; }
  void measureLeaf(Node& leaf) const;
  Directions leafDirections(const Node& leaf) const;

  const double (*m_points)[3];
  int m_count;
  double m_rounding;
  std::vector<Node> m_nodes;
};

/// True when the boxes have a point in common.
bool isOverlapping(const SegmentTree::Node& a, const SegmentTree::Node& b);

/// False when none of the endless lines through the segments of `lines` meets the box of `node`.
bool isMetByLines(const SegmentTree::Node& node, const SegmentTree::Node& lines);

/// True when gx_linexline() takes every segment of one node to be parallel to every one of the other.
bool isAllParallel(const SegmentTree::Node& a, const SegmentTree::Node& b);

/// Distance of a point from the node's box in the plan; 0 within.
double planDistance(const SegmentTree::Node& node, const double* point);

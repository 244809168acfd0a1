#include "draw/dashes.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace torva::draw {
namespace {

double lengthOf(std::span<const KdGePoint3d> points) {
  double length = 0;
  for (std::size_t i = 1; i < points.size(); ++i) length += points[i - 1].distanceTo(points[i]);
  return length;
}

/// Walks along the path and the pattern at once.
class Splitter {
 public:
  Splitter(std::span<const KdGePoint3d> points, std::span<const double> dashes) : m_points(points), m_dashes(dashes) {}

  std::vector<std::vector<KdGePoint3d>> run() {
    beginDash(m_points.front());
    for (std::size_t i = 1; i < m_points.size(); ++i) addSegment(m_points[i - 1], m_points[i]);
    finishPiece();
    return std::move(m_pieces);
  }

 private:
  bool isPenDown() const { return m_dashes[m_dash] >= 0; }

  void beginDash(const KdGePoint3d& at) {
    m_left = std::abs(m_dashes[m_dash]);
    if (isPenDown()) m_piece.push_back(at);
  }

  void finishPiece() {
    if (!m_piece.empty()) m_pieces.push_back(std::exchange(m_piece, {}));
  }

  void addSegment(const KdGePoint3d& from, const KdGePoint3d& to) {
    const double length = from.distanceTo(to);
    if (length == 0) return;
    double done = 0;
    while (length - done > m_left) {
      done += m_left;
      nextDash(from + (to - from) * (done / length));
    }
    m_left -= length - done;
    if (isPenDown()) m_piece.push_back(to);
  }

  void nextDash(const KdGePoint3d& at) {
    if (isPenDown() && m_dashes[m_dash] > 0) m_piece.push_back(at);
    m_dash = (m_dash + 1) % m_dashes.size();
    if (isPenDown() && !m_piece.empty()) {
      m_left = m_dashes[m_dash];  // two dashes in a row: the pen stays down
      return;
    }
    finishPiece();
    beginDash(at);
  }

  std::span<const KdGePoint3d> m_points;
  std::span<const double> m_dashes;
  std::size_t m_dash = 0;
  double m_left = 0;
  std::vector<KdGePoint3d> m_piece;
  std::vector<std::vector<KdGePoint3d>> m_pieces;
};

}  // namespace

std::vector<std::vector<KdGePoint3d>> splitIntoDashes(std::span<const KdGePoint3d> points, std::span<const double> dashes,
                                                      int mostPieces) {
  double period = 0;
  bool hasGap = false;
  for (const double dash : dashes) {
    period += std::abs(dash);
    hasGap = hasGap || dash < 0;
  }
  const double pieces = lengthOf(points) / period * static_cast<double>(dashes.size());
  if (!hasGap || !(pieces <= mostPieces)) return {{points.begin(), points.end()}};
  return Splitter(points, dashes).run();
}

}  // namespace torva::draw

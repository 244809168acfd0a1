#include <algorithm>
#include <cmath>
#include <vector>

#include "mlaccess/mline_access.h"
#include "mledit/MlineEdit.h"
#include "mledit/MlineVertices.h"

namespace {

constexpr double kLeastShare = 0.5;  // of its segment's length, that every element line has with a square end

KdGePoint3d toPoint(const double* p) {
  return {p[0], p[1], p[2]};
}

KdGeVector3d toVector(const double* v) {
  return {v[0], v[1], v[2]};
}

template <class Triple>
void store(const Triple& from, double* out) {
  out[0] = from.x;
  out[1] = from.y;
  out[2] = from.z;
}

// The point nearest to p on the line through a and b; p itself where these are one point.
KdGePoint3d footOnLine(const KdGePoint3d& p, const KdGePoint3d& a, const KdGePoint3d& b) {
  const KdGeVector3d along = b - a;
  const double square = along.dotProduct(along);
  return square > 0 ? a + along * ((p - a).dotProduct(along) / square) : p;
}

// The move of an end vertex along its segment.
//
// The element lines run on from where they pass the neighbour, in the direction of the segment's axis, so that is where the
// moved vertex takes its offsets from: what the removal of other vertices has made of its own ones does not count. The axis
// stays, even where the vertex comes to lie behind its neighbour: distances along it still lead the same way.
//
// The new miter is square to the axis, which gives a filled multiline a square end. Beside a slanted neighbour that can turn
// an element round or leave a scrap of it; then the vertex takes the neighbour's miter, and every element is as long as the
// segment.
class VertexMove {
 public:
  VertexMove(KdDbMline& mline, int moved)
      : m_mline(mline),
        m_index(moved),
        m_isStart(moved == 0),
        m_moved(readMlineVertex(mline, moved)),
        m_neighbour(readMlineVertex(mline, neighbourIndex())),
        m_axis(toVector(m_isStart ? m_moved.axis : m_neighbour.axis)),
        m_miter(toVector(m_neighbour.miter)) {}

  void moveTo(const double* point) {
    const KdGePoint3d neighbour = toPoint(m_neighbour.position);
    const KdGePoint3d position = footOnLine(toPoint(point), neighbour, toPoint(m_moved.position));
    const double length = (m_isStart ? neighbour - position : position - neighbour).dotProduct(m_axis);
    const KdGeVector3d square = (m_miter - m_axis * m_miter.dotProduct(m_axis)).normal();
    const bool isTurned = !square.isZeroLength() && !square.isEqualTo(m_miter) && keepsElements(length);
    m_stretch = isTurned ? m_miter.dotProduct(square) : 1;
    store(position, m_moved.position);
    store(m_axis, m_moved.axis);
    store(isTurned ? square : m_miter, m_moved.miter);
  }

  /// Puts the first elements back onto their lines. `points` are where they passed the vertices before the move.
  void keepInPlace(std::size_t count, double (**points)[3], int vertex) {
    std::vector<KdMLSegment> moved = m_moved.elements.toVector(), neighbour = m_neighbour.elements.toVector();
    count = std::min({count, moved.size(), neighbour.size()});
    for (std::size_t e = 0; e < count; ++e) keepInPlace(moved[e], neighbour[e], points[e][vertex]);
    m_moved.elements = moved;
    m_neighbour.elements = neighbour;
  }

  void write() {
    if (writeMlineVertex(m_mline, m_index, m_moved)) writeMlineVertex(m_mline, neighbourIndex(), m_neighbour);
  }

 private:
  int neighbourIndex() const { return m_isStart ? 1 : m_index - 1; }

  void keepInPlace(KdMLSegment& moved, KdMLSegment& neighbour, const double* before) const {
    if (moved.elementParameters.empty() || neighbour.elementParameters.empty()) return;
    const double offset = neighbour.elementParameters.front() * m_stretch;
    moved.elementParameters.front() = offset;
    if (!m_isStart) return runToEnd(neighbour.elementParameters);
    const KdGePoint3d start = toPoint(m_moved.position) + toVector(m_moved.miter) * offset;
    shift(moved, (toPoint(before) - start).dotProduct(m_axis));
  }

  bool keepsElements(double length) const {
    const double lean = m_miter.dotProduct(m_axis) * (m_isStart ? 1 : -1);
    return std::ranges::all_of(m_neighbour.elements.toVector(), [=](const KdMLSegment& element) {
      const double offset = element.elementParameters.empty() ? 0 : element.elementParameters.front();
      return length + offset * lean >= kLeastShare * std::abs(length);
    });
  }

  // Distances are measured from where the element passes the vertex. The fill has no breaks before its start.
  static void shift(KdMLSegment& element, double by) {
    for (std::size_t i = 1; i < element.elementParameters.size(); ++i) element.elementParameters[i] += by;
    for (double& entry : element.areaFillParameters) entry = std::max(0.0, entry + by);
  }

  // An end of its own, which the last stretch has where the vertex was moved before, goes along with the vertex.
  static void runToEnd(std::vector<double>& list) {
    if (list.size() > 2 && list.size() % 2 == 1) list.pop_back();
  }

  KdDbMline& m_mline;
  const int m_index;
  const bool m_isStart;
  CMlineVertex m_moved;
  CMlineVertex m_neighbour;
  const KdGeVector3d m_axis;   // of the segment between the two
  const KdGeVector3d m_miter;  // of the neighbour
  double m_stretch = 1;        // of the offsets, from the neighbour's miter to the new one
};

}  // namespace

void CMlineEdit::changePTPosition(KdDbMline* mline, int vertex, const double* point, double (**ptList)[3]) {
  const int last = mline ? mline->numVertices() - 1 : -1;
  if (last < 1 || (vertex != 0 && vertex != last) || mline->closedMline() || !ptList) return;
  int elements = 0;
  GetSegmentsSize(mline, &elements);
  VertexMove move(*mline, vertex);
  move.moveTo(point);
  move.keepInPlace(static_cast<std::size_t>(elements), ptList, vertex);
  move.write();
}

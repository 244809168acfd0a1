#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/compare.h"
#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"
#include "mledit/MlineEdit.h"
#include "mledit/PointTable.h"

namespace {

constexpr double kEntryTolerance = 1e-10;

// One element line of a multiline as it stands now.
class ElementLine {
 public:
  ElementLine(const KdDbMline& mline, int element) : m_mline(mline), m_element(element), m_numVertices(mline.numVertices()) {
    m_numSegments = mline.closedMline() ? m_numVertices : m_numVertices - 1;
  }

  /// True when the segment exists and the element has parameters on it.
  bool hasSegment(int segment) const {
    return segment < m_numSegments &&
           !m_mline.segmentsAt(segment)[static_cast<std::size_t>(m_element)].elementParameters.empty();
  }
  void start(int segment, double out[3]) const { elementPoint(m_mline, segment, m_element, out); }
  void end(int segment, double out[3]) const { start((segment + 1) % m_numVertices, out); }

  double distanceFromStart(int segment, const double* point) const {
    double from[3];
    start(segment, from);
    return vexengine_distance(from, point);
  }
  bool isStart(int segment, double* point) const {
    double from[3];
    start(segment, from);
    return gx_pt_equal(point, from);
  }
  bool isEnd(int segment, double* point) const {
    double to[3];
    end(segment, to);
    return gx_pt_equal(point, to);
  }
  /// True when the point lies between the ends of the segment, seen in the plan.
  bool isBetweenEnds(int segment, const double* point) const {
    double from[3], to[3];
    start(segment, from);
    end(segment, to);
    return CMlineEdit::PositionConnection(point, from) != CMlineEdit::PositionConnection(point, to);
  }

 private:
  const KdDbMline& m_mline;
  int m_element, m_numVertices, m_numSegments;
};

struct CutEnd {
  double* point;
  int segment;
  double distance;  // from the element's point at the segment's start
};

bool isSameEntry(double entry, double distance) {
  return KvMath::isEqual(entry, distance, kEntryTolerance);
}

// An entry from which on a cut that begins at `distance` takes the list away.
bool matchesCutStart(double entry, double distance) {
  return entry > distance || isSameEntry(distance, 0.0) || isSameEntry(entry, distance);
}

// An entry up to which a cut that ends at `distance` takes the list away.
bool matchesCutEnd(double entry, double distance) {
  return entry < distance || isSameEntry(entry, distance);
}

int firstCutEntry(const std::vector<double>& list, double distance) {
  const int size = static_cast<int>(list.size());
  int index = 1;
  while (index < size && !matchesCutStart(list[static_cast<std::size_t>(index)], distance)) ++index;
  return index;
}

// The last entry that the cut takes away; 0 when there is none, as the offset always stays.
int lastCutEntry(const std::vector<double>& list, double distance) {
  int index = static_cast<int>(list.size()) - 1;
  while (index > 0 && !matchesCutEnd(list[static_cast<std::size_t>(index)], distance)) --index;
  return index;
}

// The list of the segment on which the cut begins.
void cutBehind(std::vector<double>& list, const ElementLine& line, const CutEnd& p) {
  list.erase(list.begin() + firstCutEntry(list, p.distance), list.end());
  if (!line.isStart(p.segment, p.point)) list.push_back(p.distance);
}

// The list of the segment on which the cut ends.
void cutAhead(std::vector<double>& list, const ElementLine& line, const CutEnd& q) {
  const int firstKept = lastCutEntry(list, q.distance) + 1;
  if (!line.isEnd(q.segment, q.point)) list.insert(list.begin() + firstKept, q.distance);
  list.erase(list.begin() + 1, list.begin() + firstKept);
}

// The list of the one segment on which the cut begins and ends. Where Q is the segment's start, neither entry is inserted:
// it is Q that both insertions ask. Our own decision.
void cutWithin(std::vector<double>& list, const ElementLine& line, const CutEnd& p, const CutEnd& q) {
  int first = firstCutEntry(list, p.distance), last = lastCutEntry(list, q.distance);
  const bool isInserting = !line.isStart(q.segment, q.point);
  if (isInserting && last % 2 == 1) list.insert(list.begin() + last + 1, q.distance);
  if (isInserting && first % 2 == 0) {
    list.insert(list.begin() + first, p.distance);
    ++first;
    ++last;
  }
  if (first <= last) list.erase(list.begin() + first, list.begin() + last + 1);
}

// Whether a point of an element line lies ahead of another, seen along an axis. It is the segment's axis that counts, along
// which the distances run: the element's own end may lie on its start, or behind it.
bool isAhead(const double* from, const double* point, const KdGeVector3d& axis) {
  const KdGeVector3d way{point[0] - from[0], point[1] - from[1], point[2] - from[2]};
  return CMlineEdit::PositionConnection(from, point) != 0 && way.dotProduct(axis) > 0;
}

// Puts the ends into their order along the line and off the vertices. False when there is nothing to cut between them.
bool arrange(const ElementLine& line, CutEnd& p, CutEnd& q) {
  if (!line.hasSegment(p.segment) || !line.hasSegment(q.segment)) return false;
  p.distance = line.distanceFromStart(p.segment, p.point);
  q.distance = line.distanceFromStart(q.segment, q.point);
  if (std::pair(p.segment, p.distance) > std::pair(q.segment, q.distance)) std::swap(p, q);
  if (line.isEnd(p.segment, p.point)) {
    ++p.segment;
    p.distance = 0;
  }
  if (line.isStart(q.segment, q.point)) {
    --q.segment;
    if (q.segment >= 0) q.distance = line.distanceFromStart(q.segment, q.point);
  }
  if (p.segment > q.segment || !line.hasSegment(p.segment) || !line.hasSegment(q.segment)) return false;
  return line.isBetweenEnds(p.segment, p.point) && line.isBetweenEnds(q.segment, q.point);
}

}  // namespace

void CMlineEdit::setRealVector(KdDbMline* mline, int vertex, int element) {
  int count = 0;
  GetNumLine(mline, &count, vertex, element);
  paramList.resize(static_cast<std::size_t>(count));
  GetLineArray(mline, paramList.data(), count, vertex, element);
}

bool CMlineEdit::writeRealVector(KdDbMline* mline, int vertex, int element) {
  return !paramList.empty() && mline->setElementParametersAt(vertex, element, paramList) == KdStatus::ok;
}

void CMlineEdit::Cut_Mongline(CMlineSegment* seg, int element, double* P, int segP, double* Q, int segQ) {
  if (!seg->mline || gx_pt_equal(P, Q)) return;
  const ElementLine line(*seg->mline, element);
  CutEnd p{P, segP, 0}, q{Q, segQ, 0};
  if (!arrange(line, p, q)) return;

  setRealVector(seg->mline, p.segment, element);
  if (p.segment == q.segment) {
    cutWithin(paramList, line, p, q);
    writeRealVector(seg->mline, p.segment, element);
    return;
  }
  cutBehind(paramList, line, p);
  writeRealVector(seg->mline, p.segment, element);
  setRealVector(seg->mline, q.segment, element);
  cutAhead(paramList, line, q);
  writeRealVector(seg->mline, q.segment, element);
  for (int v = p.segment + 1; v < q.segment; ++v) {
    setRealVector(seg->mline, v, element);
    if (paramList.size() < 2) continue;
    paramList.erase(paramList.begin() + 1, paramList.end());
    writeRealVector(seg->mline, v, element);
  }
}

void CMlineEdit::change41GroupNumber(CMlineSegment* seg, int element, int vertex, const double* X, bool keepBefore) {
  ptListInitialize(seg->mline, seg->numVertices, seg->numElements, &seg->ptList, &seg->ptListCount);
  if (!seg->hasElement(element) || vertex < 0 || vertex + 1 >= seg->numVertices) return;
  setRealVector(seg->mline, vertex, element);
  // Nothing of the element is drawn here that could end or start.
  if (paramList.size() < 2) return;
  const double *A = seg->ptList[element][vertex], *B = seg->ptList[element][vertex + 1];
  const KdGeVector3d axis = seg->mline->axisAt(vertex);
  keepBefore ? endAt(X, A, axis) : startAt(X, A, B, axis);
  writeRealVector(seg->mline, vertex, element);
}

// Makes the list in paramList end at X, on a segment that starts at A.
void CMlineEdit::endAt(const double* X, const double* A, const KdGeVector3d& axis) {
  const double d = vexengine_distance(A, X);
  if (!isAhead(A, X, axis)) {
    paramList.push_back(d);
    return;
  }
  const int last = lastCutEntry(paramList, d);
  const auto erased = static_cast<int>(paramList.size()) - 1 - last;
  paramList.resize(static_cast<std::size_t>(last) + 1);
  if (erased % 2 == 0 && !isSameEntry(paramList.back(), d)) paramList.push_back(d);
}

// Makes the list in paramList start at X, on the segment from A to B.
void CMlineEdit::startAt(const double* X, const double* A, const double* B, const KdGeVector3d& axis) {
  double d = vexengine_distance(A, X);
  if (!isAhead(B, X, -axis)) {
    paramList.push_back(d);
    return;
  }
  // Before A the element is extended backwards, past its vertex.
  if (!isAhead(A, X, axis)) d = -d;
  int last = static_cast<int>(paramList.size()) - 1;
  while (last > 1 && paramList[static_cast<std::size_t>(last)] >= d) --last;
  paramList.erase(paramList.begin() + 1, paramList.begin() + last + 1);
  if (last % 2 == 1) paramList.insert(paramList.begin() + 1, d);
}

void CMlineEdit::change71GroupNumber(KdDbMline* mline, int endCaps, int startCaps, int closed, int hasVertex) {
  int flags = 0;
  if (!GetFlag(mline, &flags)) return;
  constexpr int kLowBits = 15;
  const auto apply = [&](int wish, int bit) {
    if (wish == 1) flags |= bit;
    if (wish == 0) flags &= kLowBits & ~bit;
  };
  apply(hasVertex, kMlineHasVertices);
  apply(closed, kMlineIsClosed);
  apply(startCaps, kMlineStartCapsSuppressed);
  apply(endCaps, kMlineEndCapsSuppressed);
  SetFlag(mline, flags);
}

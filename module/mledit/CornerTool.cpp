#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"
#include "mledit/MlineVertices.h"

namespace {

constexpr double kDiagonalTolerance = 1e-6;  // of the diagonal's length; sine of an angle

bool isPoint(const double* point) {
  return std::all_of(point, point + 3, [](double v) { return std::isfinite(v); });
}

double planCross(const double* a, const double* b) {
  return a[0] * b[1] - a[1] * b[0];
}

double planDot(const double* a, const double* b) {
  return a[0] * b[0] + a[1] * b[1];
}

// Whether a point lies before `to`, on the line that comes from `from` or before that.
bool isShortOf(const double* point, const double* from, const double* to) {
  const double ahead[2] = {to[0] - point[0], to[1] - point[1]}, along[2] = {to[0] - from[0], to[1] - from[1]};
  return planDot(ahead, along) > 0;
}

// Turns the miter of a start or end vertex. Element lines and their gaps stay where they are in the drawing.
void turnMiter(CMlineVertex& end, bool isStart, const double* miter) {
  const double stretch = planCross(end.miter, end.axis) / planCross(miter, end.axis);
  const double shift = planDot(end.miter, end.axis) - stretch * planDot(miter, end.axis);
  std::vector<KdMLSegment> elements = end.elements.toVector();
  for (KdMLSegment& element : elements) {
    std::vector<double>& list = element.elementParameters;
    if (list.empty()) continue;
    const double offset = list.front();
    list.front() = offset * stretch;
    if (!isStart) continue;
    std::for_each(list.begin() + 1, list.end(), [=](double& entry) { entry += offset * shift; });
    for (double& entry : element.areaFillParameters) entry = std::max(0.0, entry + offset * shift);
  }
  end.elements = elements;
  std::copy_n(miter, 3, end.miter);
}

// The element of the other multiline at which an element ends. Elements are counted off, not matched by their distances, so
// where the counts differ inner ones can end beside the line that they make for. Our own decision.
int cornerColumn(int element, int ownCount, int otherCount, bool isSameOrder, bool isCountedFromFirst) {
  const int last = otherCount - 1;
  if (element == 0) return isSameOrder ? 0 : last;
  if (element == ownCount - 1) return isSameOrder ? last : 0;
  if (otherCount == 1) return 0;
  if (ownCount < otherCount) return isCountedFromFirst ? element : last - element;
  if (otherCount == 2) return isCountedFromFirst ? 0 : 1;
  return isSameOrder ? std::min(element, last - 1) : std::max(last - element, 1);
}

}  // namespace

// The corner of two segments. One multiline is joined with itself between its first and its last segment, whichever of its
// segments were picked and on whichever side of the corner.
class CMlineEdit::CornerJoint {
 public:
  explicit CornerJoint(CMlineEdit& engine);

  /// Segments of one multiline that meet at a vertex already.
  bool isBetweenNeighbours() const;
  /// Finds where the segments and their elements cross.
  bool find();
  /// Joins them. False, nothing changed, for picks that do not fit the multilines and where one multiline cannot be closed.
  /// Requires: find().
  bool make();

 private:
  struct Leg {
    CMlineSegment* seg;
    int segment;
    int elements, otherElements;
    bool keepsStart = true;  // what lies behind the corner goes, otherwise what lies before it

    int keptVertex() const { return keepsStart ? segment : segment + 1; }
    int movedVertex() const { return keepsStart ? segment + 1 : segment; }
  };

  bool chooseSides();
  bool isLeft(const Leg& leg) const;
  void moveEnd(Leg& leg);
  void mitre(const Leg& leg);
  void endElements(const Leg& leg);
  bool elementEnd(const Leg& leg, int element, double* end);

  CMlineEdit& m_engine;
  const bool m_isOneMultiline;
  Leg m_first, m_second;
  double m_corner[3] = {0, 0, 0};
};

int CMlineEdit::cmd_mledit_CornerJoint(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT CJ",
                          .prompts = kPairPrompts,
                          .acceptsFirst = &CMlineEdit::isOpenMlinePicked,
                          .acceptsSecond = &CMlineEdit::isOpenMlinePicked,
                          .edit = &CMlineEdit::cornerJoint,
                          .changes = CMlineTool::Changes::both});
}

void CMlineEdit::cornerJoint() {
  CornerJoint joint(*this);
  const bool isJoinedAlready = joint.isBetweenNeighbours();
  const bool isFound = !isJoinedAlready && joint.find();
  if (!isFound && !isJoinedAlready) refuse(kNoCrossingRefusal);
  if (!isFound || !joint.make()) discardUndoCopies();
}

bool CMlineEdit::getCornerPoint(int element, int ownCount, int otherCount, double* out, bool a, bool b, bool second) {
  if (element < 0 || element >= ownCount || otherCount < 1) return false;
  const int column = cornerColumn(element, ownCount, otherCount, a, b);
  const int row = second ? column : element;
  if (row >= ptCrossingCount) return false;
  const double* point = ptCrossing[row][second ? element : column];
  if (!isPoint(point)) return false;
  std::copy_n(point, 3, out);
  return true;
}

CMlineEdit::CornerJoint::CornerJoint(CMlineEdit& engine)
    : m_engine(engine), m_isOneMultiline(engine.segFirst.isSameEntity(engine.segSecond)) {
  CMlineSegment &a = engine.segFirst, &b = engine.segSecond;
  m_first = {&a, a.segment, a.ptListCount, b.ptListCount};
  m_second = {&b, b.segment, b.ptListCount, a.ptListCount};
}

bool CMlineEdit::CornerJoint::isBetweenNeighbours() const {
  return m_isOneMultiline && std::abs(m_second.segment - m_first.segment) == 1;
}

bool CMlineEdit::CornerJoint::find() {
  if (m_isOneMultiline) {
    m_second.seg = m_first.seg;
    m_first.segment = 0;
    m_first.keepsStart = false;
    m_second.segment = m_second.seg->numVertices - 2;
  }
  const Leg &a = m_first, &b = m_second;
  return m_engine.set_PTCrossing(a.seg, a.segment, b.seg, b.segment, &m_engine.ptCrossing, &m_engine.ptCrossingCount) &&
         isPoint(m_engine.ptCrossing[0][0]) &&
         m_engine.getXPoint(a.seg->mline, a.segment, b.seg->mline, b.segment, m_corner);
}

bool CMlineEdit::CornerJoint::make() {
  if (!m_isOneMultiline && !chooseSides()) return false;
  // A figure is closed on all its elements or not at all.
  if (m_isOneMultiline && !(isLeft(m_first) && isLeft(m_second))) return false;
  for (Leg* leg : {&m_first, &m_second}) moveEnd(*leg);
  for (const Leg* leg : {&m_first, &m_second}) {
    mitre(*leg);
    endElements(*leg);
  }
  return true;
}

// Each multiline keeps the side of the corner on which it was picked, seen along its element 0.
bool CMlineEdit::CornerJoint::chooseSides() {
  for (Leg* leg : {&m_first, &m_second}) {
    if (!m_engine.mappingToSpecifyMongline(leg->seg, 0)) return false;
    leg->keepsStart = leadsOn(leg->seg->ptList[0][leg->segment], leg->seg->origPoint, m_engine.ptCrossing[0][0]);
  }
  return true;
}

// Whether something of the segment is left, on the axis and on every element: a corner at the kept vertex or behind would
// turn it round.
bool CMlineEdit::CornerJoint::isLeft(const Leg& leg) const {
  const KdGePoint3d from = leg.seg->mline->vertexAt(leg.movedVertex()), to = leg.seg->mline->vertexAt(leg.keptVertex());
  const double fromPoint[3] = {from.x, from.y, from.z}, toPoint[3] = {to.x, to.y, to.z};
  if (!isShortOf(m_corner, fromPoint, toPoint)) return false;
  for (int e = 0; e < leg.elements; ++e) {
    const double(*line)[3] = leg.seg->ptList[e];
    if (!isShortOf(m_engine.ptCrossing[e][e], line[leg.movedVertex()], line[leg.keptVertex()])) return false;
  }
  return true;
}

// Takes away what lies beyond the corner and moves the end that remains there.
void CMlineEdit::CornerJoint::moveEnd(Leg& leg) {
  CMlineSegment* seg = leg.seg;
  if (leg.keepsStart) {
    m_engine.removeEndVertices(seg, leg.segment + 2, seg->numVertices - leg.segment - 2);
  } else {
    m_engine.removeEndVertices(seg, 0, leg.segment);
    leg.segment = 0;
  }
  m_engine.refreshPoints(seg);
  m_engine.changePTPosition(seg->mline, leg.movedVertex(), m_corner, seg->ptList);
  m_engine.change71GroupNumber(seg->mline, leg.keepsStart ? 1 : -1, leg.keepsStart ? -1 : 1, -1, 1);
}

// Where the diagonal between the outer elements runs through the corner of the axes it becomes the miter, so that the fills
// of both multilines meet on it. Otherwise they keep their square ends.
void CMlineEdit::CornerJoint::mitre(const Leg& leg) {
  double from[3], to[3];
  if (!elementEnd(leg, 0, from) || !elementEnd(leg, leg.elements - 1, to)) return;
  double diagonal[3] = {to[0] - from[0], to[1] - from[1], 0};
  const double toCorner[3] = {m_corner[0] - from[0], m_corner[1] - from[1], 0}, square = planDot(diagonal, diagonal);
  if (square == 0 || std::abs(planCross(diagonal, toCorner)) > kDiagonalTolerance * square) return;

  CMlineVertex end = readMlineVertex(*leg.seg->mline, leg.movedVertex());
  const double length = std::copysign(std::sqrt(square), planDot(diagonal, end.miter));
  for (double& coordinate : diagonal) coordinate /= length;
  // Elements that lie on one line have no miter.
  if (std::abs(planCross(diagonal, end.axis)) <= kDiagonalTolerance) return;
  turnMiter(end, !leg.keepsStart, diagonal);
  writeMlineVertex(*leg.seg->mline, leg.movedVertex(), end);
}

void CMlineEdit::CornerJoint::endElements(const Leg& leg) {
  double end[3];
  for (int e = 0; e < leg.elements; ++e) {
    if (elementEnd(leg, e, end)) m_engine.change41GroupNumber(leg.seg, e, leg.segment, end, leg.keepsStart);
  }
}

// Where both keep the start, or both the end, they run against each other: the first element of one is then on the side of
// the last of the other. One multiline joined with itself always runs on, so that each element meets itself.
bool CMlineEdit::CornerJoint::elementEnd(const Leg& leg, int element, double* end) {
  const bool isSameOrder = m_first.keepsStart != m_second.keepsStart;
  return m_engine.getCornerPoint(element, leg.elements, leg.otherElements, end, isSameOrder, leg.keepsStart,
                                 &leg == &m_second);
}

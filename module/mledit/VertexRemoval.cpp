#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

#include "geometry/compare.h"
#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"
#include "mledit/MlineEdit.h"
#include "mledit/MlineVertices.h"

#include <kdrx/ed.h>

namespace {

constexpr double kEntryTolerance = 1e-10;
constexpr double kLeastMiterAngle = 0.005;  // radians; stands for 0, which would put the elements nowhere
constexpr double kSquare = std::numbers::pi / 2;

struct CapAngles {
  double start = kSquare, end = kSquare;
};

CapAngles capAngles(const KdDbMline& mline) {
  KdDbMlineStyle* style = nullptr;
  GetMlStyle(&mline, &style);
  if (!style) return {};
  const CapAngles angles{style->startAngle(), style->endAngle()};
  style->close();
  return angles;
}

// +1 when the multiline faces the same way as the user's plane, else -1.
double facing(const double* normal) {
  KdResbuf x, y;
  double z[3] = {0, 0, 1};
  if (kdedGetVar(L"UCSXDIR", &x) == kKdInputNormal && kdedGetVar(L"UCSYDIR", &y) == kKdInputNormal) {
    gx_crossproduct(x.value.point, y.value.point, z);
  }
  return normal[2] * z[2] > 0 ? 1 : -1;
}

double sineOf(double angle) {
  return std::sin(angle == 0 ? kLeastMiterAngle : angle);
}

// The removal of one vertex. Indices are those of after the removal unless they are called old.
class VertexRemoval {
 public:
  /// Requires: the record is up to date, and enough vertices remain.
  VertexRemoval(CMlineEdit& engine, CMlineSegment& seg, int oldRemoved)
      : m_engine(engine),
        m_seg(seg),
        m_removed(oldRemoved),
        m_isClosed(seg.isClosed()),
        m_count(seg.numVertices - 1),
        m_directions(*seg.mline) {
    GetNormal(seg.mline, m_normal);
  }

  void run() {
    if (m_seg.mline->removeVerticesAt(m_removed, 1) != KdStatus::ok) return;
    const int before = m_removed > 0 ? m_removed - 1 : m_isClosed ? m_count - 1 : -1;
    const int behind = m_removed < m_count ? m_removed : m_isClosed ? 0 : -1;
    if (before >= 0) joinAt(before);
    if (behind >= 0) turnAt(behind);
  }

 private:
  const double* oldPoint(int element, int index) const {
    return m_seg.ptList[element][index < m_removed ? index : index + 1];
  }
  int next(int index) const { return index + 1 < m_count ? index + 1 : m_isClosed ? 0 : -1; }
  int previous(int index) const { return index > 0 ? index - 1 : m_isClosed ? m_count - 1 : -1; }

  void joinAt(int index);
  void turnAt(int index);
  void aim(CMlineVertex& at, int index);
  double distanceFromAxis(int element);
  void shiftBreaks(std::vector<double>& list, const double* miter, int index, int element);

  CMlineEdit& m_engine;
  CMlineSegment& m_seg;
  const int m_removed;
  const bool m_isClosed;
  const int m_count;
  CMlineDirections m_directions;
  double m_normal[3];
};

// Axis and miter of a vertex, from where the first element passed it and its neighbours.
void VertexRemoval::aim(CMlineVertex& at, int index) {
  const int to = next(index), from = previous(index);
  const double* here = oldPoint(0, index);
  if (to >= 0 && from >= 0) {
    const double toNext = m_directions.angle(here, oldPoint(0, to));
    const double toPrevious = m_directions.angle(here, oldPoint(0, from));
    m_directions.set(at, toNext, CMlineDirections::bisector(toNext, toPrevious));
    return;
  }
  const CapAngles caps = capAngles(*m_seg.mline);
  const double axis = to >= 0 ? m_directions.angle(here, oldPoint(0, to)) : m_directions.angle(oldPoint(0, from), here);
  m_directions.set(at, axis, axis + facing(m_normal) * (to >= 0 ? caps.start : caps.end));
}

double VertexRemoval::distanceFromAxis(int element) {
  const KdGePoint3d first = m_seg.mline->vertexAt(0), second = m_seg.mline->vertexAt(1);
  const double from[3] = {first.x, first.y, first.z}, to[3] = {second.x, second.y, second.z};
  double distance = 0;
  m_engine.Distance_PointToLine(oldPoint(element, 0), from, to, m_normal, &distance, nullptr);
  return distance;
}

// The start of the segment that now runs across the removed vertex.
void VertexRemoval::joinAt(int index) {
  CMlineVertex at = readMlineVertex(*m_seg.mline, index);
  aim(at, index);
  const double sine = sineOf(m_directions.angle(at.miter) - m_directions.angle(at.axis));
  for (int e = 0; e < static_cast<int>(at.elements.size()) && e < m_seg.ptListCount; ++e) {
    at.setParameters(static_cast<std::size_t>(e), std::array{distanceFromAxis(e) / sine, 0.0});
  }
  writeMlineVertex(*m_seg.mline, index, at);
}

// The start of the segment behind the joined one: the elements start elsewhere, their breaks stay where they are. Vertex 0
// behind the last one of a closed multiline keeps its axis and miter.
void VertexRemoval::turnAt(int index) {
  CMlineVertex at = readMlineVertex(*m_seg.mline, index);
  if (index == m_removed) aim(at, index);
  const double sine = sineOf(std::numbers::pi + m_directions.angle(at.axis) - m_directions.angle(at.miter));
  for (int e = 0; e < static_cast<int>(at.elements.size()) && e < m_seg.ptListCount; ++e) {
    const auto element = static_cast<std::size_t>(e);
    const std::span<const double> old = at.elements[element].elementParameters;
    if (old.empty()) continue;
    std::vector<double> list(old.begin(), old.end());
    list[0] = distanceFromAxis(e) / sine;
    if (next(index) >= 0) shiftBreaks(list, at.miter, index, e);
    at.setParameters(element, list);
  }
  writeMlineVertex(*m_seg.mline, index, at);
}

// An element that does not start at its vertex has its offset shifted, and its first break stays. Our own decision.
void VertexRemoval::shiftBreaks(std::vector<double>& list, const double* miter, int index, int element) {
  const double* first = oldPoint(0, index);
  double start[3];
  for (int k = 0; k < 3; ++k) start[k] = first[k] + miter[k] * list[0];
  const double* oldStart = oldPoint(element, index);
  double shift = vexengine_distance(start, oldStart);
  if (!CMlineEdit::isSameDirection(start, oldStart, oldPoint(element, next(index)))) shift = -shift;
  for (std::size_t i = 2; i < list.size(); ++i) list[i] += shift;
  if (list.size() > 1 && !KvMath::isEqual(list[1], 0.0, kEntryTolerance)) list[0] += shift;
}

}  // namespace

void CMlineEdit::delete_OneVertex(CMlineSegment* seg, int vertex) {
  refreshPoints(seg);
  const int least = seg->isClosed() ? 4 : 3;
  if (vertex < 0 || vertex >= seg->numVertices || seg->numVertices < least || !seg->hasElement(0)) return;
  VertexRemoval(*this, *seg, vertex).run();
}

// What the removal of one does to its neighbour is gone with the next, so only the last one is removed as such.
void CMlineEdit::removeEndVertices(CMlineSegment* seg, int first, int count) {
  if (count < 1) return;
  if (seg->mline->removeVerticesAt(first, count - 1) == KdStatus::ok) delete_OneVertex(seg, first);
}

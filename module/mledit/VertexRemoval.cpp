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
        m_vertices(readMlineVertices(*seg.mline)),
        m_directions(*seg.mline) {
    GetNormal(seg.mline, m_normal);
    m_vertices.erase(m_vertices.begin() + m_removed);
    m_count = static_cast<int>(m_vertices.size());
  }

  void run() {
    const int before = m_removed > 0 ? m_removed - 1 : m_isClosed ? m_count - 1 : -1;
    if (before >= 0) aim(before);
    if (m_removed < m_count) aim(m_removed);
    if (before >= 0) joinLists(before);
    const int behind = m_removed < m_count ? m_removed : m_isClosed ? 0 : -1;
    if (behind >= 0) turnLists(behind);
    writeMlineVertices(*m_seg.mline, m_vertices);
  }

 private:
  CMlineVertex& vertex(int index) { return m_vertices[static_cast<std::size_t>(index)]; }
  const double* oldPoint(int element, int index) const {
    return m_seg.ptList[element][index < m_removed ? index : index + 1];
  }
  int next(int index) const { return index + 1 < m_count ? index + 1 : m_isClosed ? 0 : -1; }
  int previous(int index) const { return index > 0 ? index - 1 : m_isClosed ? m_count - 1 : -1; }

  void aim(int index);
  double distanceFromAxis(int element);
  void joinLists(int index);
  void turnLists(int index);
  void shiftBreaks(std::vector<double>& list, int index, int element);

  CMlineEdit& m_engine;
  CMlineSegment& m_seg;
  const int m_removed;
  const bool m_isClosed;
  int m_count;
  std::vector<CMlineVertex> m_vertices;
  CMlineDirections m_directions;
  double m_normal[3];
};

// Axis and miter of a vertex, from where the first element passed it and its neighbours.
void VertexRemoval::aim(int index) {
  const int to = next(index), from = previous(index);
  const double* here = oldPoint(0, index);
  if (to >= 0 && from >= 0) {
    const double toNext = m_directions.angle(here, oldPoint(0, to));
    const double toPrevious = m_directions.angle(here, oldPoint(0, from));
    m_directions.set(vertex(index), toNext, CMlineDirections::bisector(toNext, toPrevious));
    return;
  }
  const CapAngles caps = capAngles(*m_seg.mline);
  const double axis = to >= 0 ? m_directions.angle(here, oldPoint(0, to)) : m_directions.angle(oldPoint(0, from), here);
  m_directions.set(vertex(index), axis, axis + facing(m_normal) * (to >= 0 ? caps.start : caps.end));
}

double VertexRemoval::distanceFromAxis(int element) {
  double distance = 0;
  m_engine.Distance_PointToLine(oldPoint(element, 0), vertex(0).position, vertex(1).position, m_normal, &distance, nullptr);
  return distance;
}

// The lists of the segment that now runs across the removed vertex.
void VertexRemoval::joinLists(int index) {
  CMlineVertex& at = vertex(index);
  const double sine = sineOf(m_directions.angle(at.miter) - m_directions.angle(at.axis));
  for (int e = 0; e < static_cast<int>(at.elements.size()) && e < m_seg.ptListCount; ++e) {
    at.setParameters(static_cast<std::size_t>(e), std::array{distanceFromAxis(e) / sine, 0.0});
  }
}

// The lists of the segment behind the joined one: the elements start elsewhere, their breaks stay where they are.
void VertexRemoval::turnLists(int index) {
  CMlineVertex& at = vertex(index);
  const double sine = sineOf(std::numbers::pi + m_directions.angle(at.axis) - m_directions.angle(at.miter));
  for (int e = 0; e < static_cast<int>(at.elements.size()) && e < m_seg.ptListCount; ++e) {
    const auto element = static_cast<std::size_t>(e);
    const std::span<const double> old = at.elements[element].elementParameters;
    if (old.empty()) continue;
    std::vector<double> list(old.begin(), old.end());
    list[0] = distanceFromAxis(e) / sine;
    if (next(index) >= 0) shiftBreaks(list, index, e);
    at.setParameters(element, list);
  }
}

// An element that does not start at its vertex has its offset shifted, and its first break stays. Our own decision.
void VertexRemoval::shiftBreaks(std::vector<double>& list, int index, int element) {
  const double *first = oldPoint(0, index), *miter = vertex(index).miter;
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
  if (count > 1) {
    std::vector<CMlineVertex> vertices = readMlineVertices(*seg->mline);
    vertices.erase(vertices.begin() + first, vertices.begin() + first + count - 1);
    writeMlineVertices(*seg->mline, std::move(vertices));
  }
  delete_OneVertex(seg, first);
}

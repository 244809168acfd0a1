#include "mledit/MlineVertices.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"

#include <kdrx/ed.h>

namespace {

template <class Triple>
void store(const Triple& from, double to[3]) {
  to[0] = from.x;
  to[1] = from.y;
  to[2] = from.z;
}

KdMlineVertex toStore(const CMlineVertex& vertex) {
  const auto& [p, a, m, elements] = vertex;
  return {{p[0], p[1], p[2]}, {a[0], a[1], a[2]}, {m[0], m[1], m[2]}, elements};
}

// Where the host knows no such system the coordinates stay as they are.
void convert(const double* in, const KdResbuf& from, const KdResbuf& to, int isDisplacement, double* out) {
  std::copy_n(in, 3, out);
  static_cast<void>(kdedTrans(in, &from, &to, isDisplacement, out));
}

}  // namespace

void CMlineVertex::setParameters(std::size_t element, std::span<const double> values) {
  elements.set(element, {elements[element].areaFillParameters, values});
}

CMlineVertex readMlineVertex(const KdDbMline& mline, int index) {
  const KdMlineVertex& stored = mline.vertices()[static_cast<std::size_t>(index)];
  CMlineVertex vertex;
  store(stored.position, vertex.position);
  store(stored.axis, vertex.axis);
  store(stored.miter, vertex.miter);
  vertex.elements = stored.elements;
  return vertex;
}

bool writeMlineVertex(KdDbMline& mline, int index, const CMlineVertex& vertex) {
  return mline.setVertexAt(index, toStore(vertex)) == KdStatus::ok;
}

bool insertMlineVertex(KdDbMline& mline, int index, const CMlineVertex& vertex) {
  return mline.insertVertexAt(index, toStore(vertex)) == KdStatus::ok;
}

// The target system is named by a short integer that is read where the normal is stored: for normals without an x component
// that is 0, the world. Our own decision, which keeps the miters of the vertex tools on the left of the path, seen from
// above.
CMlineDirections::CMlineDirections(const KdDbMline& mline) {
  m_world.restype = m_target.restype = kKdResultShort;
  m_world.value.shortInteger = kKdWorld;
  GetNormal(&mline, m_target.value.point);
}

double CMlineDirections::angle(const double* from, const double* to) const {
  double a[3], b[3];
  convert(from, m_world, m_target, 0, a);
  convert(to, m_world, m_target, 0, b);
  return vexengine_angle(a, b);
}

double CMlineDirections::angle(const double* vector) const {
  const double origin[3] = {0, 0, 0};
  double converted[3];
  convert(vector, m_world, m_target, 1, converted);
  return vexengine_angle(origin, converted);
}

void CMlineDirections::set(CMlineVertex& vertex, double axisAngle, double miterAngle) const {
  const double axis[3] = {std::cos(axisAngle), std::sin(axisAngle), 0};
  const double miter[3] = {std::cos(miterAngle), std::sin(miterAngle), 0};
  convert(axis, m_target, m_world, 1, vertex.axis);
  convert(miter, m_target, m_world, 1, vertex.miter);
}

double CMlineDirections::bisector(double toNext, double toPrevious) {
  const double mean = (toNext + toPrevious) / 2;
  if (toNext > toPrevious) return mean + std::numbers::pi;
  return toNext == toPrevious ? mean + std::numbers::pi / 2 : mean;
}

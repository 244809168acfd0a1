#include "mledit/MlineVertices.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"

#include <kdrx/ed.h>

namespace {

using Triple = double[3];
using Triples = std::unique_ptr<Triple[]>;

Triples makeTriples(std::size_t count) {
  return std::make_unique<Triple[]>(count);
}

template <class Coordinates>
void store(const Coordinates& from, Triple to) {
  to[0] = from.x;
  to[1] = from.y;
  to[2] = from.z;
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

std::vector<CMlineVertex> readMlineVertices(const KdDbMline& mline) {
  std::vector<CMlineVertex> vertices;
  vertices.reserve(static_cast<std::size_t>(mline.numVertices()) + 1);  // an edit may add one
  for (int i = 0; i < mline.numVertices(); ++i) {
    CMlineVertex& vertex = vertices.emplace_back();
    store(mline.vertexAt(i), vertex.position);
    store(mline.axisAt(i), vertex.axis);
    store(mline.miterAt(i), vertex.miter);
    vertex.elements = mline.segmentsAt(i);
  }
  return vertices;
}

bool writeMlineVertices(KdDbMline& mline, const std::vector<CMlineVertex>& vertices) {
  const Triples triples = makeTriples(vertices.size());
  const auto write = [&](int (*set)(KdDbMline*, const Triple*), Triple CMlineVertex::*member) {
    for (std::size_t i = 0; i < vertices.size(); ++i) std::copy_n(vertices[i].*member, 3, triples[i]);
    return set(&mline, triples.get()) != 0;
  };
  if (!SetNumVertices(&mline, static_cast<int>(vertices.size())) || !write(SetVertices, &CMlineVertex::position))
    return false;
  if (!write(SetAxis, &CMlineVertex::axis) || !write(SetMilters, &CMlineVertex::miter)) return false;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    if (mline.setSegmentsAt(static_cast<int>(i), vertices[i].elements) != KdStatus::ok) return false;
  }
  return true;
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

#include "mledit/MlineVertices.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <utility>

#include "geometry/vectors.h"
#include "mlaccess/mline_access.h"

#include <kdrx/ed.h>

namespace {

using Triple = double[3];
using Triples = std::unique_ptr<Triple[]>;

Triples makeTriples(std::size_t count) {
  return std::make_unique<Triple[]>(count);
}

// Where the host knows no such system the coordinates stay as they are.
void convert(const double* in, const KdResbuf& from, const KdResbuf& to, int isDisplacement, double* out) {
  std::copy_n(in, 3, out);
  static_cast<void>(kdedTrans(in, &from, &to, isDisplacement, out));
}

}  // namespace

std::vector<CMlineVertex> readMlineVertices(const KdDbMline& mline) {
  const auto count = static_cast<std::size_t>(mline.numVertices());
  const Triples positions = makeTriples(count), axes = makeTriples(count), miters = makeTriples(count);
  GetVertices(&mline, positions.get());
  GetAxis(&mline, axes.get());
  GetMilters(&mline, miters.get());
  std::vector<CMlineVertex> vertices(count);
  std::vector<std::vector<KdMLSegment>> parameters;
  for (std::size_t i = 0; i < count; ++i) {
    std::copy_n(positions[i], 3, vertices[i].position);
    std::copy_n(axes[i], 3, vertices[i].axis);
    std::copy_n(miters[i], 3, vertices[i].miter);
    const bool isRead = mline.getParametersAt(static_cast<int>(i), parameters) == KdStatus::ok;
    if (isRead && !parameters.empty()) vertices[i].elements = std::move(parameters.front());
  }
  return vertices;
}

bool writeMlineVertices(KdDbMline& mline, std::vector<CMlineVertex> vertices) {
  const std::size_t count = vertices.size();
  const Triples positions = makeTriples(count), axes = makeTriples(count), miters = makeTriples(count);
  for (std::size_t i = 0; i < count; ++i) {
    std::copy_n(vertices[i].position, 3, positions[i]);
    std::copy_n(vertices[i].axis, 3, axes[i]);
    std::copy_n(vertices[i].miter, 3, miters[i]);
  }
  if (!SetNumVertices(&mline, static_cast<int>(count)) || !SetVertices(&mline, positions.get())) return false;
  if (!SetAxis(&mline, axes.get()) || !SetMilters(&mline, miters.get())) return false;
  std::vector<std::vector<KdMLSegment>> parameters(1);
  for (std::size_t i = 0; i < count; ++i) {
    parameters.front() = std::move(vertices[i].elements);
    if (mline.setParametersAt(static_cast<int>(i), parameters) != KdStatus::ok) return false;
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

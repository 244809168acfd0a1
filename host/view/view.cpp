#include "view/view.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

#include "geom/transform.h"

KdGsView::~KdGsView() = default;

namespace torva::view {
namespace {

constexpr std::wstring_view kActiveViewport = L"*ACTIVE";

/// What a VPORT record says.
struct Viewport {
  KdGePoint3d center;
  double height = 10;
  KdGeVector3d direction{0, 0, 1};
  KdGePoint3d target;
  double twistRad = 0;
};

void readGroup(const dxf::Group& group, Viewport& viewport) {
  const auto value = group.real();
  if (!value) return;
  switch (group.code) {
    case 12:
      viewport.center.x = *value;
      break;
    case 22:
      viewport.center.y = *value;
      break;
    case 40:
      viewport.height = *value;
      break;
    case 16:
      viewport.direction.x = *value;
      break;
    case 26:
      viewport.direction.y = *value;
      break;
    case 36:
      viewport.direction.z = *value;
      break;
    case 17:
      viewport.target.x = *value;
      break;
    case 27:
      viewport.target.y = *value;
      break;
    case 37:
      viewport.target.z = *value;
      break;
    case 51:
      viewport.twistRad = *value * (std::numbers::pi / 180);
      break;
    default:
      break;
  }
}

Viewport activeViewport(const db::Database& database) {
  Viewport viewport;
  const dxf::RecordId record = database.findSymbol(dxf::RecordType::vport, kActiveViewport);
  if (record == dxf::kNoRecord) return viewport;
  for (const dxf::Group& group : database.file().groups(record)) {
    if (group.code == 1001) break;
    readGroup(group, viewport);
  }
  return viewport;
}

}  // namespace

View View::ofDrawing(const db::Database& database, int widthPx, int heightPx) {
  const Viewport viewport = activeViewport(database);
  View view;
  view.resize(widthPx, heightPx);
  const geom::Transform plane = geom::Transform::fromExtrusion(viewport.direction);
  const double c = std::cos(viewport.twistRad), s = std::sin(viewport.twistRad);
  // The twist turns the picture counter-clockwise, so the display's axes turn the other way in the world.
  view.m_xAxis = plane.x * c - plane.y * s;
  view.m_yAxis = plane.x * s + plane.y * c;
  view.m_zAxis = plane.z;
  view.m_targetWcs = viewport.target;
  const bool isUsable = std::isfinite(viewport.height) && viewport.height > 0;
  view.set(viewport.center, isUsable ? viewport.height : View().m_height);
  return view;
}

double View::unitsPerPixel(double scale) const {
  return m_height / m_heightPx * scale;
}

void View::worldToDisplay(const double world[3], double display[3]) const {
  const KdGePoint3d p = toDisplay({world[0], world[1], world[2]});
  display[0] = p.x, display[1] = p.y, display[2] = p.z;
}

void View::displayToWorld(const double display[3], double world[3]) const {
  const KdGePoint3d p = toWorld({display[0], display[1], display[2]});
  world[0] = p.x, world[1] = p.y, world[2] = p.z;
}

KdGePoint3d View::toDisplay(const KdGePoint3d& world) const {
  const KdGeVector3d v = world - m_targetWcs;
  return {m_xAxis.dotProduct(v), m_yAxis.dotProduct(v), m_zAxis.dotProduct(v)};
}

KdGePoint3d View::toWorld(const KdGePoint3d& display) const {
  return m_targetWcs + (m_xAxis * display.x + m_yAxis * display.y + m_zAxis * display.z);
}

bool View::isParallelTo(const View& view) const {
  constexpr KdGeTol kSame{0, 0};
  return m_targetWcs.isEqualTo(view.m_targetWcs, kSame) && m_xAxis.isEqualTo(view.m_xAxis, kSame) &&
         m_yAxis.isEqualTo(view.m_yAxis, kSame);
}

void View::set(const KdGePoint3d& centerDcs, double height) {
  m_centerDcs = centerDcs;
  m_height = height;
}

void View::fit(const geom::Box3& boxDcs, double margin) {
  if (boxDcs.isEmpty()) return;
  const KdGeVector3d size = boxDcs.max - boxDcs.min;
  const double height = std::max(size.y, size.x * m_heightPx / m_widthPx) * (1 + 2 * margin);
  // A single point has no size to fit; the height stays then.
  set(boxDcs.min + size * 0.5, height > 0 && std::isfinite(height) ? height : m_height);
}

void View::resize(int widthPx, int heightPx) {
  m_widthPx = std::max(widthPx, 1);
  m_heightPx = std::max(heightPx, 1);
}

}  // namespace torva::view

#include "draw/sketch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace torva::draw {
namespace {

bool areFinite(const std::vector<KdGePoint3d>& points) {
  return std::all_of(points.begin(), points.end(), [](const KdGePoint3d& p) { return geom::isFinite(p); });
}

}  // namespace

void Sketch::line(const KdGePoint3d& from, const KdGePoint3d& to, std::uint32_t appearance) {
  polyline({from, to}, false, appearance);
}

void Sketch::polyline(std::vector<KdGePoint3d> points, bool isClosed, std::uint32_t appearance) {
  add({std::move(points), isClosed}, appearance);
}

void Sketch::curve(std::vector<KdGePoint3d> points, std::uint32_t appearance) {
  add({std::move(points), false, true}, appearance);
}

void Sketch::add(Polyline polyline, std::uint32_t appearance) {
  for (KdGePoint3d& p : polyline.points) p = m_toWorld(p);
  if (polyline.points.empty() || !areFinite(polyline.points)) return;
  m_list.primitives.push_back({std::move(polyline), appearance});
}

void Sketch::arc(const Arc& arc, std::uint32_t appearance) {
  const Arc mapped{m_toWorld(arc.center), m_toWorld(arc.xAxis), m_toWorld(arc.yAxis), arc.startRad, arc.sweepRad};
  const bool isDrawable = geom::isFinite(mapped.center) && geom::isFinite(mapped.xAxis) && geom::isFinite(mapped.yAxis) &&
                          std::isfinite(arc.startRad) && std::isfinite(arc.sweepRad);
  if (isDrawable) m_list.primitives.push_back({mapped, appearance});
}

void Sketch::fill(std::vector<std::vector<KdGePoint3d>> loops, std::uint32_t appearance) {
  for (auto& loop : loops) {
    for (KdGePoint3d& p : loop) p = m_toWorld(p);
  }
  std::erase_if(loops, [](const auto& loop) { return loop.size() < 3 || !areFinite(loop); });
  if (!loops.empty()) m_list.primitives.push_back({Fill{std::move(loops)}, appearance});
}

void Sketch::text(Text text, std::uint32_t appearance) {
  text.origin = m_toWorld(text.origin);
  text.xAxis = m_toWorld(text.xAxis);
  text.yAxis = m_toWorld(text.yAxis);
  if (text.text.empty() || !geom::isFinite(text.origin) || !geom::isFinite(text.xAxis) || !geom::isFinite(text.yAxis))
    return;
  m_list.primitives.push_back({std::move(text), appearance});
}

Arc circularArc(const KdGePoint3d& center, double radius, double startRad, double endRad) {
  constexpr double kTurn = 2 * std::numbers::pi;
  double sweep = endRad - startRad;
  sweep -= kTurn * std::floor(sweep / kTurn);
  if (sweep <= 0) sweep = kTurn;
  return {center, {radius, 0, 0}, {0, radius, 0}, startRad, sweep};
}

}  // namespace torva::draw

#include "view/flat_shapes.h"

#include <algorithm>
#include <limits>
#include <numbers>

namespace torva::view {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
/// Axes of an ellipse that differ by less than this share make a circle.
constexpr double kCircleTolerance = 1e-12;
/// What lies beyond the border of a window by this share of its coordinates counts as within: it is rounding.
constexpr double kBorderTolerance = 1e-12;

/// Narrows the part [from, to] of a segment to where one coordinate is at most `half`; false when it is nowhere.
bool clip(double start, double step, double half, double& from, double& to) {
  if (step == 0) return std::abs(start) <= half;
  const double a = (-half - start) / step, b = (half - start) / step;
  from = std::max(from, std::min(a, b));
  to = std::min(to, std::max(a, b));
  return from <= to;
}

}  // namespace

double dot(const Point2& a, const Point2& b) {
  return a.x * b.x + a.y * b.y;
}

double cross(const Point2& a, const Point2& b) {
  return a.x * b.y - a.y * b.x;
}

double nearestShare(const Point2& a, const Point2& b) {
  const Point2 along = b - a;
  const double squared = dot(along, along);
  return squared == 0 ? 0 : std::clamp(-dot(a, along) / squared, 0.0, 1.0);
}

double segmentDistance(const Point2& a, const Point2& b) {
  const Point2 along = b - a;
  const double squared = dot(along, along), share = -dot(a, along);
  if (share <= 0 || squared == 0) return a.length();
  if (share >= squared) return b.length();
  return std::abs(cross(a, along)) / std::sqrt(squared);
}

bool segmentMeets(const Point2& a, const Point2& b, const Point2& half) {
  double from = 0, to = 1;
  return clip(a.x, b.x - a.x, half.x, from, to) && clip(a.y, b.y - a.y, half.y, from, to);
}

bool isWithin(const Point2& p, const Point2& half) {
  return std::abs(p.x) <= half.x && std::abs(p.y) <= half.y;
}

Point2 Arc2::at(double angleRad) const {
  return center + xAxis * std::cos(angleRad) + yAxis * std::sin(angleRad);
}

bool Arc2::holds(double angleRad) const {
  const double offset = angleRad - std::min(startRad, startRad + sweepRad);
  return offset - kTurn * std::floor(offset / kTurn) <= std::abs(sweepRad);
}

double Arc2::clamped(double angleRad) const {
  if (holds(angleRad)) return angleRad;
  const double fromStart = std::abs(std::remainder(angleRad - startRad, kTurn));
  const double fromEnd = std::abs(std::remainder(angleRad - startRad - sweepRad, kTurn));
  return fromStart <= fromEnd ? startRad : startRad + sweepRad;
}

bool Arc2::isCircle() const {
  const double x = dot(xAxis, xAxis), y = dot(yAxis, yAxis);
  return std::abs(x - y) <= kCircleTolerance * x && std::abs(dot(xAxis, yAxis)) <= kCircleTolerance * x;
}

bool Arc2::meets(const Point2& half) const {
  if (isWithin(at(startRad), half) || isWithin(at(startRad + sweepRad), half)) return true;
  for (const double side : {-1.0, 1.0}) {
    if (crosses(xAxis.x, yAxis.x, side * half.x - center.x, half) ||
        crosses(xAxis.y, yAxis.y, side * half.y - center.y, half))
      return true;
  }
  return false;
}

/// Whether the arc meets one side: solves a cos t + b sin t = target.
bool Arc2::crosses(double a, double b, double target, const Point2& half) const {
  const double size = std::hypot(a, b);
  if (size < std::abs(target) || size == 0) return false;
  const double middle = std::atan2(b, a), spread = std::acos(target / size);
  const Point2 allowed = half * (1 + kBorderTolerance);
  return (holds(middle + spread) && isWithin(at(middle + spread), allowed)) ||
         (holds(middle - spread) && isWithin(at(middle - spread), allowed));
}

double Arc2::nearestRad() const {
  const double angle = isCircle() ? std::atan2(-dot(center, yAxis), -dot(center, xAxis)) : nearestOfEllipseRad();
  const double endRad = startRad + sweepRad;
  const double nearerEnd = at(startRad).length() <= at(endRad).length() ? startRad : endRad;
  return holds(angle) && at(angle).length() <= at(nearerEnd).length() ? angle : nearerEnd;
}

double Arc2::distance() const {
  const double angle = nearestRad();
  const bool isAtEnd = angle == startRad || angle == startRad + sweepRad;
  return isCircle() && !isAtEnd ? std::abs(center.length() - xAxis.length()) : at(angle).length();
}

double Arc2::nearestOfEllipseRad() const {
  constexpr int kSamples = 128, kRefinements = 60;
  const auto angleOf = [&](int sample) { return startRad + sweepRad * sample / kSamples; };
  int best = 0;
  double least = std::numeric_limits<double>::infinity();
  for (int i = 0; i <= kSamples; ++i) {
    const double distance = at(angleOf(i)).length();
    if (distance < least) least = distance, best = i;
  }
  double from = angleOf(std::max(best - 1, 0)), to = angleOf(std::min(best + 1, kSamples));
  for (int i = 0; i < kRefinements; ++i) {
    const double third = (to - from) / 3;
    if (at(from + third).length() < at(to - third).length()) {
      to -= third;
    } else {
      from += third;
    }
  }
  return at((from + to) / 2).length() <= least ? (from + to) / 2 : angleOf(best);
}

}  // namespace torva::view

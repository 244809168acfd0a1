#include "draw/display_list.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace torva::draw {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kNarrowLetter = 0.4, kLetter = 0.8, kCapital = 0.95, kWideLetter = 1.2, kFullWidthLetter = kWidestLetter;
constexpr wchar_t kFirstFullWidth = 0x1100;
constexpr std::wstring_view kNarrowLetters = L" .,:;|!'`iIjl()[]{}/\\ft";
constexpr std::wstring_view kWideLetters = L"mwMW@%&";

constexpr auto kAsciiWidths = [] {
  std::array<double, 128> widths{};
  widths.fill(kLetter);
  for (std::size_t letter = 'A'; letter <= 'Z'; ++letter) widths[letter] = kCapital;
  for (const wchar_t letter : kWideLetters) widths[static_cast<std::size_t>(letter)] = kWideLetter;
  for (const wchar_t letter : kNarrowLetters) widths[static_cast<std::size_t>(letter)] = kNarrowLetter;
  return widths;
}();

double letterWidth(wchar_t letter) {
  if (letter >= kFirstFullWidth) return kFullWidthLetter;
  const auto code = static_cast<std::size_t>(letter);
  return code < kAsciiWidths.size() ? kAsciiWidths[code] : kLetter;
}

bool sweepHolds(const Arc& arc, double angleRad) {
  const double from = arc.sweepRad >= 0 ? arc.startRad : arc.startRad + arc.sweepRad;
  const double offset = angleRad - from;
  return offset - kTurn * std::floor(offset / kTurn) <= std::abs(arc.sweepRad);
}

geom::Box3 arcExtents(const Arc& arc) {
  geom::Box3 box;
  box.add(arc.at(arc.startRad));
  box.add(arc.at(arc.startRad + arc.sweepRad));
  const double extremes[] = {std::atan2(arc.yAxis.x, arc.xAxis.x), std::atan2(arc.yAxis.y, arc.xAxis.y),
                             std::atan2(arc.yAxis.z, arc.xAxis.z)};
  for (const double extreme : extremes) {
    for (const double angle : {extreme, extreme + std::numbers::pi}) {
      if (sweepHolds(arc, angle)) box.add(arc.at(angle));
    }
  }
  return box;
}

template <class Points>
geom::Box3 pointExtents(const Points& points) {
  geom::Box3 box;
  for (const KdGePoint3d& p : points) box.add(p);
  return box;
}

struct ShapeExtents {
  geom::Box3 operator()(const Polyline& polyline) const { return pointExtents(polyline.points); }
  geom::Box3 operator()(const Arc& arc) const { return arcExtents(arc); }
  geom::Box3 operator()(const Fill& fill) const {
    geom::Box3 box;
    for (const auto& loop : fill.loops) box.add(pointExtents(loop));
    return box;
  }
  geom::Box3 operator()(const Text& text) const { return pointExtents(textCorners(text)); }
};

struct Displacement {
  KdGeVector3d by;

  void operator()(Polyline& polyline) const { move(polyline.points); }
  void operator()(Arc& arc) const { arc.center = arc.center + by; }
  void operator()(Fill& fill) const {
    for (auto& loop : fill.loops) move(loop);
  }
  void operator()(Text& text) const { text.origin = text.origin + by; }

 private:
  void move(std::vector<KdGePoint3d>& points) const {
    for (KdGePoint3d& point : points) point = point + by;
  }
};

}  // namespace

KdGePoint3d Arc::at(double angleRad) const {
  return center + xAxis * std::cos(angleRad) + yAxis * std::sin(angleRad);
}

std::uint32_t DisplayList::indexOf(const Appearance& appearance) {
  // Neighbours mostly look alike, so the search starts with the latest.
  const auto found = std::find(appearances.rbegin(), appearances.rend(), appearance);
  if (found != appearances.rend()) return static_cast<std::uint32_t>(appearances.rend() - found - 1);
  appearances.push_back(appearance);
  return static_cast<std::uint32_t>(appearances.size() - 1);
}

void DisplayList::clear() {
  appearances.clear();
  primitives.clear();
}

geom::Box3 extents(const Shape& shape) {
  return std::visit(ShapeExtents{}, shape);
}

void displace(DisplayList& list, const KdGeVector3d& displacementWcs) {
  for (Primitive& primitive : list.primitives) std::visit(Displacement{displacementWcs}, primitive.shape);
}

geom::Box3 extents(const DisplayList& list) {
  geom::Box3 box;
  for (const Primitive& primitive : list.primitives) box.add(extents(primitive.shape));
  return box;
}

double nominalTextWidth(std::wstring_view text) {
  double width = 0;
  for (const wchar_t letter : text) width += letterWidth(letter);
  return width;
}

double mostTextWidth(std::string_view bytes) {
  double width = 0;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    width += code < kAsciiWidths.size() ? kAsciiWidths[code] : kWidestLetter;
  }
  return width;
}

std::vector<KdGePoint3d> textCorners(const Text& text) {
  const KdGeVector3d along = text.xAxis * nominalTextWidth(text.text);
  const KdGePoint3d low = text.origin + text.yAxis * -kTextDescent;
  const KdGePoint3d high = text.origin + text.yAxis * kTextAscent;
  return {low, low + along, high + along, high};
}

std::vector<KdGePoint3d> flatten(const Arc& arc, double tolerance) {
  constexpr int kMostChordsPerTurn = 720, kFewestChordsPerTurn = 12;
  const double radius = std::max(arc.xAxis.length(), arc.yAxis.length());
  const double cosine = radius > 0 ? std::clamp(1 - tolerance / radius, -1.0, 1.0) : -1;
  const double step = std::clamp(2 * std::acos(cosine), kTurn / kMostChordsPerTurn, kTurn / kFewestChordsPerTurn);
  const int chords = std::max(1, static_cast<int>(std::ceil(std::min(std::abs(arc.sweepRad), kTurn) / step)));
  std::vector<KdGePoint3d> points;
  points.reserve(static_cast<std::size_t>(chords) + 1);
  for (int i = 0; i <= chords; ++i) points.push_back(arc.at(arc.startRad + arc.sweepRad * i / chords));
  return points;
}

}  // namespace torva::draw

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <ostream>
#include <rapidcheck.h>
#include <vector>

#include "command/user_plane.h"
#include "geom/transform.h"

#include <kdrx/db_mline.h>

/// Properties are tried on the same drawings each time; RC_PARAMS in the environment ("seed=7 max_success=500") asks for
/// others.
inline const int kDefaultParameters = ::setenv("RC_PARAMS", "seed=20 max_success=300", 0);

/// A number from low to high, both included.
inline rc::Gen<int> between(int low, int high) {
  return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(low, high + 1));
}

/// Where the multilines of a drawing lie: in the plane of a user coordinate system, about its origin.
struct Frame {
  torva::command::UserPlane plane;
  double size = 1;  ///< Most corners lie so far from the origin, drawing units.

  /// The least distance between two elements, and what their coordinates are multiples of.
  double unit() const { return size / 1000; }
  /// How far apart two points may be that are to be the same.
  double tolerance() const { return 1e-9 * std::max(size, (plane.origin - KdGePoint3d()).length()); }
};

inline std::ostream& operator<<(std::ostream& os, const Frame& frame) {
  const auto& [origin, x, y, z, elevation] = frame.plane;
  return os << "size " << frame.size << ", elevation " << elevation << ", origin " << origin.x << ',' << origin.y
            << ", x axis " << x.x << ',' << x.y << ',' << x.z << ", normal " << z.x << ',' << z.y << ',' << z.z;
}

inline constexpr KdGeVector3d kUp{0, 0, 1}, kDown{0, 0, -1}, kTilted{0, 0.6, 0.8};

inline rc::Gen<Frame> frames(const std::vector<KdGeVector3d>& normals) {
  return rc::gen::exec([=] {
    Frame frame;
    frame.size = *rc::gen::element(100.0, 1e-3, 1e6);
    const torva::geom::Transform level = torva::geom::Transform::fromExtrusion(*rc::gen::elementOf(normals));
    const double angle = *rc::gen::oneOf(rc::gen::just(0), between(0, 359)) * std::numbers::pi / 180;
    frame.plane.x = level.x * std::cos(angle) + level.y * std::sin(angle);
    frame.plane.y = level.y * std::cos(angle) - level.x * std::sin(angle);
    frame.plane.z = level.z;
    if (frame.size > 1 && *rc::gen::arbitrary<bool>()) frame.plane.origin = {1e6, -1e6, 0};
    frame.plane.elevation = frame.size * *between(0, 2) / 4;
    return frame;
  });
}

/// An endless line in the plane; the direction is 1 long.
struct PlaneLine {
  KdGePoint3d point;
  KdGeVector3d direction;
};

inline KdGeVector3d leftOf(const KdGeVector3d& v) {
  return {-v.y, v.x, 0};
}

/// Requires: the lines are not parallel.
inline KdGePoint3d crossing(const PlaneLine& a, const PlaneLine& b) {
  const KdGeVector3d square = leftOf(b.direction);
  return a.point + a.direction * (square.dotProduct(b.point - a.point) / square.dotProduct(a.direction));
}

/// A place on an element line, by the distance from the corner at which the segment starts.
struct Spot {
  int element, segment;
  double along;
};

inline std::ostream& operator<<(std::ostream& os, const Spot& spot) {
  return os << "element " << spot.element << ", segment " << spot.segment << " at " << spot.along;
}

/// What a multiline is made from, in user coordinates, and where its element lines run when they are worked out from that.
struct RandomMline {
  std::vector<KdGePoint3d> path;
  bool isClosed = false;
  std::vector<double> offsets;  ///< Of the style's elements, largest first.
  double scale = 1;
  KdMlineJustification justification = KdMlineJustification::zero;
  int startAngleDeg = 90, endAngleDeg = 90;

  int vertices() const { return static_cast<int>(path.size()); }
  int segments() const { return isClosed ? vertices() : vertices() - 1; }
  int elements() const { return static_cast<int>(offsets.size()); }

  const KdGePoint3d& at(int vertex) const { return path[static_cast<std::size_t>((vertex + vertices()) % vertices())]; }
  KdGeVector3d direction(int segment) const {
    const KdGeVector3d along = at(segment + 1) - at(segment);
    return along * (1 / along.length());
  }
  PlaneLine line(int element, int segment) const {
    const double top = offsets.front(), bottom = offsets.back();
    const double onPath = justification == KdMlineJustification::top      ? top
                          : justification == KdMlineJustification::bottom ? bottom
                                                                          : 0;
    const double left = (offsets[static_cast<std::size_t>(element)] - onPath) * scale;
    return {at(segment) + leftOf(direction(segment)) * left, direction(segment)};
  }
  /// Where an element line ends or turns at a vertex.
  KdGePoint3d corner(int element, int vertex) const {
    if (!isClosed && vertex == 0) return crossing(line(element, 0), cap(0, 0, startAngleDeg));
    if (!isClosed && vertex == segments()) return crossing(line(element, vertex - 1), cap(vertex, vertex - 1, endAngleDeg));
    return crossing(line(element, (vertex + segments() - 1) % segments()), line(element, vertex % segments()));
  }
  double length(int element, int segment) const {
    return (corner(element, segment + 1) - corner(element, segment)).dotProduct(direction(segment));
  }
  double along(int element, int segment, const KdGePoint3d& point) const {
    return (point - corner(element, segment)).dotProduct(direction(segment));
  }

  KdGePoint3d pointOf(const Spot& spot) const {
    return corner(spot.element, spot.segment) + direction(spot.segment) * spot.along;
  }
  /// The spot carried square to its segment onto another element line, no farther than to that one's ends.
  Spot carried(const Spot& spot, int element) const {
    const double there = along(element, spot.segment, pointOf(spot));
    return {element, spot.segment, std::clamp(there, 0.0, length(element, spot.segment))};
  }

 private:
  PlaneLine cap(int vertex, int segment, int angleDeg) const {
    const double angle = angleDeg * std::numbers::pi / 180;
    const KdGeVector3d u = direction(segment);
    return {at(vertex), u * std::cos(angle) + leftOf(u) * std::sin(angle)};
  }
};

inline std::ostream& operator<<(std::ostream& os, const RandomMline& mline) {
  os << (mline.isClosed ? "closed path" : "path");
  for (const KdGePoint3d& p : mline.path) os << ' ' << p.x << ',' << p.y;
  os << ", offsets";
  for (const double offset : mline.offsets) os << ' ' << offset;
  return os << ", scale " << mline.scale << ", justification " << static_cast<int>(mline.justification) << ", caps "
            << mline.startAngleDeg << ' ' << mline.endAngleDeg;
}

/// Multilines around the origin: corners of a polygon, or some of them in a row, and elements within a twenty-fifth of the
/// frame's size from the path. No path crosses itself, and every segment has a part where all elements run.
inline rc::Gen<RandomMline> mlines(const Frame& frame) {
  return rc::gen::exec([=] {
    RandomMline mline;
    const double unit = frame.unit();
    const int corners = *between(3, 7);
    mline.isClosed = *rc::gen::arbitrary<bool>();
    const int count = mline.isClosed ? corners : *between(2, corners);
    const int turn = 15 * *between(0, 23);
    const bool isRegular = *rc::gen::arbitrary<bool>();
    for (int i = 0; i < count; ++i) {
      const double angle = turn * std::numbers::pi / 180 + 2 * std::numbers::pi * i / corners;
      const int radius = isRegular ? 1000 : *between(1000, 1400);
      mline.path.push_back(
          {unit * std::round(radius * std::cos(angle)), unit * std::round(radius * std::sin(angle)), frame.plane.elevation});
    }
    if (*rc::gen::arbitrary<bool>()) std::reverse(mline.path.begin(), mline.path.end());

    mline.scale = *rc::gen::element(1.0, -1.0, 0.05, -20.0);
    const int elements = *between(1, 16);
    const auto places = *rc::gen::unique<std::vector<int>>(static_cast<std::size_t>(elements), between(-20, 20));
    for (const int place : places) mline.offsets.push_back(place * unit / std::abs(mline.scale));
    std::sort(mline.offsets.rbegin(), mline.offsets.rend());
    mline.justification =
        *rc::gen::element(KdMlineJustification::zero, KdMlineJustification::top, KdMlineJustification::bottom);
    mline.startAngleDeg = *rc::gen::oneOf(rc::gen::just(90), between(20, 160));
    mline.endAngleDeg = *rc::gen::oneOf(rc::gen::just(90), between(20, 160));
    return mline;
  });
}

inline RandomMline opened(RandomMline mline) {
  mline.isClosed = false;
  return mline;
}

/// `mline` moved in the plane so that its segment crosses one of `other`, each at a share of its length.
inline RandomMline movedAcross(RandomMline mline, int segment, double share, const RandomMline& other, int otherSegment,
                               double otherShare, double angle) {
  const auto at = [](const RandomMline& m, int s, double part) { return m.at(s) + (m.at(s + 1) - m.at(s)) * part; };
  const KdGePoint3d from = at(mline, segment, share), to = at(other, otherSegment, otherShare);
  const KdGeVector3d u = mline.direction(segment), w = other.direction(otherSegment);
  const KdGeVector3d wanted = w * std::cos(angle) + leftOf(w) * std::sin(angle);
  const double cosine = u.dotProduct(wanted), sine = leftOf(u).dotProduct(wanted);
  for (KdGePoint3d& p : mline.path) {
    const KdGeVector3d d = p - from;
    p = to + d * cosine + leftOf(d) * sine;
  }
  return mline;
}

/// Spots that a pick finds: not so near to the start of a segment that the element's distance from the path counts.
inline rc::Gen<Spot> spots(const RandomMline& mline, const Frame& frame, rc::Gen<int> segments) {
  return rc::gen::exec([=] {
    Spot spot{*between(0, mline.elements() - 1), *segments, 0};
    const double first = 0.15 * frame.size, last = mline.length(spot.element, spot.segment) - 0.002 * frame.size;
    spot.along = first + (last - first) * *between(0, 1000) / 1000;
    return spot;
  });
}
inline rc::Gen<Spot> spots(const RandomMline& mline, const Frame& frame) {
  return spots(mline, frame, between(0, mline.segments() - 1));
}

#include "view/snap.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <numbers>
#include <random>

#include "draw/drawer.h"
#include "draw/sample_drawing.h"

namespace torva::view {
namespace {

using test::circle;
using test::entity;
using test::group;
using test::line;
using test::point;

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kStep = 0.05;  // between samples, drawing units

/// Lines, arcs, circles, multilines and ellipses, some at another height.
std::string randomEntities(unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<> place(0, 300), size(-60, 60), degrees(0, 359);
  std::string text;
  for (int i = 0; i < 120; ++i) {
    const double x = place(random), y = place(random), z = i % 9 == 0 ? 7 : 0, length = std::abs(size(random)) + 2;
    const double start = degrees(random), slant = size(random);
    if (i % 4 == 0) text += line(x, y, x + size(random), y + slant, z);
    if (i % 8 == 1) text += circle(x, y, length, z);
    if (i % 8 == 5)
      text += entity("ARC", point(10, x, y, z) + group(40, length) + group(50, start) + group(51, 1.5 * start + 20));
    if (i % 4 == 2) text += test::mlineBar({x, y, z}, slant);
    if (i % 4 == 3)
      text += entity("ELLIPSE", point(10, x, y, z) + point(11, length, slant) + group(40, 0.2 + length / 80) +
                                    group(41, 0.0) + group(42, kTurn));
  }
  return text;
}

/// What is drawn, as points close to each other, and the places to snap to.
struct DrawnPoints {
  using Points = std::vector<KdGePoint3d>;
  struct Centre {
    std::size_t piece;
    KdGePoint3d point;
    bool isOfWhole;
  };

  std::vector<Points> pieces;
  std::map<SnapKind, Points> places;
  std::vector<Centre> centres;

  explicit DrawnPoints(const db::Database& database) {
    draw::DisplayList list;
    const draw::Drawer drawer(database);
    for (const dxf::RecordId entity : test::entitiesOf(database)) drawer.draw(entity, list);
    for (const draw::Primitive& primitive : list.primitives) {
      if (const auto* arc = std::get_if<draw::Arc>(&primitive.shape)) {
        addBow(*arc);
      } else {
        const Points& points = std::get<draw::Polyline>(primitive.shape).points;
        for (std::size_t i = 1; i < points.size(); ++i) addStretch(points[i - 1], points[i]);
      }
    }
  }

 private:
  void addStretch(const KdGePoint3d& a, const KdGePoint3d& b) {
    const int count = static_cast<int>(a.distanceTo(b) / kStep) + 1;
    pieces.emplace_back();
    for (int i = 0; i <= count; ++i) pieces.back().push_back(a + (b - a) * (double(i) / count));
    places[SnapKind::end].insert(places[SnapKind::end].end(), {a, b});
    places[SnapKind::middle].push_back(a + (b - a) * 0.5);
  }

  void addBow(const draw::Arc& arc) {
    const bool isWhole = arc.sweepRad > kTurn - 1e-9;
    const int count = static_cast<int>(arc.sweepRad * arc.xAxis.length() / kStep) + 1;
    const auto at = [&](double share) { return arc.at(arc.startRad + arc.sweepRad * share); };
    pieces.emplace_back();
    // A whole turn goes on a little, so that no place of it is an end.
    for (int i = 0; i <= (isWhole ? count + 2 : count); ++i) pieces.back().push_back(at(double(i) / count));
    centres.push_back({pieces.size() - 1, arc.center, isWhole});
    if (isWhole) return;
    places[SnapKind::end].insert(places[SnapKind::end].end(), {at(0), at(1)});
    places[SnapKind::middle].push_back(at(0.5));
  }
};

/// Looks for snaps by going through all samples.
class SlowSnaps {
 public:
  SlowSnaps(const DrawnPoints& drawing, const View& view, const KdGePoint3d& cursor, const KdGePoint3d& base,
            double aperture)
      : m_drawing(drawing), m_view(view), m_cursorDcs(view.toDisplay(cursor)), m_base(base), m_aperture(aperture) {
    for (std::size_t i = 0; i < drawing.pieces.size(); ++i) {
      const auto& points = drawing.pieces[i];
      if (std::ranges::any_of(points, [&](const KdGePoint3d& p) { return isNear(p); })) m_met.push_back(i);
    }
  }

  /// Distance of the best point of a kind.
  std::optional<double> distance(SnapKind kind) {
    m_least.reset();
    if (kind == SnapKind::nearest) {
      for (const std::size_t i : m_met) std::ranges::for_each(m_drawing.pieces[i], [&](const auto& p) { take(p); });
    } else if (kind == SnapKind::centre) {
      for (const auto& [piece, center, isOfWhole] : m_drawing.centres) {
        if ((isOfWhole && isNear(center)) || std::ranges::find(m_met, piece) != m_met.end()) take(center);
      }
    } else if (kind == SnapKind::perpendicular) {
      for (const std::size_t i : m_met) takeTurningPoints(m_drawing.pieces[i]);
    } else if (kind == SnapKind::intersection) {
      takeCrossings();
    } else {
      for (const KdGePoint3d& p : m_drawing.places.at(kind)) {
        if (isNear(p)) take(p);
      }
    }
    return m_least;
  }

 private:
  KdGeVector3d offset(const KdGePoint3d& p) const { return m_view.toDisplay(p) - m_cursorDcs; }
  bool isNear(const KdGePoint3d& p) const {
    const KdGeVector3d v = offset(p);
    return std::abs(v.x) <= m_aperture && std::abs(v.y) <= m_aperture;
  }
  void take(const KdGePoint3d& p) {
    const KdGeVector3d v = offset(p);
    m_least = std::min(m_least.value_or(1e9), std::hypot(v.x, v.y));
  }

  /// Where the distance from the base point stops falling or rising.
  void takeTurningPoints(const DrawnPoints::Points& points) {
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
      const double before = m_base.distanceTo(points[i - 1]), here = m_base.distanceTo(points[i]),
                   after = m_base.distanceTo(points[i + 1]);
      if ((here - before) * (after - here) <= 0) take(points[i]);
    }
  }

  void takeCrossings() {
    struct Chord {
      std::size_t piece;
      KdGePoint3d a, b;
    };
    std::vector<Chord> chords;
    for (const std::size_t piece : m_met) {
      const auto& points = m_drawing.pieces[piece];
      for (std::size_t i = 1; i < points.size(); ++i) {
        if (isNear(points[i])) chords.push_back({piece, points[i - 1], points[i]});
      }
    }
    const auto side = [](const Chord& c, const KdGePoint3d& p) {
      return (c.b.x - c.a.x) * (p.y - c.a.y) - (c.b.y - c.a.y) * (p.x - c.a.x) > 0;
    };
    for (const Chord& c : chords) {
      for (const Chord& d : chords) {
        if (c.piece >= d.piece || c.a.z != d.a.z) continue;
        if (side(c, d.a) != side(c, d.b) && side(d, c.a) != side(d, c.b)) take(c.a);
      }
    }
  }

  const DrawnPoints& m_drawing;
  const View& m_view;
  const KdGePoint3d m_cursorDcs, m_base;
  const double m_aperture;
  std::vector<std::size_t> m_met;
  std::optional<double> m_least;
};

View viewWith(const std::string& groups) {
  View view = View::ofDrawing(*test::SampleDrawing{.viewport = test::viewport(groups)}.open(), 1000, 1000);
  view.set({0, 0, 0}, 1000);  // a pixel is a unit
  return view;
}

TEST(Snap, FindsWhatGoingThroughAllThatIsDrawnFinds) {
  constexpr double kAperture = 10, kEdge = 0.2, kTolerance = 3 * kStep;
  const auto database = test::SampleDrawing{.entities = randomEntities(11)}.open();
  const DrawnPoints known(*database);
  Picker picker(*database);
  std::mt19937 random(12);
  std::uniform_real_distribution<> offset(-12, 12);
  std::map<SnapKind, int> hits, misses;
  for (const View& view : {viewWith(""), viewWith(group(51, 30.0)), viewWith(point(16, 1, -2, 1.5) + group(51, 20.0))}) {
    for (int i = 0; i < 25; ++i) {
      const auto& piece = known.pieces[random() % known.pieces.size()];
      const KdGePoint3d& drawn = piece[random() % piece.size()];
      const KdGePoint3d cursor = drawn + KdGeVector3d{offset(random), offset(random), 0};
      const KdGePoint3d base = cursor + KdGeVector3d{offset(random) * 9, offset(random) * 9, 0};
      SlowSnaps inner(known, view, cursor, base, kAperture - kEdge), outer(known, view, cursor, base, kAperture + kEdge);
      for (const SnapKind kind : {SnapKind::end, SnapKind::middle, SnapKind::centre, SnapKind::intersection,
                                  SnapKind::perpendicular, SnapKind::nearest}) {
        const auto expected = inner.distance(kind);
        if (expected != outer.distance(kind)) continue;  // the aperture's border decides
        const auto snap = findSnap(picker, view, {cursor, kAperture, static_cast<int>(kind), base});
        ASSERT_EQ(snap.has_value(), expected.has_value()) << int(kind) << " at " << cursor.x << "," << cursor.y;
        ++(expected ? hits : misses)[kind];
        if (!expected) continue;
        EXPECT_EQ(snap->kind, kind);
        EXPECT_NEAR(snap->distancePx, *expected, kTolerance) << int(kind) << " at " << cursor.x << "," << cursor.y;
        const KdGeVector3d seen = view.toDisplay(snap->pointWcs) - view.toDisplay(cursor);
        EXPECT_NEAR(snap->distancePx, std::hypot(seen.x, seen.y), 1e-9);
      }
    }
  }
  EXPECT_EQ(hits.size(), 6u);
  for (const auto& [kind, count] : hits) EXPECT_GT(count, 8) << int(kind);
  EXPECT_GT(misses[SnapKind::end], 8);
}

TEST(Snap, ChoosesByKindAndPlace) {
  constexpr int kEnd = 1, kMiddle = 2, kCentre = 4, kCross = 32, kSquare = 128, kNearest = 512, kAll = 679;
  const std::string block = test::block("B", circle(100, 100, 5));
  const std::string open = test::path({{0, 0, 0}, {40, 0, 0}, {40, 30, 0}}),
                    closed = test::path({{0, 0, 0}, {40, 0, 0}, {40, 30, 0}}, 1);
  const std::string arc = entity("ARC", point(10, 0, 0) + group(40, 10.0) + group(50, 20.0) + group(51, 340.0));
  const std::string insert = entity("INSERT", group(2, "B") + point(10, -100, -100) + group(41, 2.0));
  const std::string solid = entity("SOLID", point(10, 0, 0) + point(11, 9, 0) + point(12, 0, 9) + point(13, 9, 9));
  std::string spline = group(71, "3") + group(72, "8");
  for (const double knot : {0, 0, 0, 0, 1, 1, 1, 1}) spline += group(40, knot);
  for (const double x : {0, 10, 20, 30}) spline += point(10, x, 0);
  using enum SnapKind;
  const auto at = [](SnapKind kind, double x, double y) { return std::pair{kind, KdGePoint3d{x, y, 0}}; };
  const struct {
    const char* name;
    std::string entities;
    KdGePoint3d cursor;
    int modes;
    std::optional<KdGePoint3d> base;
    std::optional<std::pair<SnapKind, KdGePoint3d>> expected;
  } rows[] = {
      {"an end before what is nearer", line(0, 0, 90, 0), {6, 1, 0}, kAll, {}, at(end, 0, 0)},
      {"nothing in sight", line(0, 0, 90, 0), {40, 11, 0}, kAll, {}, {}},
      {"nearest when there is nothing else", line(0, 0, 90, 0), {30, 1, 0}, kAll, {}, at(nearest, 30, 0)},
      {"all off", line(0, 0, 90, 0), {0, 0, 0}, kAll | kSnapsOff, {}, {}},
      {"only the kinds wanted", line(0, 0, 90, 0), {1, 0, 0}, kMiddle | kCentre, {}, {}},
      {"an end before a crossing there", line(0, 0, 9, 0) + line(0, 0, 0, 9), {1, 1, 0}, kAll, {}, at(end, 0, 0)},
      {"the crossing of a tee", line(0, 0, 90, 0) + line(30, 0, 30, 90), {31, 1, 0}, kCross, {}, at(intersection, 30, 0)},
      {"passing at another height", line(0, 0, 90, 0) + line(30, -9, 30, 90, 1), {31, 1, 0}, kCross, {}, {}},
      {"parallels", line(0, 0, 90, 0) + line(10, 0, 70, 0), {31, 1, 0}, kCross, {}, {}},
      {"a corner crosses itself", open, {39, 1, 0}, kCross, {}, at(intersection, 40, 0)},
      {"open: no way back", open, {20, 15, 0}, kAll, {}, {}},
      {"closed: the way back", closed, {20, 16, 0}, kMiddle, {}, at(middle, 20, 15)},
      {"touching circles", circle(0, 0, 5) + circle(12, 0, 7), {6, 1, 0}, kCross, {}, at(intersection, 5, 0)},
      {"a tangent", line(-9, 5, 9, 5) + circle(0, 0, 5), {1, 6, 0}, kCross, {}, at(intersection, 0, 5)},
      {"the gap of an arc", line(0, 0, 20, 0) + arc, {10, 0, 0}, kCross, {}, {}},
      {"a centre from far", circle(0, 0, 90), {91, 1, 0}, kCentre, {}, at(centre, 0, 0)},
      {"a centre itself", circle(0, 0, 90), {1, 1, 0}, kCentre, {}, at(centre, 0, 0)},
      {"a whole circle has no ends", circle(0, 0, 9), {9, 0, 0}, kEnd | kMiddle, {}, {}},
      {"in a block, stretched", insert, {110, 0, 0}, kCentre, {}, at(centre, 100, 0)},
      {"a foot from far", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{5, 50, 0}, at(perpendicular, 5, 0)},
      {"a foot beyond the end", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{-5, 50, 0}, {}},
      {"no foot without a base", line(0, 0, 90, 0), {80, 1, 0}, kSquare, {}, {}},
      {"no foot at the base", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{5, 0, 0}, {}},
      {"no foot from the center", circle(0, 0, 9), {9, 0, 0}, kSquare, KdGePoint3d{}, {}},
      {"the near foot of a circle", circle(0, 0, 9), {9, 1, 0}, kSquare, KdGePoint3d{-50, 0, 0}, at(perpendicular, 9, 0)},
      {"a spline has no corners", entity("SPLINE", spline), {15, 0, 0}, kEnd | kMiddle, {}, {}},
      {"a spline has ends", entity("SPLINE", spline), {29, 0, 0}, kEnd | kMiddle, {}, at(end, 30, 0)},
      {"a dot", entity("POINT", point(10, 3, 4)), {0, 0, 0}, kAll, {}, at(end, 3, 4)},
      {"a line without length", line(3, 4, 3, 4), {0, 0, 0}, kAll, KdGePoint3d{}, at(end, 3, 4)},
      {"a layer that is off", entity("LINE", point(10, 0, 0) + point(11, 90, 0), "OFF"), {0, 0, 0}, kNearest, {}, {}},
      {"no fills", solid, {0, 0, 0}, kAll, {}, {}},
  };
  const View view = viewWith("");
  for (const auto& row : rows) {
    const auto database = test::SampleDrawing{.entities = row.entities, .blocks = block}.open();
    Picker picker(*database);
    const auto snap = findSnap(picker, view, {row.cursor, 10, row.modes, row.base});
    ASSERT_EQ(snap.has_value(), row.expected.has_value()) << row.name;
    if (!snap) continue;
    EXPECT_EQ(snap->kind, row.expected->first) << row.name;
    EXPECT_LE(snap->pointWcs.distanceTo(row.expected->second), 1e-9) << row.name;
  }
}

TEST(Snap, EndsFarFromTheOriginAreExact) {
  const KdGePoint3d end{4512345.678901, 5398765.432109, 0};
  const auto database = test::SampleDrawing{.entities = line(end.x, end.y, end.x + 100, end.y - 33)}.open();
  Picker picker(*database);
  const auto snap = findSnap(picker, viewWith(group(51, 30.0)), {end + KdGeVector3d{3, 4, 0}, 10, 1, {}});
  ASSERT_TRUE(snap);
  EXPECT_EQ(snap->pointWcs.distanceTo(end), 0);
}

TEST(Snap, OffersOnlyTheNearestWhereTooMuchIsDrawn) {
  std::string text;
  for (std::size_t i = 0; i <= kMostSnapEntities; ++i) text += line(0, 0, 9, 9);
  const auto database = test::SampleDrawing{.entities = text}.open();
  Picker picker(*database);
  const auto snap = findSnap(picker, viewWith(""), {{0, 1, 0}, 10, 1 | 512, {}});
  ASSERT_TRUE(snap);
  EXPECT_EQ(snap->kind, SnapKind::nearest);
  EXPECT_FALSE(findSnap(picker, viewWith(""), {{0, 1, 0}, 10, 1, {}}));
}

}  // namespace
}  // namespace torva::view

#include "view/snap.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <numbers>
#include <random>

#include "draw/sample_drawing.h"

namespace torva::view {
namespace {

using test::entity;
using test::group;
using test::point;

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kStep = 0.05;  // between samples, drawing units

/// Entities with what the test knows of them: points close to each other along all that is drawn, and the places to snap to.
struct KnownDrawing {
  using Points = std::vector<KdGePoint3d>;

  std::string text;
  std::vector<Points> pieces;
  std::map<SnapKind, Points> places;
  struct Centre {
    std::size_t piece;
    KdGePoint3d point;
    bool isOfWhole;
  };
  std::vector<Centre> centres;

  void addLine(const KdGePoint3d& a, const KdGePoint3d& b) {
    text += entity("LINE", point(10, a.x, a.y, a.z) + point(11, b.x, b.y, b.z));
    addStretch(a, b);
  }

  void addMline(const KdGePoint3d& at, double turn) {
    const double c = std::cos(turn), s = std::sin(turn);
    const std::vector<std::vector<double>> lists = {{3, 0, 20, 30}, {-3, 0}};
    text += entity("MLINE", group(71, "1") + test::mlineVertex({at.x, at.y, at.z, c, s, 0, -s, c, 0}, lists) +
                                test::mlineVertex({at.x + 50 * c, at.y + 50 * s, at.z, c, s, 0, -s, c, 0}, lists));
    const auto place = [&](double x, double y) { return at + KdGeVector3d{x * c - y * s, x * s + y * c, 0}; };
    addStretch(place(0, 3), place(20, 3));
    addStretch(place(30, 3), place(50, 3));
    addStretch(place(0, -3), place(50, -3));
  }

  void addArc(const KdGePoint3d& center, double radius, double startDegrees, double sweepDegrees) {
    const std::string circle = point(10, center.x, center.y, center.z) + group(40, radius);
    const std::string angles = group(50, startDegrees) + group(51, startDegrees + sweepDegrees);
    text += sweepDegrees == 360 ? entity("CIRCLE", circle) : entity("ARC", circle + angles);
    addBow(center, {radius, 0, 0}, {0, radius, 0}, startDegrees / 360 * kTurn, sweepDegrees / 360 * kTurn);
  }

  void addEllipse(const KdGePoint3d& center, const KdGeVector3d& major, double ratio) {
    text += entity("ELLIPSE", point(10, center.x, center.y, center.z) + point(11, major.x, major.y) + group(40, ratio) +
                                  group(41, 0.0) + group(42, kTurn));
    addBow(center, major, KdGeVector3d{-major.y, major.x, 0} * ratio, 0, kTurn);
  }

 private:
  void addStretch(const KdGePoint3d& a, const KdGePoint3d& b) {
    const int count = static_cast<int>(a.distanceTo(b) / kStep) + 1;
    pieces.emplace_back();
    for (int i = 0; i <= count; ++i) pieces.back().push_back(a + (b - a) * (double(i) / count));
    places[SnapKind::end].insert(places[SnapKind::end].end(), {a, b});
    places[SnapKind::middle].push_back(a + (b - a) * 0.5);
  }

  void addBow(const KdGePoint3d& center, const KdGeVector3d& x, const KdGeVector3d& y, double start, double sweep) {
    const auto at = [&](double angle) { return center + x * std::cos(angle) + y * std::sin(angle); };
    const bool isWhole = sweep == kTurn;
    const int count = static_cast<int>(sweep * x.length() / kStep) + 1;
    pieces.emplace_back();
    // A whole turn goes on a little, so that no place of it is an end.
    for (int i = 0; i <= (isWhole ? count + 2 : count); ++i) pieces.back().push_back(at(start + sweep * i / count));
    centres.push_back({pieces.size() - 1, center, isWhole});
    if (isWhole) return;
    places[SnapKind::end].insert(places[SnapKind::end].end(), {at(start), at(start + sweep)});
    places[SnapKind::middle].push_back(at(start + sweep / 2));
  }
};

KnownDrawing randomDrawing(unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<> place(0, 300), size(-60, 60), degrees(0, 359);
  KnownDrawing drawing;
  for (int i = 0; i < 120; ++i) {
    const KdGePoint3d at{place(random), place(random), i % 9 == 0 ? 7.0 : 0.0};
    const double length = std::abs(size(random)) + 2;
    if (i % 4 == 0) drawing.addLine(at, at + KdGeVector3d{size(random), size(random), 0});
    if (i % 4 == 1) drawing.addArc(at, length, degrees(random), i % 8 == 1 ? 360 : 20 + degrees(random) / 2);
    if (i % 4 == 2) drawing.addMline(at, size(random));
    if (i % 4 == 3) drawing.addEllipse(at, {length, size(random), 0}, 0.2 + length / 80);
  }
  return drawing;
}

/// Looks for snaps by going through all samples.
class SlowSnaps {
 public:
  SlowSnaps(const KnownDrawing& drawing, const View& view, const KdGePoint3d& cursor, const KdGePoint3d& base,
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
  void takeTurningPoints(const KnownDrawing::Points& points) {
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

  const KnownDrawing& m_drawing;
  const View& m_view;
  const KdGePoint3d m_cursorDcs, m_base;
  const double m_aperture;
  std::vector<std::size_t> m_met;
  std::optional<double> m_least;
};

View viewWith(const std::string& groups) {
  const std::string viewport = group(0, "VPORT") + group(2, "*ACTIVE") + groups;
  View view = View::ofDrawing(*test::SampleDrawing{.viewport = viewport}.open(), 1000, 1000);
  view.set({0, 0, 0}, 1000);  // a pixel is a unit
  return view;
}

TEST(Snap, FindsWhatGoingThroughAllThatIsDrawnFinds) {
  constexpr double kAperture = 10, kEdge = 0.2, kTolerance = 3 * kStep;
  const KnownDrawing known = randomDrawing(11);
  const auto database = test::SampleDrawing{.entities = known.text}.open();
  Picker picker(*database);
  std::mt19937 random(12);
  std::uniform_real_distribution<> offset(-12, 12);
  std::map<SnapKind, int> hits, misses;
  for (const View& view : {viewWith(""), viewWith(group(51, 30.0)), viewWith(point(16, 1, -2, 1.5) + group(51, 20.0))}) {
    for (int i = 0; i < 25; ++i) {
      const auto& piece = known.pieces[random() % known.pieces.size()];
      const KdGePoint3d cursor = piece[random() % piece.size()] + KdGeVector3d{offset(random), offset(random), 0};
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
  const std::string bow = entity("CIRCLE", point(10, 100, 100) + group(40, 5.0));
  const std::string block = group(0, "BLOCK") + group(2, "B") + bow + group(0, "ENDBLK");
  const auto line = [](double x, double y, double x2, double y2, double z = 0) {
    return entity("LINE", point(10, x, y, z) + point(11, x2, y2, z));
  };
  const auto path = [](const std::string& flags) {
    return entity("LWPOLYLINE", group(70, flags) + group(10, 0.0) + group(20, 0.0) + group(10, 40.0) + group(20, 0.0) +
                                    group(10, 40.0) + group(20, 30.0));
  };
  std::string spline = group(71, "3") + group(72, "8");
  for (const double knot : {0, 0, 0, 0, 1, 1, 1, 1}) spline += group(40, knot);
  for (const double x : {0, 10, 20, 30}) spline += point(10, x, 0);
  struct Row {
    const char* name;
    std::string entities;
    KdGePoint3d cursor;
    int modes;
    std::optional<KdGePoint3d> base;
    std::optional<std::pair<SnapKind, KdGePoint3d>> expected;
  };
  using enum SnapKind;
  const auto at = [](SnapKind kind, double x, double y) { return std::pair{kind, KdGePoint3d{x, y, 0}}; };
  const Row rows[] = {
      {"an end before what is nearer", line(0, 0, 90, 0), {6, 1, 0}, kAll, {}, at(end, 0, 0)},
      {"nothing in sight", line(0, 0, 90, 0), {40, 11, 0}, kAll, {}, {}},
      {"nearest when there is nothing else", line(0, 0, 90, 0), {30, 1, 0}, kAll, {}, at(nearest, 30, 0)},
      {"all off", line(0, 0, 90, 0), {0, 0, 0}, kAll | kSnapsOff, {}, {}},
      {"only the kinds wanted", line(0, 0, 90, 0), {1, 0, 0}, kMiddle | kCentre, {}, {}},
      {"an end before a crossing there", line(0, 0, 9, 0) + line(0, 0, 0, 9), {1, 1, 0}, kAll, {}, at(end, 0, 0)},
      {"the crossing of a tee", line(0, 0, 90, 0) + line(30, 0, 30, 90), {31, 1, 0}, kCross, {}, at(intersection, 30, 0)},
      {"passing at another height", line(0, 0, 90, 0) + line(30, -9, 30, 90, 1), {31, 1, 0}, kCross, {}, {}},
      {"parallels", line(0, 0, 90, 0) + line(10, 0, 70, 0), {31, 1, 0}, kCross, {}, {}},
      {"a corner crosses itself", path("0"), {39, 1, 0}, kCross, {}, at(intersection, 40, 0)},
      {"open: no way back", path("0"), {20, 15, 0}, kAll, {}, {}},
      {"closed: the way back", path("1"), {20, 16, 0}, kMiddle, {}, at(middle, 20, 15)},
      {"touching circles",
       entity("CIRCLE", point(10, 0, 0) + group(40, 5.0)) + entity("CIRCLE", point(10, 12, 0) + group(40, 7.0)),
       {6, 1, 0},
       kCross,
       {},
       at(intersection, 5, 0)},
      {"a tangent",
       line(-9, 5, 9, 5) + entity("CIRCLE", point(10, 0, 0) + group(40, 5.0)),
       {1, 6, 0},
       kCross,
       {},
       at(intersection, 0, 5)},
      {"a line misses the gap of an arc",
       line(0, 0, 20, 0) + entity("ARC", point(10, 0, 0) + group(40, 10.0) + group(50, 20.0) + group(51, 340.0)),
       {10, 0, 0},
       kCross,
       {},
       {}},
      {"a centre from far", entity("CIRCLE", point(10, 0, 0) + group(40, 90.0)), {91, 1, 0}, kCentre, {}, at(centre, 0, 0)},
      {"a centre itself", entity("CIRCLE", point(10, 0, 0) + group(40, 90.0)), {1, 1, 0}, kCentre, {}, at(centre, 0, 0)},
      {"a whole circle has no ends", entity("CIRCLE", point(10, 0, 0) + group(40, 9.0)), {9, 0, 0}, kEnd | kMiddle, {}, {}},
      {"in a block, stretched",
       entity("INSERT", group(2, "B") + point(10, -100, -100) + group(41, 2.0)),
       {110, 0, 0},
       kCentre,
       {},
       at(centre, 100, 0)},
      {"a foot from far", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{5, 50, 0}, at(perpendicular, 5, 0)},
      {"a foot beyond the end", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{-5, 50, 0}, {}},
      {"no foot without a base", line(0, 0, 90, 0), {80, 1, 0}, kSquare, {}, {}},
      {"no foot at the base", line(0, 0, 90, 0), {80, 1, 0}, kSquare, KdGePoint3d{5, 0, 0}, {}},
      {"no foot from the center", entity("CIRCLE", point(10, 0, 0) + group(40, 9.0)), {9, 0, 0}, kSquare, KdGePoint3d{}, {}},
      {"the near foot of a circle",
       entity("CIRCLE", point(10, 0, 0) + group(40, 9.0)),
       {9, 1, 0},
       kSquare,
       KdGePoint3d{-50, 0, 0},
       at(perpendicular, 9, 0)},
      {"a spline has no corners", entity("SPLINE", spline), {15, 0, 0}, kEnd | kMiddle, {}, {}},
      {"a spline has ends", entity("SPLINE", spline), {29, 0, 0}, kEnd | kMiddle, {}, at(end, 30, 0)},
      {"a dot", entity("POINT", point(10, 3, 4)), {0, 0, 0}, kAll, {}, at(end, 3, 4)},
      {"a line without length", line(3, 4, 3, 4), {0, 0, 0}, kAll, KdGePoint3d{}, at(end, 3, 4)},
      {"a layer that is off", entity("LINE", point(10, 0, 0) + point(11, 90, 0), "OFF"), {0, 0, 0}, kNearest, {}, {}},
      {"no fills",
       entity("SOLID", point(10, 0, 0) + point(11, 9, 0) + point(12, 0, 9) + point(13, 9, 9)),
       {0, 0, 0},
       kAll,
       {},
       {}},
  };
  const View view = viewWith("");
  for (const Row& row : rows) {
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
  const auto database =
      test::SampleDrawing{.entities = entity("LINE", point(10, end.x, end.y) + point(11, end.x + 100, end.y - 33))}.open();
  Picker picker(*database);
  const auto snap = findSnap(picker, viewWith(group(51, 30.0)), {end + KdGeVector3d{3, 4, 0}, 10, 1, {}});
  ASSERT_TRUE(snap);
  EXPECT_EQ(snap->pointWcs.distanceTo(end), 0);
}

TEST(Snap, OffersOnlyTheNearestWhereTooMuchIsDrawn) {
  std::string text;
  for (std::size_t i = 0; i <= kMostSnapEntities; ++i) text += entity("LINE", point(10, 0, 0) + point(11, 9, 9));
  const auto database = test::SampleDrawing{.entities = text}.open();
  Picker picker(*database);
  const auto snap = findSnap(picker, viewWith(""), {{0, 1, 0}, 10, 1 | 512, {}});
  ASSERT_TRUE(snap);
  EXPECT_EQ(snap->kind, SnapKind::nearest);
  EXPECT_FALSE(findSnap(picker, viewWith(""), {{0, 1, 0}, 10, 1, {}}));
}

}  // namespace
}  // namespace torva::view

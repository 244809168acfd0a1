#include "draw/pieces.h"

#include <gmock/gmock.h>
#include <map>
#include <numbers>

#include "draw/drawer.h"
#include "draw/sample_drawing.h"
#include "geom/transform.h"

namespace torva::draw {
namespace {

using geom::Transform;
using test::group;
using test::point;
using Types = std::map<std::string, int>;

/// A segment, an arc by three points or an area by its corners, and how it looks.
struct Mark {
  std::vector<KdGePoint3d> points;
  Appearance look;
};

std::vector<Mark> marksOf(const db::Database& database) {
  DisplayList list;
  for (const dxf::RecordId entity : test::entitiesOf(database)) Drawer(database).draw(entity, list);
  std::vector<Mark> marks;
  for (const auto& [shape, look] : list.primitives) {
    if (const auto* line = std::get_if<Polyline>(&shape)) {
      std::vector<KdGePoint3d> points = line->points;
      if (line->isClosed) points.push_back(points.front());
      for (std::size_t i = 1; i < points.size(); ++i) marks.push_back({{points[i - 1], points[i]}, list.appearances[look]});
    } else if (const auto* arc = std::get_if<Arc>(&shape)) {
      const double half = arc->sweepRad / 2;
      marks.push_back({{arc->at(arc->startRad), arc->at(arc->startRad + half), arc->at(arc->startRad + 2 * half)},
                       list.appearances[look]});
    } else {
      marks.push_back({std::get<Fill>(shape).loops.front(), list.appearances[look]});
    }
  }
  std::erase_if(marks, [](const Mark& mark) { return mark.points.front().distanceTo(mark.points.back()) == 0; });
  return marks;
}

/// Takes all apart, and expects that it looks as before: the ends within 1e-9 of the size.
/// @return the numbers of the new entities by type
Types explodeAll(db::Database& database, double size) {
  const std::vector<Mark> before = marksOf(database);
  for (const dxf::RecordId entity : test::entitiesOf(database)) {
    const auto pieces = piecesOf(database, entity);
    EXPECT_TRUE(pieces);
    for (const Piece& piece : *pieces) EXPECT_TRUE(appendPiece(database, database.blockOfEntity(entity), piece));
    database.setErased(entity, true);
  }
  std::vector<Mark> after = marksOf(database);
  EXPECT_EQ(before.size(), after.size());
  const auto isNear = [&](const KdGePoint3d& p, const KdGePoint3d& q) { return p.distanceTo(q) <= 1e-9 * size; };
  const auto isSame = [&](const Mark& a, const Mark& b) {
    const std::vector<KdGePoint3d> reversed(a.points.rbegin(), a.points.rend());
    return a.look == b.look &&
           (std::ranges::equal(a.points, b.points, isNear) || std::ranges::equal(reversed, b.points, isNear));
  };
  for (const Mark& mark : before) {
    const auto found = std::ranges::find_if(after, [&](const Mark& other) { return isSame(mark, other); });
    EXPECT_NE(found, after.end()) << mark.points.size() << " points from " << mark.points[0].x << "," << mark.points[0].y;
    if (found != after.end()) after.erase(found);
  }
  Types types;
  for (const dxf::RecordId entity : test::entitiesOf(database)) ++types[std::string(database.file().typeName(entity))];
  return types;
}

/// An L of four elements with a gap in the first two and a slanted start, in a plane of its own.
std::string mline(const Transform& place, double scale, int flags) {
  const double r = std::numbers::sqrt2, r2 = 1 / r;
  const auto vertex = [&](const KdGePoint3d& at, const KdGeVector3d& axis, const KdGeVector3d& miter, double s,
                          const std::vector<double>& gap) {
    const KdGePoint3d p = place(at);
    const KdGeVector3d a = place(axis), m = place(miter);
    std::vector<std::vector<double>> lists = {{s, 0}, {0.4 * s, 0}, {-0.4 * s, 0}, {-s, 0}};
    for (const std::size_t i : {0, 1}) lists[i].insert(lists[i].end(), gap.begin(), gap.end());
    return test::mlineVertex({p.x, p.y, p.z, a.x, a.y, a.z, m.x, m.y, m.z}, lists);
  };
  return group(0, "MLINE") + group(100, "AcDbEntity") + group(8, "BROKEN") + group(62, "6") + group(100, "AcDbMline") +
         group(340, "E") + group(71, std::to_string(flags)) + point(210, place.z.x, place.z.y, place.z.z) +
         vertex({0, 0, 0}, {1, 0, 0}, {-r2, r2, 0}, r * scale, {3, 5}) +
         vertex({10, 0, 0}, {0, 1, 0}, {-r2, r2, 0}, r * scale, {}) + vertex({10, 10, 0}, {0, 1, 0}, {-1, 0, 0}, scale, {});
}

std::unique_ptr<db::Database> drawing(const std::string& entities, int styleFlags = 0) {
  const auto element = [](double offset, const char* color, const char* linetype) {
    return group(49, offset) + group(62, color) + group(6, linetype);
  };
  const std::string elements = group(71, "4") + element(1, "256", "BYLAYER") + element(0.4, "0", "BYBLOCK") +
                               element(-0.4, "3", "DASHED") + group(420, "1122867") + element(-1, "5", "MISSING");
  const std::string dashed = group(0, "LTYPE") + group(2, "DASHED") + group(49, 0.5) + group(49, -0.25);
  return test::SampleDrawing{.entities = entities,
                             .layers = group(0, "LAYER") + group(2, "BROKEN") + group(62, "1") + group(6, "DASHED"),
                             .linetypes = dashed + group(0, "LTYPE") + group(2, "CONTINUOUS"),
                             .styles = test::mlineStyle("E", "FOUR", styleFlags, elements)}
      .open();
}

TEST(Pieces, OfAMultilineShowWhatTheMultilineShows) {
  const int kAll = 1 | 2 | 16 | 32 | 64 | 256 | 512 | 1024;
  // Four lines a segment and two for the gaps; joints, caps and arcs in two halves each.
  const Types all = {{"LINE", 16}, {"ARC", 8}, {"SOLID", 2}, {"HATCH", 2}};
  const struct {
    const char* name;
    Transform place;
    double scale;
    int styleFlags, flags;
    Types types;
  } rows[] = {
      {"all", {}, 1, kAll, 1, all},
      {"closed", {}, 1, kAll, 3, {{"LINE", 20}, {"SOLID", 3}}},
      {"seen from below", Transform::fromExtrusion({0, 0, -1}), 1, kAll, 1, all},
      {"upright and turned", Transform::fromExtrusion({1, -2, 0.5}), 1, kAll, 1, all},
      {"far off", Transform::translation({1e6, -2e6, 50}), 1, kAll, 1, all},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto database = drawing(mline(row.place, row.scale, row.flags), row.styleFlags);
    EXPECT_EQ(explodeAll(*database, std::max(10.0, -row.place.origin.y)), row.types);
  }
}

TEST(Pieces, OfPolylinesAreTheirSegments) {
  const auto vertex = [](double x, double y, double bulge) { return group(10, x) + group(20, y) + group(42, bulge); };
  const std::string light = vertex(0, 0, 0.5) + vertex(10, 0, 0) + vertex(10, 10, -1) + vertex(10, 10, 0);
  const std::string old = test::entity("VERTEX", vertex(0, 0, -0.3)) + test::entity("VERTEX", vertex(5, 5, 0)) +
                          test::entity("VERTEX", vertex(9, 1, 0)) + test::entity("SEQEND", "");
  for (const KdGeVector3d& extrusion : {KdGeVector3d{0, 0, 1}, {0, 0, -1}, {0.3, -1, 0.2}}) {
    const std::string normal = point(210, extrusion.x, extrusion.y, extrusion.z);
    const auto database = drawing(test::entity("LWPOLYLINE", group(70, "1") + group(38, 2.0) + light + normal, "BROKEN") +
                                  test::entity("POLYLINE", point(10, 0, 0, 3) + group(39, 4.0) + normal, "BROKEN") + old);
    EXPECT_EQ(explodeAll(*database, 10), (Types{{"ARC", 2}, {"LINE", 3}}));
    const std::string last(database->file().bytes(test::entitiesOf(*database).back()));
    EXPECT_THAT(last, testing::HasSubstr(" 39\n4.0\n")) << "thickness goes on";
  }
}

TEST(Pieces, AreRefusedForOtherEntities) {
  const auto database = drawing(test::entity("CIRCLE", point(10, 0, 0) + group(40, 1.0)) +
                                test::entity("POLYLINE", group(70, "16")) + test::entity("SEQEND", ""));
  for (const dxf::RecordId entity : test::entitiesOf(*database)) {
    EXPECT_EQ(piecesOf(*database, entity).error().code, ErrorCode::notApplicable);
  }
}

}  // namespace
}  // namespace torva::draw

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "draw/drawer.h"
#include "draw/sample_drawing.h"
#include "dxf/sample_drawing.h"
#include "support/drawing_text.h"

namespace torva::draw {
namespace {

using test::entity;
using test::group;
using test::groupsFrom;
using test::point;

/// Random entities of every type, in all sizes and planes; next() makes one of each and takes one of them.
class EntityMaker {
 public:
  explicit EntityMaker(unsigned seed) : m_random(seed) {}

  std::string next() {
    const std::string all[] = {
        entity("LINE", spot(10) + spot(11)),
        entity("POINT", spot(10)),
        entity("CIRCLE", spot(10) + size(40) + plane()),
        entity("ARC", spot(10) + size(40) + angle(50) + angle(51) + plane()),
        entity("ELLIPSE",
               spot(10) + point(11, number(), number()) + group(40, share()) + group(41, share()) + group(42, 3 + share())),
        entity("LWPOLYLINE", group(70, flag()) + group(38, number()) + path() + plane()),
        polyline(),
        entity("TEXT", spot(10) + size(40) + group(41, 0.5 + share()) + angle(50) + group(51, 40 * share()) + words() +
                           group(72, std::to_string(pick(6))) + spot(11) + group(73, std::to_string(pick(4))) + plane()),
        entity("MTEXT", spot(10) + size(40) + group(41, pick(2) * 20.0) + group(71, std::to_string(1 + pick(9))) + words() +
                            angle(50) + plane()),
        entity("SOLID", spot(10) + spot(11) + spot(12) + spot(13) + plane()),
        entity("3DFACE", spot(10) + spot(11) + spot(12) + spot(13)),
        hatch(),
        entity("INSERT", group(2, "INNER") + spot(10) + group(41, number() / 100) + group(42, share()) + angle(50) +
                             group(70, std::to_string(1 + pick(3))) + group(71, std::to_string(1 + pick(3))) + size(44) +
                             size(45) + plane()),
        spline(),
        entity("LEADER", spot(10) + spot(10) + spot(10)),
        entity("DIMENSION", group(2, "INNER") + spot(10) + spot(12) + plane()),
        entity("INSERT", group(66, "1") + group(2, "INNER") + spot(10)) + entity("ATTRIB", spot(10) + size(40) + words()) +
            group(0, "SEQEND"),
        mline(),
    };
    return all[pick(static_cast<int>(std::size(all)))];
  }

  std::string mline() {
    const int vertices = pick(5), elements = 1 + pick(4);
    std::string body = group(2, "ROUND") + group(340, "A1") + group(40, 1.0) + group(70, "0") +
                       group(71, std::to_string(1 + 2 * pick(2) + 4 * pick(4))) + spot(10);
    for (int i = 0; i < vertices; ++i) {
      const double turn = number();
      std::vector<std::vector<double>> lists;
      for (int e = 0; e < elements - (pick(20) == 0); ++e) {
        std::vector<double> list(static_cast<std::size_t>(pick(7)));
        for (double& value : list) value = number() / 10;
        lists.push_back(list);
      }
      body += test::mlineVertex(
          {number(), number(), number(), std::cos(turn), std::sin(turn), 0, -std::sin(turn), std::cos(turn), 0}, lists);
    }
    return entity("MLINE", body);
  }

 private:
  int pick(int count) { return std::uniform_int_distribution<>(0, count - 1)(m_random); }
  double number() { return std::uniform_real_distribution<>(-1000, 1000)(m_random); }
  double share() { return std::uniform_real_distribution<>(0.01, 1)(m_random); }
  std::string spot(int code) { return point(code, number(), number(), number()); }
  std::string size(int code) { return group(code, 50 * share()); }
  std::string angle(int code) { return group(code, std::round(number())); }
  std::string flag() { return std::to_string(pick(2)); }
  std::string plane() { return pick(3) == 0 ? point(210, number(), number(), number()) : ""; }
  std::string words() {
    static const char* const kWords[] = {"Wall",
                                         "\\PMM %%c W",
                                         "a very long line of words with blanks",
                                         "\xC3\xA4\xE2\x82\xAC",
                                         "^J^J",
                                         "aWordWithoutBlanksMuchLongerThanTheWidthThatItIsWrappedTo x"};
    return group(1, kWords[pick(6)]);
  }
  std::string path() {
    std::string text;
    for (int i = 0, count = 1 + pick(5); i < count; ++i) {
      text += group(10, number()) + group(20, number());
      if (pick(2)) text += group(42, number() / 300);
    }
    return text;
  }
  std::string polyline() {
    std::string text =
        entity("POLYLINE", group(66, "1") + spot(10) + group(70, std::to_string(pick(2) + 8 * pick(2))) + plane());
    for (int i = 0, count = pick(5); i < count; ++i) text += entity("VERTEX", spot(10) + group(42, number() / 300));
    return text + group(0, "SEQEND");
  }
  std::string hatch() {
    const std::string head = spot(10) + plane() + group(2, "SOLID") + group(70, "1") + group(91, "1");
    if (pick(2)) return entity("HATCH", head + group(92, "2") + group(72, "1") + group(73, "1") + path() + group(75, "0"));
    return entity("HATCH", head + group(92, "1") + group(93, "2") + group(72, "2") + group(10, number()) +
                               group(20, number()) + size(40) + angle(50) + angle(51) + group(73, flag()) + group(72, "1") +
                               group(10, number()) + group(20, number()) + group(11, number()) + group(21, number()) +
                               group(75, "0"));
  }
  std::string spline() {
    std::string text = group(70, "8") + group(71, "2");
    for (const double knot : {0, 0, 0, 1, 2, 2, 2}) text += group(40, knot);
    for (int i = 0; i < 4; ++i) text += spot(10);
    return entity("SPLINE", text);
  }

  std::mt19937 m_random;
};

using Form = std::string (*)(const std::string& text);

std::string unchanged(const std::string& text) {
  return text;
}

std::string withCarriageReturns(const std::string& text) {
  std::string result = text;
  std::ranges::replace(result, '\n', '\r');
  return result;
}

std::string inBinary(const std::string& text) {
  dxf::test::SampleGroups groups;
  std::istringstream lines(text);
  for (std::string code, value; std::getline(lines, code) && std::getline(lines, value);)
    groups.emplace_back(std::stoi(code), value);
  return dxf::test::binaryForm(groups, dxf::BinaryCodes::twoBytes);
}

test::SampleDrawing randomDrawing(unsigned seed, int count) {
  EntityMaker maker(seed);
  test::SampleDrawing sample;
  sample.blocks = test::block("INNER", test::circle(5, 5, 2) + maker.mline(), {3, 4, 0});
  // Fill, joints, and every cap there is.
  sample.styles = test::mlineStyle("A1", "ROUND", 1 + 2 + 16 + 32 + 64 + 256 + 512 + 1024, group(49, 0.5) + group(49, -0.5));
  for (int i = 0; i < count; ++i) sample.entities += maker.next();
  return sample;
}

bool holds(const geom::Box3& outer, const geom::Box3& inner) {
  if (inner.isEmpty()) return true;
  const geom::Box3 wide = outer.grownBy(1e-9);
  return wide.min.x <= inner.min.x && wide.min.y <= inner.min.y && wide.min.z <= inner.min.z && wide.max.x >= inner.max.x &&
         wide.max.y >= inner.max.y && wide.max.z >= inner.max.z;
}

/// The ends and middles of all lines.
std::vector<KdGePoint3d> pointsOf(const DisplayList& list) {
  std::vector<KdGePoint3d> points;
  for (const Primitive& primitive : list.primitives) {
    const auto* polyline = std::get_if<Polyline>(&primitive.shape);
    for (std::size_t i = 1; polyline && i < polyline->points.size(); ++i) {
      const KdGePoint3d &a = polyline->points[i - 1], &b = polyline->points[i];
      points.insert(points.end(), {a, a + (b - a) * 0.5, b});
    }
  }
  return points;
}

TEST(Bounds, HoldAllThatIsDrawn) {
  constexpr int kCount = 4000;
  const std::string text = randomDrawing(20, kCount).text();
  for (const Form form : {unchanged, withCarriageReturns, inBinary}) {
    const auto database = test::openText(form(text));
    const Drawer drawer(*database);
    int drawn = 0, spared = 0;
    ASSERT_GE(test::entitiesOf(*database).size(), std::size_t{kCount});
    for (const dxf::RecordId record : test::entitiesOf(*database)) {
      DisplayList list;
      drawer.draw(record, list);
      if (!list.primitives.empty()) ++drawn;
      const geom::Box3 bounds = drawer.bounds(record);
      ASSERT_TRUE(holds(bounds, extents(list))) << database->file().bytes(record);
      for (const KdGePoint3d& point : pointsOf(list)) {
        geom::Box3 wanted;
        wanted.add(point);
        ASSERT_TRUE(drawer.mayMeet(record, wanted.grownBy(1e-6))) << database->file().bytes(record);
      }
      geom::Box3 corner;
      corner.add(bounds.max);
      if (!drawer.mayMeet(record, corner)) ++spared;
    }
    EXPECT_GT(drawn, kCount * 3 / 4);
    EXPECT_GT(spared, 50);
  }
}

TEST(Bounds, AreTightWhereTheyCanBe) {
  const double r = std::sqrt(2.0);
  const auto arc = [](double start, double end) {
    return entity("ARC", point(10, 0, 0) + group(40, 2.0) + group(50, start) + group(51, end));
  };
  const std::string polyline =
      groupsFrom("0 POLYLINE | 10 0 | 20 0 | 0 VERTEX | 10 5 | 20 5 | 0 VERTEX | 10 6 | 20 7 | 0 SEQEND");
  const std::string closed =
      entity("MLINE", group(340, "A1") + group(71, "3") + test::mlineVertex({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{1, 0}, {-1, 0}}) +
                          test::mlineVertex({9, 0, 0, -1, 0, 0, 0, 1, 0}, {{1, 0}, {-1, 0}}));
  const struct {
    const char* name;
    std::string entity;
    KdGePoint3d min, max;
  } cases[] = {
      {"arc", arc(45, 135), {-r, r, 0}, {r, 2, 0}},
      {"old polyline without its point at the origin", polyline, {5, 5, 0}, {6, 7, 0}},
      {"extended data", test::line(1, 1, 2, 2) + group(1001, "APP") + point(1010, 99, 99), {1, 1, 0}, {2, 2, 0}},
      {"closed multiline without caps", closed, {0, -1, 0}, {9, 1, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    test::SampleDrawing sample = randomDrawing(1, 0);
    sample.entities = c.entity;
    const auto database = sample.open();
    const geom::Box3 box = Drawer(*database).bounds(test::entitiesOf(*database).at(0));
    EXPECT_LE(box.min.distanceTo(c.min), 1e-9);
    EXPECT_LE(box.max.distanceTo(c.max), 1e-9);
  }
}

}  // namespace
}  // namespace torva::draw

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

#include "base/numbers.h"
#include "draw/drawer.h"
#include "draw/group_scan.h"
#include "draw/sample_drawing.h"
#include "dxf/binary_group.h"

namespace torva::draw {
namespace {

using test::entity;
using test::group;
using test::point;

/// Random entities of every type, in all sizes and planes.
class EntityMaker {
 public:
  explicit EntityMaker(unsigned seed) : m_random(seed) {}

  std::string next() {
    switch (pick(19)) {
      case 0:
        return entity("LINE", spot(10) + spot(11));
      case 1:
        return entity("POINT", spot(10));
      case 2:
        return entity("CIRCLE", spot(10) + size(40) + plane());
      case 3:
        return entity("ARC", spot(10) + size(40) + angle(50) + angle(51) + plane());
      case 4:
        return entity("ELLIPSE", spot(10) + point(11, number(), number()) + group(40, share()) + group(41, share()) +
                                     group(42, 3 + share()));
      case 5:
        return entity("LWPOLYLINE", group(70, flag()) + group(38, number()) + path() + plane());
      case 6:
        return polyline();
      case 7:
        return entity("TEXT", spot(10) + size(40) + group(41, 0.5 + share()) + angle(50) + group(51, 40 * share()) +
                                  words() + group(72, std::to_string(pick(6))) + spot(11) +
                                  group(73, std::to_string(pick(4))) + plane());
      case 8:
        return entity("MTEXT", spot(10) + size(40) + group(41, pick(2) * 20.0) + group(71, std::to_string(1 + pick(9))) +
                                   words() + angle(50) + plane());
      case 9:
        return entity("SOLID", spot(10) + spot(11) + spot(12) + spot(13) + plane());
      case 10:
        return entity("3DFACE", spot(10) + spot(11) + spot(12) + spot(13));
      case 11:
        return hatch();
      case 12:
        return entity("INSERT", group(2, "INNER") + spot(10) + group(41, number() / 100) + group(42, share()) + angle(50) +
                                    group(70, std::to_string(1 + pick(3))) + group(71, std::to_string(1 + pick(3))) +
                                    size(44) + size(45) + plane());
      case 13:
        return spline();
      case 14:
        return entity("LEADER", spot(10) + spot(10) + spot(10));
      case 15:
        return entity("DIMENSION", group(2, "INNER") + spot(10) + spot(12) + plane());
      case 16:
        return entity("INSERT", group(66, "1") + group(2, "INNER") + spot(10)) +
               entity("ATTRIB", spot(10) + size(40) + words()) + group(0, "SEQEND");
      default:
        return mline();
    }
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

std::string withCarriageReturns(std::string text) {
  for (char& c : text) c = c == '\n' ? '\r' : c;
  return text;
}

template <class T>
std::string littleEndian(T value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

/// The same drawing in the binary form.
std::string inBinary(std::string text) {
  std::string bytes(dxf::kBinarySentinel);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t codeEnd = text.find('\n', at), valueEnd = text.find('\n', codeEnd + 1);
    const int code = std::stoi(text.substr(at, codeEnd - at));
    const std::string value = text.substr(codeEnd + 1, valueEnd - codeEnd - 1);
    bytes += littleEndian(static_cast<std::int16_t>(code));
    switch (dxf::valueKind(code)) {
      case dxf::ValueKind::real:
        bytes += littleEndian(parseReal(value).value());
        break;
      case dxf::ValueKind::int16:
        bytes += littleEndian(static_cast<std::int16_t>(parseInteger(value).value()));
        break;
      case dxf::ValueKind::int32:
        bytes += littleEndian(static_cast<std::int32_t>(parseInteger(value).value()));
        break;
      default:
        bytes += value + '\0';
        break;
    }
    at = valueEnd + 1;
  }
  return bytes;
}

std::string unchanged(std::string text) {
  return text;
}

test::SampleDrawing randomDrawing(unsigned seed, int count) {
  EntityMaker maker(seed);
  test::SampleDrawing sample;
  sample.blocks = group(0, "BLOCK") + group(2, "INNER") + point(10, 3, 4) +
                  entity("CIRCLE", point(10, 5, 5) + group(40, 2.0)) + maker.mline() + group(0, "ENDBLK");
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

/// Points closely along all lines.
std::vector<KdGePoint3d> pointsAlong(const DisplayList& list) {
  constexpr int kPieces = 20;
  std::vector<KdGePoint3d> points;
  for (const Primitive& primitive : list.primitives) {
    const auto* polyline = std::get_if<Polyline>(&primitive.shape);
    if (!polyline) continue;
    const std::size_t count = polyline->points.size();
    for (std::size_t i = 0; i + (polyline->isClosed ? 0 : 1) < count; ++i) {
      const KdGePoint3d &a = polyline->points[i], &b = polyline->points[(i + 1) % count];
      for (int k = 0; k <= kPieces; ++k) points.push_back(a + (b - a) * (1.0 * k / kPieces));
    }
  }
  return points;
}

TEST(Bounds, HoldAllThatIsDrawn) {
  constexpr int kCount = 4000;
  const std::string text = randomDrawing(20, kCount).text();
  for (const auto& form : {unchanged, withCarriageReturns, inBinary}) {
    std::vector<dxf::Finding> findings;
    auto database = db::Database::fromBytes(form(text), "random", dxf::DamagePolicy::recover, findings);
    ASSERT_TRUE(database) << database.error().message();
    const Drawer drawer(**database);
    int drawn = 0;
    ASSERT_GE(test::entitiesOf(**database).size(), std::size_t{kCount});
    for (const dxf::RecordId record : test::entitiesOf(**database)) {
      DisplayList list;
      drawer.draw(record, list);
      if (!list.primitives.empty()) ++drawn;
      ASSERT_TRUE(holds(drawer.bounds(record), extents(list))) << (*database)->file().bytes(record);
    }
    EXPECT_GT(drawn, kCount * 3 / 4);
  }
}

TEST(Bounds, AreTightWhereTheyCanBe) {
  struct Case {
    const char* name;
    std::string entity;
    KdGePoint3d min, max;
  };
  const Case cases[] = {
      {"arc",
       entity("ARC", point(10, 0, 0) + group(40, 2.0) + group(50, 45.0) + group(51, 135.0)),
       {-std::sqrt(2.0), std::sqrt(2.0), 0},
       {std::sqrt(2.0), 2, 0}},
      {"whole circle given as arc",
       entity("ARC", point(10, 0, 0) + group(40, 2.0) + group(50, 30.0) + group(51, 30.0)),
       {-2, -2, 0},
       {2, 2, 0}},
      {"hatch without its point at the origin",
       entity("HATCH", point(10, 0, 0) + group(70, "1") + group(91, "1") + group(92, "2") + group(93, "3") + group(10, 5.0) +
                           group(20, 5.0) + group(10, 6.0) + group(20, 5.0) + group(10, 6.0) + group(20, 7.0) +
                           group(75, "0") + group(98, "1") + group(10, 0.0) + group(20, 0.0)),
       {5, 5, 0},
       {6, 7, 0}},
      {"old polyline without its point at the origin",
       entity("POLYLINE", point(10, 0, 0)) + entity("VERTEX", point(10, 5, 5)) + entity("VERTEX", point(10, 6, 7)) +
           group(0, "SEQEND"),
       {5, 5, 0},
       {6, 7, 0}},
      {"extended data is no geometry",
       entity("LINE", point(10, 1, 1) + point(11, 2, 2) + group(1001, "APP") + point(1010, 99, 99)),
       {1, 1, 0},
       {2, 2, 0}},
      {"closed multiline without caps",
       entity("MLINE", group(340, "A1") + group(71, "3") +
                           test::mlineVertex({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{1, 0}, {-1, 0}}) +
                           test::mlineVertex({9, 0, 0, -1, 0, 0, 0, 1, 0}, {{1, 0}, {-1, 0}})),
       {0, -1, 0},
       {9, 1, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    test::SampleDrawing sample = randomDrawing(1, 0);
    sample.entities = c.entity;
    const auto database = sample.open();
    const auto records = test::entitiesOf(*database);
    ASSERT_EQ(records.size(), 1u);
    const geom::Box3 box = Drawer(*database).bounds(records[0]);
    EXPECT_LE(box.min.distanceTo(c.min), 1e-9);
    EXPECT_LE(box.max.distanceTo(c.max), 1e-9);
  }
}

TEST(Bounds, ProbeNeverMissesWhatIsDrawn) {
  test::SampleDrawing sample = randomDrawing(5, 0);
  EntityMaker maker(6);
  for (int i = 0; i < 500; ++i) sample.entities += maker.mline();
  const auto database = sample.open();
  const Drawer drawer(*database);
  std::mt19937 random(7);
  std::uniform_real_distribution<> number(-1000, 1000);
  int spared = 0;
  for (const dxf::RecordId record : test::entitiesOf(*database)) {
    DisplayList list;
    drawer.draw(record, list);
    const KdGePoint3d center{number(random), number(random), 0};
    geom::Box3 wanted;
    wanted.add(center);
    wanted = wanted.grownBy(150);
    const bool mayMeet = drawer.mayMeet(record, wanted);
    if (!mayMeet) ++spared;
    for (const KdGePoint3d& p : pointsAlong(list)) {
      const bool isInside = std::abs(p.x - center.x) <= 150 && std::abs(p.y - center.y) <= 150;
      EXPECT_TRUE(mayMeet || !isInside);
    }
  }
  EXPECT_GT(spared, 50);
}

}  // namespace
}  // namespace torva::draw

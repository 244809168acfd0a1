#include "draw/sample_drawing.h"

#include <cmath>
#include <cstdlib>
#include <fmt/format.h>
#include <iostream>

#include "base/numbers.h"
#include "support/drawing_text.h"

namespace torva::test {
std::string group(int code, const std::string& value) {
  return fmt::format("{:3}\n{}\n", code, value);
}

std::string group(int code, double value) {
  return group(code, formatReal(value));
}

std::string point(int code, double x, double y, double z) {
  return group(code, x) + group(code + 10, y) + group(code + 20, z);
}

std::string entity(const std::string& type, const std::string& body, const std::string& layer) {
  return group(0, type) + group(100, "AcDbEntity") + group(8, layer) + group(100, "AcDbShape") + body;
}

std::string line(double x, double y, double x2, double y2, double z) {
  return entity("LINE", point(10, x, y, z) + point(11, x2, y2, z));
}

std::string circle(double x, double y, double radius, double z) {
  return entity("CIRCLE", point(10, x, y, z) + group(40, radius));
}

std::string path(const std::vector<std::array<double, 3>>& points, int flags) {
  std::string body = group(70, std::to_string(flags));
  for (const auto& [x, y, bulge] : points) body += group(10, x) + group(20, y) + group(42, bulge);
  return entity("LWPOLYLINE", body);
}

std::string viewport(const std::string& groups) {
  return group(0, "VPORT") + group(2, "*Active") + groups;
}

std::string block(const std::string& name, const std::string& entities, const KdGePoint3d& base) {
  return group(0, "BLOCK") + group(8, "0") + group(2, name) + point(10, base.x, base.y, base.z) + entities +
         group(0, "ENDBLK");
}

std::string mlineVertex(const std::vector<double>& p, const std::vector<std::vector<double>>& lists) {
  std::string text = point(11, p[0], p[1], p[2]) + point(12, p[3], p[4], p[5]) + point(13, p[6], p[7], p[8]);
  for (const std::vector<double>& list : lists) {
    text += group(74, std::to_string(list.size()));
    for (const double value : list) text += group(41, value);
    text += group(75, "0");
  }
  return text;
}

std::string mlineBar(const KdGePoint3d& from, double turnRad) {
  const double c = std::cos(turnRad), s = std::sin(turnRad);
  const std::vector<std::vector<double>> lists = {{3, 0, 20, 30}, {-3, 0}};
  return entity("MLINE", group(71, "1") + mlineVertex({from.x, from.y, from.z, c, s, 0, -s, c, 0}, lists) +
                             mlineVertex({from.x + 50 * c, from.y + 50 * s, from.z, c, s, 0, -s, c, 0}, lists));
}

std::string mlineStyle(const std::string& handle, const std::string& name, int flags, const std::string& elements) {
  return group(0, "MLINESTYLE") + group(5, handle) + group(100, "AcDbMlineStyle") + group(2, name) +
         group(70, std::to_string(flags)) + group(3, "") + group(62, "256") + group(51, 90.0) + group(52, 90.0) + elements;
}

std::string SampleDrawing::text() const {
  const std::string layer = "0 LAYER | 100 AcDbSymbolTableRecord | 100 AcDbLayerTableRecord | 6 Continuous | ";
  return groupsFrom("0 SECTION | 2 HEADER | 9 $ACADVER | 1 AC1015 | 0 ENDSEC") +
         groupsFrom("0 SECTION | 2 TABLES | 0 TABLE | 2 VPORT") + viewport + groupsFrom("0 ENDTAB | 0 TABLE | 2 LTYPE") +
         linetypes + groupsFrom("0 ENDTAB | 0 TABLE | 2 LAYER") + groupsFrom(layer + "2 0 | 70 0 | 62 7") +
         groupsFrom(layer + "2 RED | 70 0 | 62 1") + groupsFrom(layer + "2 OFF | 70 0 | 62 -3") +
         groupsFrom(layer + "2 FROZEN | 70 1 | 62 3") + layers +
         groupsFrom("0 ENDTAB | 0 TABLE | 2 BLOCK_RECORD | 0 BLOCK_RECORD | 5 1F | 2 *Model_Space | 0 ENDTAB | 0 ENDSEC") +
         groupsFrom("0 SECTION | 2 BLOCKS") + blocks + groupsFrom("0 ENDSEC | 0 SECTION | 2 ENTITIES") + entities +
         groupsFrom("0 ENDSEC | 0 SECTION | 2 OBJECTS | 0 DICTIONARY | 5 C | 100 AcDbDictionary") + styles +
         groupsFrom("0 ENDSEC | 0 EOF");
}

std::unique_ptr<db::Database> SampleDrawing::open() const {
  return openText(text());
}

std::unique_ptr<db::Database> openText(std::string text) {
  std::vector<dxf::Finding> findings;
  auto database = db::Database::fromBytes(std::move(text), "sample", dxf::DamagePolicy::recover, findings);
  if (database) return std::move(*database);
  std::cerr << database.error().message() << "\n";
  std::abort();
}

std::vector<dxf::RecordId> entitiesOf(const db::Database& database) {
  std::vector<dxf::RecordId> entities;
  database.forEachModelSpaceEntity([&](dxf::RecordId entity) { entities.push_back(entity); });
  return entities;
}

}  // namespace torva::test

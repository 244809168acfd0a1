#include "draw/sample_drawing.h"

#include <cstdlib>
#include <fmt/format.h>
#include <iostream>

#include "base/numbers.h"

namespace torva::test {
namespace {

std::string section(const std::string& name, const std::string& body) {
  return group(0, "SECTION") + group(2, name) + body + group(0, "ENDSEC");
}

std::string table(const std::string& name, const std::string& body) {
  return group(0, "TABLE") + group(2, name) + body + group(0, "ENDTAB");
}

std::string layer(const std::string& name, int color, int flags = 0) {
  return group(0, "LAYER") + group(100, "AcDbSymbolTableRecord") + group(100, "AcDbLayerTableRecord") + group(2, name) +
         group(70, std::to_string(flags)) + group(62, std::to_string(color)) + group(6, "Continuous");
}

}  // namespace

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

std::string mlineVertex(const std::vector<double>& p, const std::vector<std::vector<double>>& lists) {
  std::string text = point(11, p[0], p[1], p[2]) + point(12, p[3], p[4], p[5]) + point(13, p[6], p[7], p[8]);
  for (const std::vector<double>& list : lists) {
    text += group(74, std::to_string(list.size()));
    for (const double value : list) text += group(41, value);
    text += group(75, "0");
  }
  return text;
}

std::string mlineStyle(const std::string& handle, const std::string& name, int flags, const std::string& elements) {
  return group(0, "MLINESTYLE") + group(5, handle) + group(100, "AcDbMlineStyle") + group(2, name) +
         group(70, std::to_string(flags)) + group(3, "") + group(62, "256") + group(51, 90.0) + group(52, 90.0) + elements;
}

std::string SampleDrawing::text() const {
  const std::string header = group(9, "$ACADVER") + group(1, "AC1015");
  const std::string allLayers = layer("0", 7) + layer("RED", 1) + layer("OFF", -3) + layer("FROZEN", 3, 1) + layers;
  const std::string tables = table("VPORT", viewport) + table("LTYPE", linetypes) + table("LAYER", allLayers) +
                             table("BLOCK_RECORD", group(0, "BLOCK_RECORD") + group(5, "1F") + group(2, "*Model_Space"));
  const std::string root = group(0, "DICTIONARY") + group(5, "C") + group(100, "AcDbDictionary");
  return section("HEADER", header) + section("TABLES", tables) + section("BLOCKS", blocks) + section("ENTITIES", entities) +
         section("OBJECTS", root + styles) + group(0, "EOF");
}

std::unique_ptr<db::Database> SampleDrawing::open() const {
  std::vector<dxf::Finding> findings;
  auto database = db::Database::fromBytes(text(), "sample", dxf::DamagePolicy::recover, findings);
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

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "db/database.h"

namespace torva::test {

/// Group code and value, as lines of a drawing.
std::string group(int code, const std::string& value);
std::string group(int code, double value);
/// The three groups of a point.
std::string point(int code, double x, double y, double z = 0);

/// A record of an entity on a layer; `body` holds the groups behind the layer.
std::string entity(const std::string& type, const std::string& body, const std::string& layer = "0");

/// One vertex of a multiline: the groups 11 to 13 and a list (groups 74, 41, 75) for each element.
std::string mlineVertex(const std::vector<double>& positionAxisMiter, const std::vector<std::vector<double>>& lists);

/// A style of multilines with handle; elements as "49 62 6" groups in `elements`.
std::string mlineStyle(const std::string& handle, const std::string& name, int flags, const std::string& elements);

/// A drawing (R2000) with model space entities, further table records, blocks and objects. Layers: 0, RED (1), OFF, FROZEN.
struct SampleDrawing {
  std::string entities = {}, blocks = {}, layers = {}, linetypes = {}, viewport = {}, styles = {};
  std::string text() const;
  /// Opens it; a failure ends the test program with a message.
  std::unique_ptr<db::Database> open() const;
};

/// All model space entities in drawing order.
std::vector<dxf::RecordId> entitiesOf(const db::Database& database);

}  // namespace torva::test

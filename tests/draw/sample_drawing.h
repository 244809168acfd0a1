#pragma once

#include <array>
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

std::string line(double x, double y, double x2, double y2, double z = 0);
std::string circle(double x, double y, double radius, double z = 0);
/// A light polyline through points x, y with their bulges; flags as in group 70.
std::string path(const std::vector<std::array<double, 3>>& points, int flags = 0);
std::string block(const std::string& name, const std::string& entities, const KdGePoint3d& base = {});

/// One vertex of a multiline: the groups 11 to 13 and a list (groups 74, 41, 75) for each element.
std::string mlineVertex(const std::vector<double>& positionAxisMiter, const std::vector<std::vector<double>>& lists);

/// A multiline of two elements, 3 beside its path of 50 units from a point, the left one with a gap from 20 to 30.
std::string mlineBar(const KdGePoint3d& from, double turnRad);

/// A style of multilines with handle; elements as "49 62 6" groups in `elements`.
std::string mlineStyle(const std::string& handle, const std::string& name, int flags, const std::string& elements);

/// The record of the view that a drawing was left with; `groups` hold its direction, twist, ...
std::string viewport(const std::string& groups);

/// A drawing (R2000) with model space entities, further table records, blocks and objects. Layers: 0, RED (1), OFF, FROZEN.
struct SampleDrawing {
  std::string entities = {}, blocks = {}, layers = {}, linetypes = {}, viewport = {}, styles = {};
  std::string text() const;
  /// openText() of it.
  std::unique_ptr<db::Database> open() const;
};

/// All model space entities in drawing order.
std::vector<dxf::RecordId> entitiesOf(const db::Database& database);

/// Opens a drawing's text; a failure ends the test program with a message.
std::unique_ptr<db::Database> openText(std::string text);

}  // namespace torva::test

#include "draw/shape_boxes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "draw/sketch.h"
#include "draw/texts.h"
#include "geom/transform.h"

namespace torva::draw {

using geom::Box3;

bool isFinite(const Box3& box) {
  return geom::isFinite(box.min) && geom::isFinite(box.max);
}

Box3 padded(const Box3& box) {
  constexpr double kRoundingShare = 1e-12;
  if (box.isEmpty()) return box;
  const KdGePoint3d &a = box.min, &b = box.max;
  const double size = std::max({std::abs(a.x), std::abs(a.y), std::abs(a.z), std::abs(b.x), std::abs(b.y), std::abs(b.z)});
  return box.grownBy(size * kRoundingShare);
}

bool meetInPlan(const Box3& a, const Box3& b) {
  return a.min.x <= b.max.x && a.max.x >= b.min.x && a.min.y <= b.max.y && a.max.y >= b.min.y;
}

Box3 inWorld(const Box3& box, const KdGeVector3d& extrusion) {
  const geom::Transform ocs = geom::Transform::fromExtrusion(extrusion);
  return ocs.isIdentity() ? box : ocs(box);
}

Box3 circleBox(const KdGePoint3d& center, double radius) {
  const KdGeVector3d reach{std::abs(radius), std::abs(radius), 0};
  return {center - reach, center + reach};
}

Box3 arcBox(const KdGePoint3d& center, double radius, double startDegrees, double endDegrees) {
  constexpr double kTurn = 360, kQuarter = 90;
  Box3 box;
  for (const double degrees : {startDegrees, endDegrees}) {
    const double angle = radians(degrees);
    box.add(center + KdGeVector3d{radius * std::cos(angle), radius * std::sin(angle), 0});
  }
  const double sweep = endDegrees - startDegrees - kTurn * std::floor((endDegrees - startDegrees) / kTurn);
  const double end = startDegrees + (sweep > 0 ? sweep : kTurn);
  constexpr KdGeVector3d kSides[] = {{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
  double quarter = std::ceil(startDegrees / kQuarter);
  for (int i = 0; i < 4 && quarter * kQuarter <= end; ++i, ++quarter) {
    const int side = static_cast<int>(quarter - 4 * std::floor(quarter / 4));
    box.add(center + kSides[side & 3] * radius);
  }
  return box;
}

Box3 ellipseBox(const EntityFacts& facts) {
  const RecordValues& values = facts.values;
  Arc arc = circularArc(values.point(10), 1, values.real(41), values.real(42, 2 * std::numbers::pi));
  arc.xAxis = values.vector(11);
  arc.yAxis = facts.extrusion.normal().crossProduct(arc.xAxis) * values.real(40, 1);
  return extents(Shape(arc));
}

Box3 textBox(const EntityFacts& facts, dxf::RecordType type, double width) {
  const TextFrame frame = textFrame(facts.values, type, width);
  const KdGeVector3d along = frame.xAxis * width;
  const KdGePoint3d low = frame.origin + frame.yAxis * -kTextDescent, high = frame.origin + frame.yAxis * kTextAscent;
  return boxOf(low, low + along, high, high + along);
}

Box3 multilineTextBox(const EntityFacts& facts) {
  const RecordValues& values = facts.values;
  const double height = values.real(40), width = values.real(41) / height;
  if (!(height > 0)) return {};
  // Two lines in a row are together wider than the width they are wrapped to.
  const double linesOfContent = 1 + static_cast<double>(facts.contentBreaks);
  const double lines = linesOfContent + (width > 0 ? 2 * facts.contentWidth / width : 0);
  const double reachAlong = width > 0 ? std::min(facts.contentWidth, std::max(width, facts.widestWord)) : facts.contentWidth;
  const double reachUp = 1 + kTextAscent + kTextDescent + lines * kMultilineSpacing * std::abs(values.real(44, 1));
  const Box3 around = inWorld(circleBox({}, height * std::hypot(reachAlong, reachUp)), facts.extrusion);
  const KdGeVector3d at = values.vector(10);
  return {around.min + at, around.max + at};
}

void addContent(std::string_view text, EntityFacts& facts) {
  facts.contentWidth += mostTextWidth(text);
  // Every code counts as a line's end, which some of them are.
  facts.contentBreaks += std::count_if(text.begin(), text.end(), [](char c) { return c == '\\' || c == '^'; });
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    facts.wordWidth += mostTextWidth(text.substr(begin, end + 1 - begin));
    facts.widestWord = std::max(facts.widestWord, facts.wordWidth);
    if (end < text.size()) facts.wordWidth = 0;
    begin = end + 1;
  }
}

}  // namespace torva::draw

#include "command/commands/circle_command.h"

#include <cmath>
#include <numbers>
#include <optional>

#include "command/editor.h"
#include "db/new_entity.h"
#include "geom/transform.h"

namespace torva::command {

namespace {

/// Three points count as lying on one line below this sine of the angle at the first of them.
constexpr double kLeastSine = 1e-10;

struct Circle {
  KdGePoint3d centerUcs;
  double radius = 0;
};

void draw(Editor& editor, const Circle& circle) {
  if (!geom::isFinite(circle.centerUcs) || !std::isfinite(circle.radius) || circle.radius <= 0) {
    return editor.report({ErrorCode::invalidValue, "there is no circle of that size"}, Fault::script);
  }
  db::Database& drawing = editor.database();
  const KdGeVector3d normal = editor.userPlane().z;
  db::NewEntity entity(drawing, drawing.recordOf(drawing.modelSpaceId()), "CIRCLE",
                       db::currentProperties(editor.variables()));
  entity.beginPart("AcDbCircle");
  entity.point(10, geom::toExtrusion(editor.toWorld(circle.centerUcs), normal));
  entity.groups().real(40, circle.radius);
  entity.extrusion(normal);
  if (const auto record = entity.append(); !record) editor.report(record.error(), Fault::script);
}

/// The next point of a circle, at the height of the first one.
bool askPoint(Editor& editor, const KdGePoint3d& first, const std::wstring& prompt, KdGePoint3d& point) {
  if (editor.getPoint(nullptr, prompt, point) != kKdInputNormal) return false;
  point.z = first.z;
  return true;
}

/// Shows the circle whose radius is a share of the distance to the cursor.
Preview circlePreview(Editor& editor, const KdGePoint3d& center, double share) {
  return [&editor, center, share](const Cursor& cursor) {
    const double radius = center.distanceTo(cursor.pointUcs) * share;
    const auto& plane = editor.userPlane();
    draw::DisplayList list;
    const draw::Arc whole{plane.toWorld(center), plane.x * radius, plane.y * radius, 0, 2 * std::numbers::pi};
    list.primitives.push_back({whole, list.indexOf(draw::Appearance::foreground())});
    return list;
  };
}

std::optional<Circle> askRadius(Editor& editor, const KdGePoint3d& center) {
  Circle circle{center};
  constexpr int kPositive = kKdNoZero | kKdNoNegative | kKdNoEmptyAnswer;
  if (editor.initGet(kPositive, L"Diameter") != kKdInputNormal) return std::nullopt;
  editor.offerPreview(circlePreview(editor, center, 1));
  const int status = editor.getDistance(center, L"Specify radius of circle or [Diameter]: ", circle.radius);
  if (status == kKdInputNormal) return circle;
  if (status != kKdInputKeyword || editor.initGet(kPositive, nullptr) != kKdInputNormal) return std::nullopt;
  editor.offerPreview(circlePreview(editor, center, 0.5));
  if (editor.getDistance(center, L"Specify diameter of circle: ", circle.radius) != kKdInputNormal) return std::nullopt;
  circle.radius /= 2;
  return circle;
}

std::optional<Circle> askDiameter(Editor& editor) {
  KdGePoint3d first, second;
  if (editor.getPoint(nullptr, L"Specify first end point of circle's diameter: ", first) != kKdInputNormal)
    return std::nullopt;
  if (!askPoint(editor, first, L"Specify second end point of circle's diameter: ", second)) return std::nullopt;
  return Circle{first + (second - first) * 0.5, first.distanceTo(second) / 2};
}

/// The circle through three points of one height; without radius when they lie on one line.
Circle circleThrough(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third) {
  const KdGeVector3d a = second - first, b = third - first;
  const double cross = a.x * b.y - a.y * b.x, aa = a.dotProduct(a), bb = b.dotProduct(b);
  if (std::abs(cross) <= kLeastSine * std::sqrt(aa) * std::sqrt(bb)) return {};
  const KdGeVector3d toCenter{(b.y * aa - a.y * bb) / (2 * cross), (a.x * bb - b.x * aa) / (2 * cross), 0};
  return {first + toCenter, toCenter.length()};
}

std::optional<Circle> askThreePoints(Editor& editor) {
  KdGePoint3d first, second, third;
  if (editor.getPoint(nullptr, L"Specify first point on circle: ", first) != kKdInputNormal) return std::nullopt;
  if (!askPoint(editor, first, L"Specify second point on circle: ", second)) return std::nullopt;
  if (!askPoint(editor, first, L"Specify third point on circle: ", third)) return std::nullopt;
  const Circle circle = circleThrough(first, second, third);
  if (circle.radius > 0) return circle;
  editor.report({ErrorCode::invalidValue, "the three points lie on one line"}, Fault::script);
  return std::nullopt;
}

std::optional<Circle> askCircle(Editor& editor) {
  if (editor.initGet(kKdInitGetNone, L"3P 2P") != kKdInputNormal) return std::nullopt;
  KdGePoint3d center;
  const int status = editor.getPoint(nullptr, L"Specify center point for circle or [3P/2P]: ", center);
  if (status == kKdInputNormal) return askRadius(editor, center);
  if (status != kKdInputKeyword) return std::nullopt;
  return editor.lastKeyword() == L"3P" ? askThreePoints(editor) : askDiameter(editor);
}

}  // namespace

void circleCommand(Editor& editor) {
  if (const auto circle = askCircle(editor)) draw(editor, *circle);
}

}  // namespace torva::command

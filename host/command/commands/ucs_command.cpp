#include "command/commands/ucs_command.h"

#include <cmath>
#include <numbers>

#include "command/editor.h"
#include "command/variable_access.h"

namespace torva::command {

namespace {

constexpr double kQuarterDegrees = 90;

/// Cosine and sine of an angle; those of whole quarter turns without rounding.
KdGeVector3d directionOf(double angleDegrees) {
  const double quarters = std::remainder(angleDegrees, 4 * kQuarterDegrees) / kQuarterDegrees;
  if (quarters == std::round(quarters)) {
    const int quarter = static_cast<int>(quarters);
    return {quarter % 2 == 0 ? 1.0 - std::abs(quarter) : 0.0, quarter % 2 == 0 ? 0.0 : static_cast<double>(quarter), 0};
  }
  const double angleRad = quarters * std::numbers::pi / 2;
  return {std::cos(angleRad), std::sin(angleRad), 0};
}

void set(Editor& editor, const UserPlane& plane) {
  if (const auto done = editor.setUserPlane(plane); !done) editor.report(done.error(), Fault::script);
}

void moveTo(Editor& editor, const KdGePoint3d& originUcs) {
  UserPlane plane = editor.userPlane();
  plane.origin = plane.toWorld(originUcs);
  set(editor, plane);
}

void askOrigin(Editor& editor) {
  KdGePoint3d origin;
  const int status = editor.getPoint(nullptr, L"Specify new origin point <0,0,0>: ", origin);
  if (status == kKdInputNormal) moveTo(editor, origin);
}

void askRotation(Editor& editor) {
  double angleDegrees = kQuarterDegrees;
  const int status = editor.getReal(L"Specify rotation angle about Z axis <90>: ", angleDegrees);
  if (status != kKdInputNormal && status != kKdInputNone) return;
  UserPlane plane = editor.userPlane();
  const KdGeVector3d turn = directionOf(angleDegrees);
  const KdGeVector3d x = (plane.x * turn.x + plane.y * turn.y).normal();
  plane.y = (plane.y * turn.x - plane.x * turn.y).normal();
  plane.x = x;
  set(editor, plane);
}

void restore(Editor& editor) {
  const auto done = editor.restoreUserPlane();
  if (!done) return editor.report(done.error(), Fault::script);
  if (!*done) editor.print(L"There is no previous user coordinate system.");
}

std::wstring nameOf(Editor& editor) {
  if (variableOr(editor.variables(), L"WORLDUCS", 0) == 1) return L"*WORLD*";
  const dxf::DrawingFile& file = editor.database().file();
  const auto name = file.headerVariable("$UCSNAME");
  return name.empty() || name.front().value.empty() ? L"*NO NAME*" : file.text(name.front());
}

}  // namespace

void ucsCommand(Editor& editor) {
  editor.print(L"Current ucs name: " + nameOf(editor));
  KdGePoint3d origin;
  if (editor.initGet(kKdInitGetNone, L"Origin Previous World Z") != kKdInputNormal) return;
  const int status = editor.getPoint(nullptr, L"Specify origin of UCS or [Origin/Previous/World/Z] <World>: ", origin);
  if (status == kKdInputNormal) return moveTo(editor, origin);
  if (status == kKdInputNone) return set(editor, {});
  if (status != kKdInputKeyword) return;
  if (editor.lastKeyword() == L"Origin") return askOrigin(editor);
  if (editor.lastKeyword() == L"Previous") return restore(editor);
  if (editor.lastKeyword() == L"Z") return askRotation(editor);
  set(editor, {});
}

}  // namespace torva::command

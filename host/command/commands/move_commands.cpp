#include "command/commands/move_commands.h"

#include <optional>

#include "command/editor.h"
#include "command/refusals.h"
#include "command/selection.h"
#include "db/entity_displacement.h"

namespace torva::command {

namespace {

constexpr std::size_t kMostPreviewed = 500;

/// The way to a point from 0,0, which like all points without a height lies at the elevation. World coordinates.
KdGeVector3d fromOrigin(Editor& editor, const KdGePoint3d& pointUcs) {
  return editor.toWorld(pointUcs) - editor.toWorld({0, 0, editor.userPlane().elevation});
}

std::optional<KdGeVector3d> askDisplacement(Editor& editor) {
  KdGePoint3d end;
  if (editor.getPoint(nullptr, L"Displacement: ", end) != kKdInputNormal) return std::nullopt;
  return fromOrigin(editor, end);
}

/// Shows the entities on their way from a point to the cursor, some of many.
Preview displacedPreview(Editor& editor, const std::vector<dxf::RecordId>& entities, const KdGePoint3d& fromUcs) {
  draw::DisplayList shapes;
  for (std::size_t i = 0; i < entities.size() && i < kMostPreviewed; ++i) {
    editor.picker().drawer().drawShapes(entities[i], shapes);
  }
  return [&editor, fromUcs, shapes = std::move(shapes)](const Cursor& cursor) {
    draw::DisplayList list = shapes;
    draw::displace(list, editor.toWorld(cursor.pointUcs) - editor.toWorld(fromUcs));
    return list;
  };
}

/// World coordinates; nothing when the user gives none.
std::optional<KdGeVector3d> askWay(Editor& editor, const std::vector<dxf::RecordId>& entities) {
  KdGePoint3d base, second;
  if (editor.initGet(kKdInitGetNone, L"Displacement") != kKdInputNormal) return std::nullopt;
  const int status = editor.getPoint(nullptr, L"Base point or [Displacement]: ", base);
  if (status == kKdInputKeyword) return askDisplacement(editor);
  if (status != kKdInputNormal) return std::nullopt;
  if (editor.initGet(kKdInitGetNone, nullptr) != kKdInputNormal) return std::nullopt;
  editor.offerPreview(displacedPreview(editor, entities, base));
  switch (editor.getPoint(&base, L"Second point <first point as displacement>: ", second)) {
    case kKdInputNormal:
      return editor.toWorld(second) - editor.toWorld(base);
    case kKdInputNone:
      return fromOrigin(editor, base);
    default:
      return std::nullopt;
  }
}

void displace(Editor& editor, SelectionUse use, Result<void> (db::EntityDisplacement::*action)(dxf::RecordId)) {
  const std::vector<dxf::RecordId> entities = selectObjects(editor, use);
  if (entities.empty()) return;
  const auto way = askWay(editor, entities);
  if (!way) return;
  db::EntityDisplacement displacement(editor.database(), *way);
  Refusals refusals(editor);
  for (const dxf::RecordId entity : entities) {
    if (const auto done = (displacement.*action)(entity); !done) refusals.note(entity, done.error());
  }
  refusals.report();
}

}  // namespace

void moveCommand(Editor& editor) {
  displace(editor, SelectionUse::change, &db::EntityDisplacement::move);
}

void copyCommand(Editor& editor) {
  displace(editor, SelectionUse::read, &db::EntityDisplacement::copy);
}

}  // namespace torva::command

#include "command/commands/explode_command.h"

#include "command/editor.h"
#include "command/refusals.h"
#include "command/selection.h"
#include "db/entity_erasure.h"
#include "draw/pieces.h"

namespace torva::command {

namespace {

/// Appends what an entity falls into; the entity itself stays.
Result<void> appendPieces(db::Database& database, dxf::RecordId entity) {
  const auto pieces = draw::piecesOf(database, entity);
  if (!pieces) return tl::unexpected(pieces.error());
  if (pieces->empty()) return fail(ErrorCode::notApplicable, "nothing is drawn of it");
  const dxf::RecordId block = database.blockOfEntity(entity);
  for (const draw::Piece& piece : *pieces) {
    if (auto appended = draw::appendPiece(database, block, piece); !appended) return appended;
  }
  return {};
}

}  // namespace

void explodeCommand(Editor& editor) {
  Refusals refusals(editor);
  std::vector<dxf::RecordId> exploded;
  for (const dxf::RecordId entity : selectObjects(editor, SelectionUse::change)) {
    if (const auto done = appendPieces(editor.database(), entity)) {
      exploded.push_back(entity);
    } else {
      refusals.note(entity, done.error());
    }
  }
  db::eraseEntities(editor.database(), exploded);
  refusals.report();
}

}  // namespace torva::command

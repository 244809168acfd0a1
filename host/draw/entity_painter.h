#pragma once

#include "db/database.h"
#include "draw/entity_look.h"
#include "draw/mline_shape.h"
#include "draw/record_values.h"
#include "draw/sketch.h"
#include "draw/symbols.h"

namespace torva::draw {

/// How an insert places its block: the whole array of copies.
struct Placement {
  geom::Transform first;     ///< From the block to the space of the insert.
  KdGeVector3d column, row;  ///< From copy to copy.
  int columns = 1, rows = 1;

  geom::Transform copy(int columnIndex, int rowIndex) const;
};

/// The placement that an INSERT or a table says.
/// @param blockBase the block's base point
Placement placementOf(dxf::RecordType type, const RecordValues& insert, const KdGeVector3d& extrusion,
                      const KdGePoint3d& blockBase);

/// Where a DIMENSION shows its block: the block's points are places in the world, displaced by the dimension's insertion
/// point, which most lack.
geom::Transform dimensionPlacement(const RecordValues& dimension, const KdGeVector3d& extrusion);

/// The block (a BLOCK record) that an INSERT, DIMENSION or table shows; kNoRecord when there is none.
dxf::RecordId blockOf(const db::Database& database, dxf::RecordId entity);

/// The records that belong to an entity and stand behind it (ATTRIB behind INSERT), erased ones left out.
template <class Visit>
void forEachAttribute(const dxf::DrawingFile& file, dxf::RecordId insert, const Visit& visit) {
  for (dxf::RecordId id = file.next(insert); id != dxf::kNoRecord; id = file.next(id)) {
    if (file.isErased(id)) continue;
    if (file.type(id) != dxf::RecordType::attrib) return;
    visit(id);
  }
}

/// Whether appearances are found out, or all shapes get one and the same.
enum class Looks { own, none };

/// Draws entities, blocks within blocks included.
class EntityPainter {
 public:
  EntityPainter(const db::Database& database, const Symbols& symbols, Looks looks = Looks::own)
      : m_database(database), m_symbols(symbols), m_looks(looks) {}

  void paint(dxf::RecordId entity, DisplayList& list);

  /// A multiline that is no entity, on the layer of a LAYER record; LTSCALE does not count.
  void paint(const db::MlineData& mline, const db::MlineStyleData& style, dxf::RecordId layer, DisplayList& list) const;

 private:
  /// Where an entity is drawn: at top level or in an insert.
  struct Frame {
    Sketch sketch;
    const BlockPen* block = nullptr;
    int depth = 0;
  };

  void paint(dxf::RecordId entity, Frame& frame);
  void paintShape(dxf::RecordId entity, const EntityLook& look, const Pen& pen, Frame& frame);
  void paintMline(dxf::RecordId entity, const EntityLook& look, const Pen& pen, Frame& frame);
  MlineAppearances mlineAppearances(const db::MlineStyleData& style, const Pen& pen, std::string_view layer,
                                    DisplayList& list) const;
  void paintInsert(dxf::RecordId entity, const EntityLook& look, const Pen& pen, Frame& frame);
  /// `placement` maps the block to the frame; nothing for kNoRecord.
  void paintBlock(dxf::RecordId block, const geom::Transform& placement, const BlockPen& pen, Frame& frame);

  const db::Database& m_database;
  const Symbols& m_symbols;
  Looks m_looks;
  int m_entitiesLeft = 0;
};

}  // namespace torva::draw

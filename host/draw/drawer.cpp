#include "draw/drawer.h"

#include "db/mline_imp.h"
#include "db/mline_style_imp.h"
#include "draw/display_list.h"
#include "draw/entity_bounds.h"
#include "draw/entity_look.h"
#include "draw/entity_painter.h"
#include "draw/mline_shape.h"
#include "draw/sketch.h"
#include "draw/symbols.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

namespace torva::draw {

class Drawer::Imp {
 public:
  explicit Imp(const db::Database& drawing)
      : database(drawing), symbols(drawing), bounds(drawing, symbols), m_seen(drawing.changeCount()) {
    findBlocks();
  }

  Generation refresh() {
    if (m_seen == database.changeCount()) return m_generation;
    bool areLooksStale = false, areBoxesStale = false;
    for (const dxf::RecordId record : database.changesSince(m_seen)) {
      areBoxesStale = areBoxesStale || concernsBoxes(record);
      areLooksStale = areLooksStale || areBoxesStale || concernsLooks(record);
    }
    m_seen = database.changeCount();
    if (areLooksStale) {
      symbols.clear();
      bounds.clear();
      findBlocks();
      ++m_generation.looks;
    }
    if (areBoxesStale) ++m_generation.boxes;
    return m_generation;
  }

  const db::Database& database;
  Symbols symbols;
  EntityBounds bounds;

 private:
  void findBlocks() {
    m_blocksBegin = database.file().section("BLOCKS");
    m_blocksEnd = database.file().section("ENTITIES");
  }

  /// Whether a change of the record may change how others look.
  bool concernsLooks(dxf::RecordId record) const {
    const dxf::RecordType type = database.file().type(record);
    return type == dxf::RecordType::section || type == dxf::RecordType::style;  // header variables stand in a section
  }

  /// Whether a change of the record may change the boxes of others.
  bool concernsBoxes(dxf::RecordId record) const {
    using dxf::RecordType;
    switch (database.file().type(record)) {
      case RecordType::layer:
      case RecordType::ltype:
      case RecordType::mlineStyle:
      case RecordType::block:
      case RecordType::endblk:
      case RecordType::blockRecord:
        return true;
      default:
        break;
    }
    const dxf::RecordId place = database.file().anchor(record);
    return m_blocksBegin != dxf::kNoRecord && place >= m_blocksBegin && place < m_blocksEnd;
  }

  std::size_t m_seen;
  Generation m_generation;
  dxf::RecordId m_blocksBegin = dxf::kNoRecord, m_blocksEnd = dxf::kNoRecord;
};

Drawer::Drawer(const db::Database& database) : m_imp(std::make_unique<Imp>(database)) {}

Drawer::~Drawer() = default;

void Drawer::draw(dxf::RecordId entity, DisplayList& list) const {
  refresh();
  EntityPainter(m_imp->database, m_imp->symbols).paint(entity, list);
}

void Drawer::drawShapes(dxf::RecordId entity, DisplayList& list) const {
  refresh();
  EntityPainter(m_imp->database, m_imp->symbols, Looks::none).paint(entity, list);
}

void Drawer::drawShapes(const db::MlineData& mline, DisplayList& list) const {
  refresh();
  MlineAppearances appearances;
  appearances.fill = appearances.other = list.indexOf(Appearance::foreground());
  Sketch sketch(list, geom::Transform());
  drawMline(mline, m_imp->symbols.mlineStyle(mline.styleHandle, mline.styleName), appearances, sketch);
}

void Drawer::draw(const KdDbMline& mline, const KdDbMlineStyle& style, dxf::RecordId layer, DisplayList& list) const {
  refresh();
  const auto& mlineImp = static_cast<const db::MlineImp&>(*KdDbSystemInternals::getImpObject(&mline));
  const auto& styleImp = static_cast<const db::MlineStyleImp&>(*KdDbSystemInternals::getImpObject(&style));
  EntityPainter(m_imp->database, m_imp->symbols).paint(mlineImp.data(), styleImp.data(), layer, list);
}

geom::Box3 Drawer::bounds(dxf::RecordId entity) const {
  refresh();
  return m_imp->bounds.of(entity);
}

geom::Box3 Drawer::modelSpaceBounds(dxf::RecordId entity) const {
  refresh();
  return m_imp->bounds.inModelSpace(entity);
}

bool Drawer::hasLooseBounds(dxf::RecordId entity) const {
  switch (m_imp->database.file().type(entity)) {
    using enum dxf::RecordType;
    case text:
    case mtext:
    case attdef:
    case insert:
    case table_entity:
    case dimension:
    case spline:
      return true;
    default:
      return false;
  }
}

geom::Box3 Drawer::drawnExtents(dxf::RecordId entity) const {
  DisplayList list;
  drawShapes(entity, list);
  return extents(list);
}

bool Drawer::mayMeet(dxf::RecordId entity, const geom::Box3& boxWcs) const {
  refresh();
  return m_imp->bounds.mayMeet(entity, boxWcs);
}

bool Drawer::isVisible(dxf::RecordId entity) const {
  refresh();
  return m_imp->symbols.layer(readLook(m_imp->database.file(), entity).layer).isVisible;
}

bool Drawer::isPlotted(dxf::RecordId entity) const {
  refresh();
  return m_imp->symbols.layer(readLook(m_imp->database.file(), entity).layer).isPlotted;
}

Appearance Drawer::ownColor(dxf::RecordId entity) const {
  refresh();
  const EntityLook look = readLook(m_imp->database.file(), entity);
  return appearanceOf(withColor({}, look.color, look.layer, m_imp->symbols), m_imp->symbols);
}

Generation Drawer::refresh() const {
  return m_imp->refresh();
}

}  // namespace torva::draw

#include "draw/entity_bounds.h"

#include <algorithm>
#include <type_traits>

#include "base/numbers.h"
#include "base/processor.h"
#include "db/polyline_flags.h"
#include "draw/entity_painter.h"
#include "draw/hatch.h"
#include "draw/record_readers.h"
#include "draw/texts.h"

namespace torva::draw {

using dxf::RecordType;
using geom::Box3;

EntityBounds::EntityBounds(const db::Database& database, const Symbols& symbols) : m_database(database), m_symbols(symbols) {
  const dxf::DrawingFile& file = database.file();
  m_isPlainText = file.form() == dxf::Form::text && file.lineEnds() == dxf::LineEnds::lf;
}

void EntityBounds::clear() {
  m_blocks.clear();
  m_styles.clear();
  m_lastLayerLook = nullptr;
}

Box3 EntityBounds::of(dxf::RecordId entity, Level level) {
  const dxf::DrawingFile& file = m_database.file();
  if (file.isErased(entity)) return {};
  const RecordType type = file.type(entity);
  Facts facts;
  const auto scannedText = [&] { return scanned(scanBehindFront(file.bytes(entity), facts), facts, type, entity, level); };
  const Box3 box =
      m_isPlainText ? runForProcessor(scannedText) : scanned(GroupScan(file.groups(entity)), facts, type, entity, level);
  if (box.isEmpty() || isFinite(box)) return padded(box);
  // Shapes that are not finite are not drawn, but parts of the entity may be.
  return level == Level::inBlock ? Box3{} : drawn(entity);
}

template <class Scan>
Box3 EntityBounds::scanned(Scan scan, Facts& facts, RecordType type, dxf::RecordId entity, Level level) {
  Box3 box;
  switch (type) {
    case RecordType::mline:
      box = mlineBox(scan, entity, facts);
      break;
    case RecordType::lwpolyline:
      box = readLightweight(scan, facts);
      break;
    case RecordType::hatch: {
      const auto straight = readStraightHatch(scan, facts);
      box = inWorld(straight ? *straight : hatchExtents(m_database.file().groups(entity)), facts.extrusion);
      break;
    }
    case RecordType::spline:
    case RecordType::leader:
      box = readPoints(scan, facts);
      break;
    case RecordType::line:
    case RecordType::point:
    case RecordType::circle:
    case RecordType::arc:
    case RecordType::ellipse:
    case RecordType::polyline:
    case RecordType::text:
    case RecordType::mtext:
    case RecordType::attrib:
    case RecordType::attdef:
    case RecordType::solid:
    case RecordType::trace:
    case RecordType::face3d:
    case RecordType::insert:
    case RecordType::table_entity:
    case RecordType::dimension:
    case RecordType::image:
    case RecordType::wipeout:
      readFacts(scan, facts, type);
      return isShown(facts, level) ? shapeBox(entity, facts, level) : Box3{};
    default:
      return {};
  }
  return isShown(facts, level) ? box : Box3{};
}

bool EntityBounds::mayMeet(dxf::RecordId entity, const Box3& box) {
  const dxf::DrawingFile& file = m_database.file();
  if (file.type(entity) != RecordType::mline) return true;
  MlineProbe probe(box);
  if (const db::MlineData* known = m_database.knownMline(entity)) {
    collect(*known, probe);
    return probe.isMet(known->isClosed, endsOf(*known), m_symbols.mlineStyle(known->styleHandle, known->styleName));
  }
  if (!m_isPlainText) return true;
  Facts facts;
  MlineHead mline;
  const bool isUsual = readUsualMline(scanBehindFront(file.bytes(entity), facts), facts, mline, probe);
  return !isUsual || probe.isMet(mline.isClosed(), mline.ends(), style(mline.styleHandle, mline.styleName));
}

Box3 EntityBounds::drawn(dxf::RecordId entity) const {
  DisplayList list;
  EntityPainter(m_database, m_symbols).paint(entity, list);
  return extents(list);
}

EntityFacts EntityBounds::factsOf(dxf::RecordId record) const {
  const dxf::DrawingFile& file = m_database.file();
  Facts facts;
  if (m_isPlainText) {
    readFacts(scanBehindFront(file.bytes(record), facts), facts, file.type(record));
  } else {
    readFacts(GroupScan(file.groups(record)), facts, file.type(record));
  }
  return facts;
}

template <class Scan>
Box3 EntityBounds::mlineBox(Scan scan, dxf::RecordId entity, Facts& facts) {
  if constexpr (std::is_same_v<Scan, TextScan>) {
    MlineHead mline;
    MlineExtents extents;
    const bool isRead = !m_database.hasObject(entity) && readUsualMline(scan, facts, mline, extents);
    if (isRead) return extents.box(style(mline.styleHandle, mline.styleName), mline.ends());
  }
  while (scan.next() && scan.code() != kMlineVertex) readCommon(scan, facts);
  const db::MlineData& mline = m_database.mline(entity);
  return mlineExtents(mline, m_symbols.mlineStyle(mline.styleHandle, mline.styleName));
}

Box3 EntityBounds::shapeBox(dxf::RecordId entity, const Facts& facts, Level level) {
  const dxf::DrawingFile& file = m_database.file();
  const RecordValues& values = facts.values;
  const RecordType type = file.type(entity);
  const auto ocs = [&](const Box3& box) { return inWorld(box, facts.extrusion); };
  switch (type) {
    case RecordType::line:
      return boxOf(values.point(10), values.point(11));
    case RecordType::point:
      return boxOf(values.point(10));
    case RecordType::circle:
      return ocs(circleBox(values.point(10), values.real(40)));
    case RecordType::arc:
      return ocs(arcBox(values.point(10), values.real(40), values.real(50), values.real(51)));
    case RecordType::ellipse:
      return ellipseBox(facts);
    case RecordType::polyline:
      return polylineBox(entity, facts);
    case RecordType::attdef:
      if (level == Level::inBlock) return {};
      return ocs(textBox(facts, type, mostTextWidth(facts.name)));
    case RecordType::text:
    case RecordType::attrib:
      if (isSqueezed(values)) return drawn(entity);
      return ocs(textBox(facts, type, mostTextWidth(facts.text)));
    case RecordType::solid:
    case RecordType::trace:
      return ocs(boxOf(values.point(10), values.point(11), values.point(12), values.point(values.has(13) ? 13 : 12)));
    case RecordType::face3d:
      return boxOf(values.point(10), values.point(11), values.point(12), values.point(values.has(13) ? 13 : 12));
    case RecordType::mtext:
      return multilineTextBox(facts);
    case RecordType::insert:
    case RecordType::table_entity:
      return insertBox(entity, facts, level);
    case RecordType::dimension:
      return dimensionPlacement(values, facts.extrusion)(block(facts.name).box);
    default:
      return drawn(entity);
  }
}

Box3 EntityBounds::insertBox(dxf::RecordId entity, const Facts& facts, Level level) {
  const dxf::DrawingFile& file = m_database.file();
  const Block& inserted = block(facts.name);
  const Placement placement = placementOf(file.type(entity), facts.values, facts.extrusion, inserted.base);
  Box3 box = placement.first(inserted.box);
  if (placement.columns > 1 || placement.rows > 1) {
    const Box3 first = box;
    for (const int column : {0, placement.columns - 1}) {
      for (const int row : {0, placement.rows - 1}) {
        const KdGeVector3d shift = placement.column * column + placement.row * row;
        box.add(Box3{first.min + shift, first.max + shift});
      }
    }
  }
  if (facts.values.integer(66) != 0) {
    forEachAttribute(file, entity, [&](dxf::RecordId attribute) { box.add(of(attribute, level)); });
  }
  return box;
}

Box3 EntityBounds::polylineBox(dxf::RecordId entity, const Facts& facts) {
  const dxf::DrawingFile& file = m_database.file();
  const int flags = facts.values.integer(70);
  const bool isPlane = db::isPlanePolyline(flags);
  PathBox path;
  forEachVertex(file, entity, [&](dxf::RecordId id) {
    const Facts vertex = factsOf(id);
    KdGePoint3d point = vertex.values.point(10);
    if (isPlane) point.z = facts.values.real(30);
    if (db::isPolylinePoint(vertex.values.integer(70))) path.add(point, isPlane ? vertex.values.real(42) : 0);
  });
  const Box3 box = path.box(isPlane);
  return isPlane ? inWorld(box, facts.extrusion) : box;
}

const EntityBounds::Block& EntityBounds::block(std::string_view name) {
  if (const auto known = m_blocks.find(name); known != m_blocks.end()) return known->second;
  // References into the map stay valid while blocks within this one are added.
  Block& result = m_blocks.emplace(name, Block{}).first->second;
  const dxf::RecordId record = m_database.findBlock(m_database.file().decode(name));
  if (record == dxf::kNoRecord) return result;
  result.base = factsOf(record).values.point(10);
  Box3 box;
  m_database.forEachBlockEntity(record, [&](dxf::RecordId entity) { box.add(of(entity, Level::inBlock)); });
  result.box = box;
  return result;
}

bool EntityBounds::isShown(const Facts& facts, Level level) {
  if (facts.isHidden || (facts.isInPaperSpace && level == Level::modelSpace)) return false;
  // On layer 0 of a block the insert's layer decides.
  return (level == Level::inBlock && facts.layer == "0") || isLayerVisible(facts.layer);
}

bool EntityBounds::isLayerVisible(std::string_view layer) {
  if (!m_lastLayerLook || m_lastLayer != layer) {
    m_lastLayer = layer;
    m_lastLayerLook = &m_symbols.layer(layer);
  }
  return m_lastLayerLook->isVisible;
}

const db::MlineStyleData& EntityBounds::style(std::string_view handle, std::string_view name) {
  constexpr std::size_t kMost = 16;
  const auto known = std::find_if(m_styles.begin(), m_styles.end(),
                                  [&](const Style& style) { return style.handle == handle && style.name == name; });
  if (known != m_styles.end()) return *known->data;
  const db::MlineStyleData& data = m_symbols.mlineStyle(parseHandle(handle).value_or(0), m_database.file().decode(name));
  if (m_styles.size() == kMost) m_styles.clear();
  m_styles.push_back({std::string(handle), std::string(name), &data});
  return data;
}

}  // namespace torva::draw

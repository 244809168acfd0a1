#include "draw/entity_painter.h"

#include <algorithm>
#include <cmath>

#include "db/record_groups.h"
#include "draw/curves.h"
#include "draw/hatch.h"
#include "draw/polylines.h"
#include "draw/texts.h"

namespace torva::draw {
namespace {

using dxf::RecordType;

// Blocks may contain themselves or multiply beyond all measure in a damaged drawing.
constexpr int kDeepestBlock = 16;
constexpr int kMostEntities = 1'000'000;
constexpr int kMostCopies = 32'767;  // of columns or rows: the range of their groups

constexpr int kAttributeInvisible = 1;

KdGePoint3d basePointOf(const dxf::DrawingFile& file, dxf::RecordId block) {
  return RecordValues(file.groups(block)).point(10);
}

}  // namespace

geom::Transform Placement::copy(int columnIndex, int rowIndex) const {
  return geom::Transform::translation(column * columnIndex + row * rowIndex) * first;
}

Placement placementOf(dxf::RecordType type, const RecordValues& insert, const KdGeVector3d& extrusion,
                      const KdGePoint3d& blockBase) {
  using geom::Transform;
  const KdGePoint3d at = insert.point(10);
  Placement placement;
  if (type == RecordType::table_entity) {
    // The other numbers of a table describe its cells.
    placement.first = Transform::translation(at - blockBase);
    return placement;
  }
  const Transform ocs = Transform::fromExtrusion(extrusion);
  const Transform turn = Transform::rotationZ(radians(insert.real(50)));
  placement.first = ocs * Transform::translation({at.x, at.y, at.z}) * turn *
                    Transform::scaling(insert.real(41, 1), insert.real(42, 1), insert.real(43, 1)) *
                    Transform::translation({-blockBase.x, -blockBase.y, -blockBase.z});
  placement.column = ocs(turn(KdGeVector3d{insert.real(44), 0, 0}));
  placement.row = ocs(turn(KdGeVector3d{0, insert.real(45), 0}));
  placement.columns = std::clamp(insert.integer(70, 1), 1, kMostCopies);
  placement.rows = std::clamp(insert.integer(71, 1), 1, kMostCopies);
  return placement;
}

geom::Transform dimensionPlacement(const RecordValues& dimension, const KdGeVector3d& extrusion) {
  return geom::Transform::translation(geom::Transform::fromExtrusion(extrusion)(dimension.vector(12)));
}

dxf::RecordId blockOf(const db::Database& database, dxf::RecordId entity) {
  const std::wstring name = textOf(database.file(), entity, 2);
  return name.empty() ? dxf::kNoRecord : database.findBlock(name);
}

void EntityPainter::paint(dxf::RecordId entity, DisplayList& list) {
  m_entitiesLeft = kMostEntities;
  Frame frame{Sketch(list, {}), nullptr, 0};
  paint(entity, frame);
}

void EntityPainter::paint(const db::MlineData& mline, const db::MlineStyleData& style, dxf::RecordId layer,
                          DisplayList& list) const {
  EntityLook look;
  if (const auto name = db::firstGroup(m_database.file().groups(layer), 2)) look.layer = name->value;
  Pen pen = resolvePen(look, nullptr, m_database.file(), m_symbols);
  pen.dashScale = 1;
  Sketch sketch(list, {});
  drawMline(mline, style, mlineAppearances(style, pen, look.layer, list), sketch);
}

void EntityPainter::paint(dxf::RecordId entity, Frame& frame) {
  const dxf::DrawingFile& file = m_database.file();
  if (m_entitiesLeft-- <= 0 || file.isErased(entity)) return;
  const EntityLook look = readLook(file, entity);
  if (look.isHidden || !m_symbols.layer(effectiveLayer(look, frame.block)).isVisible) return;
  paintShape(entity, look, m_looks == Looks::own ? resolvePen(look, frame.block, file, m_symbols) : Pen{}, frame);
}

void EntityPainter::paintShape(dxf::RecordId entity, const EntityLook& look, const Pen& pen, Frame& frame) {
  const dxf::DrawingFile& file = m_database.file();
  const auto groups = file.groups(entity);
  const std::uint32_t appearance = frame.sketch.list().indexOf(appearanceOf(pen, m_symbols));
  Sketch& world = frame.sketch;
  Sketch ocs = world.within(geom::Transform::fromExtrusion(look.extrusion));
  switch (file.type(entity)) {
    case RecordType::mline:
      return paintMline(entity, look, pen, frame);
    case RecordType::insert:
    case RecordType::table_entity:
      return paintInsert(entity, look, pen, frame);
    case RecordType::dimension: {
      const BlockPen blockPen{effectiveLayer(look, frame.block), pen};
      const geom::Transform placement = dimensionPlacement(RecordValues(groups), look.extrusion);
      return paintBlock(blockOf(m_database, entity), placement, blockPen, frame);
    }
    case RecordType::line:
      return drawLine(RecordValues(groups), world, appearance);
    case RecordType::point:
      return drawPoint(RecordValues(groups), world, appearance);
    case RecordType::circle:
      return drawCircle(RecordValues(groups), ocs, appearance);
    case RecordType::arc:
      return drawArc(RecordValues(groups), ocs, appearance);
    case RecordType::ellipse:
      return drawEllipse(RecordValues(groups), look.extrusion, world, appearance);
    case RecordType::lwpolyline:
      return drawLightweightPolyline(groups, ocs, appearance);
    case RecordType::polyline:
      return drawPolyline(file, entity, ocs, world, appearance);
    case RecordType::spline:
      return drawSpline(groups, world, appearance);
    case RecordType::leader:
      return drawLeader(groups, world, appearance);
    case RecordType::attrib:
      if (RecordValues(groups).integer(70) & kAttributeInvisible) return;
      return drawText(file, entity, ocs, appearance);
    case RecordType::attdef:
      // Inside a block a definition stands for the attributes of the inserts and is not drawn itself.
      if (frame.block) return;
      return drawText(file, entity, ocs, appearance);
    case RecordType::text:
      return drawText(file, entity, ocs, appearance);
    case RecordType::mtext:
      return drawMultilineText(file, entity, look.extrusion, world, appearance);
    case RecordType::solid:
    case RecordType::trace:
      return drawSolid(RecordValues(groups), ocs, appearance);
    case RecordType::face3d:
      return drawFace(RecordValues(groups), world, appearance);
    case RecordType::hatch:
      return drawHatch(groups, ocs, appearance);
    case RecordType::image:
    case RecordType::wipeout:
      return drawImageFrame(RecordValues(groups), world, appearance);
    default:
      return;
  }
}

void EntityPainter::paintMline(dxf::RecordId entity, const EntityLook& look, const Pen& pen, Frame& frame) {
  const db::MlineData& mline = m_database.mline(entity);
  const db::MlineStyleData& style = m_symbols.mlineStyle(mline.styleHandle, mline.styleName);
  const auto appearances = mlineAppearances(style, pen, effectiveLayer(look, frame.block), frame.sketch.list());
  drawMline(mline, style, appearances, frame.sketch);
}

MlineAppearances EntityPainter::mlineAppearances(const db::MlineStyleData& style, const Pen& pen, std::string_view layer,
                                                 DisplayList& list) const {
  MlineAppearances appearances;
  appearances.fill = appearances.other = list.indexOf(appearanceOf(pen, m_symbols));
  if (m_looks == Looks::none) return appearances;
  const auto appearanceIn = [&](const KdCmColor& color, std::wstring_view linetype) {
    const Pen colored = withColor(pen, color, layer, m_symbols);
    return list.indexOf(appearanceOf(withLinetype(colored, linetype, layer, m_symbols), m_symbols));
  };
  appearances.fill = appearanceIn(style.fillColor, L"CONTINUOUS");
  for (const auto& element : style.elements) appearances.elements.push_back(appearanceIn(element.color, element.linetype));
  return appearances;
}

void EntityPainter::paintInsert(dxf::RecordId entity, const EntityLook& look, const Pen& pen, Frame& frame) {
  const dxf::DrawingFile& file = m_database.file();
  const dxf::RecordId block = blockOf(m_database, entity);
  const BlockPen blockPen{effectiveLayer(look, frame.block), pen};
  if (block != dxf::kNoRecord) {
    const Placement placement =
        placementOf(file.type(entity), RecordValues(file.groups(entity)), look.extrusion, basePointOf(file, block));
    for (int row = 0; row < placement.rows && m_entitiesLeft > 0; ++row) {
      for (int column = 0; column < placement.columns && m_entitiesLeft > 0; ++column) {
        paintBlock(block, placement.copy(column, row), blockPen, frame);
        --m_entitiesLeft;  // an array of empty blocks must end too
      }
    }
  }
  forEachAttribute(file, entity, [&](dxf::RecordId attribute) { paint(attribute, frame); });
}

void EntityPainter::paintBlock(dxf::RecordId block, const geom::Transform& placement, const BlockPen& pen, Frame& frame) {
  if (block == dxf::kNoRecord || frame.depth >= kDeepestBlock) return;
  Frame inner{frame.sketch.within(placement), &pen, frame.depth + 1};
  m_database.forEachBlockEntity(block, [&](dxf::RecordId entity) { paint(entity, inner); });
}

}  // namespace torva::draw

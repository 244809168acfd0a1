#include "draw/entity_look.h"

#include "base/text.h"
#include "db/color_groups.h"
#include "draw/symbols.h"

namespace torva::draw {
namespace {

constexpr std::wstring_view kByLayer = L"BYLAYER", kByBlock = L"BYBLOCK", kContinuous = L"CONTINUOUS";
constexpr int kByLayerIndex = 256;
constexpr int kWeightByLayer = -1, kWeightByBlock = -2, kWeightDefault = -3;
constexpr int kExtendedData = 1001, kEmbeddedObject = 101, kClassMark = 100;

void setColor(Pen& pen, const KdCmColor& color) {
  pen.isForeground = !color.isTrueColor() && color.colorIndex() == kForegroundIndex;
  pen.rgb = color.rgb();
}

/// Whether the extrusion direction counts for a type's drawing.
bool hasExtrusion(dxf::RecordType type) {
  using enum dxf::RecordType;
  return type != mline && type != line && type != point && type != spline && type != leader;
}

int resolveWeight(int weight, const LayerLook& layer, const BlockPen* block) {
  if (weight == kWeightByLayer) return layer.lineweight;
  if (weight == kWeightByBlock) return block ? block->pen.lineweight : kWeightDefault;
  return weight;
}

}  // namespace

EntityLook readLook(const dxf::DrawingFile& file, dxf::RecordId record) {
  EntityLook look;
  db::ColorGroups color;
  // Behind the entity's own class mark the same codes may mean other things; drawings without marks (R12) are read to the
  // end.
  bool isCommonPart = true;
  int classMarks = 0;
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == kExtendedData || group.code == kEmbeddedObject) break;
    if (group.code == kClassMark) {
      isCommonPart = group.value == "AcDbEntity";
      if (++classMarks == 2 && !hasExtrusion(file.type(record))) break;
    }
    switch (group.code) {
      case 210:
        look.extrusion.x = group.realOr(0);
        continue;
      case 220:
        look.extrusion.y = group.realOr(0);
        continue;
      case 230:
        look.extrusion.z = group.realOr(1);
        continue;
      case 8:
        look.layer = group.value;
        continue;
      default:
        break;
    }
    if (!isCommonPart) continue;
    switch (group.code) {
      case 6:
        look.linetype = group.value;
        break;
      case 62:
      case 420:
        color.take(file, group);
        break;
      case 48:
        look.linetypeScale = group.realOr(1);
        break;
      case 60:
        look.isHidden = group.integerOr(0) == 1;
        break;
      case 370:
        look.lineweight = static_cast<int>(group.integerOr(kWeightByLayer));
        break;
      default:
        break;
    }
  }
  look.color = color.color(kByLayerIndex);
  return look;
}

std::string_view effectiveLayer(const EntityLook& look, const BlockPen* block) {
  return block && look.layer == "0" ? block->layer : look.layer;
}

Pen resolvePen(const EntityLook& look, const BlockPen* block, const dxf::DrawingFile& file, const Symbols& symbols) {
  const std::string_view layerName = effectiveLayer(look, block);
  const LayerLook& layer = symbols.layer(layerName);
  Pen pen;
  if (block) pen = block->pen;
  pen.lineweight = resolveWeight(look.lineweight, layer, block);
  pen.dashScale = symbols.linetypeScale() * (look.linetypeScale > 0 ? look.linetypeScale : 1);
  pen = withColor(pen, look.color, layerName, symbols);
  const std::wstring linetype = look.linetype.empty() ? std::wstring(kByLayer) : file.decode(look.linetype);
  return withLinetype(pen, linetype, layerName, symbols);
}

Pen withColor(const Pen& pen, const KdCmColor& color, std::string_view layer, const Symbols& symbols) {
  Pen result = pen;
  if (!color.isByBlock()) setColor(result, color.isByLayer() ? symbols.layer(layer).color : color);
  return result;
}

Pen withLinetype(const Pen& pen, std::wstring_view linetype, std::string_view layer, const Symbols& symbols) {
  Pen result = pen;
  if (equalsIgnoringCase(linetype, kByBlock)) return result;
  const bool isByLayer = linetype.empty() || equalsIgnoringCase(linetype, kByLayer);
  result.linetype = isByLayer ? symbols.layer(layer).linetype : std::wstring(linetype);
  if (equalsIgnoringCase(result.linetype, kContinuous)) result.linetype.clear();
  return result;
}

Appearance appearanceOf(const Pen& pen, const Symbols& symbols) {
  Appearance appearance{pen.isForeground ? 0u : pen.rgb, pen.isForeground, {}, pen.lineweight};
  if (pen.linetype.empty()) return appearance;
  appearance.dashes = symbols.dashes(pen.linetype);
  for (double& dash : appearance.dashes) dash *= pen.dashScale;
  return appearance;
}

}  // namespace torva::draw

#include "draw/symbols.h"

#include <cmath>

#include "db/color_groups.h"
#include "db/mline_styles.h"
#include "draw/entity_look.h"

namespace torva::draw {
namespace {

LayerLook readLayer(const dxf::DrawingFile& file, dxf::RecordId record) {
  constexpr std::int64_t kFrozen = 1;
  LayerLook look;
  db::ColorGroups color;
  for (const dxf::Group& group : file.groups(record)) {
    switch (group.code) {
      case 6:
        look.linetype = file.text(group);
        break;
      case 62:
        // A negative index is how a drawing says that the layer is off.
        look.isVisible = look.isVisible && group.integerOr(kForegroundIndex) >= 0;
        color.take(file, group);
        break;
      case 420:
        color.take(file, group);
        break;
      case 70:
        look.isVisible = look.isVisible && (group.integerOr(0) & kFrozen) == 0;
        break;
      case 290:
        look.isPlotted = group.integerOr(1) != 0;
        break;
      case 370:
        look.lineweight = static_cast<int>(group.integerOr(-3));
        break;
      default:
        break;
    }
  }
  look.color = color.color(kForegroundIndex);
  return look;
}

std::vector<double> readDashes(const dxf::DrawingFile& file, dxf::RecordId record) {
  std::vector<double> dashes;
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == 49) dashes.push_back(group.realOr(0));
  }
  return dashes;
}

}  // namespace

const LayerLook& Symbols::layer(std::string_view name) const {
  if (const auto found = m_layers.find(name); found != m_layers.end()) return found->second;
  const dxf::DrawingFile& file = m_database.file();
  const dxf::RecordId record = m_database.findSymbol(dxf::RecordType::layer, file.decode(name));
  LayerLook look;
  look.color = KdCmColor::byIndex(kForegroundIndex);
  if (record != dxf::kNoRecord) look = readLayer(file, record);
  return m_layers.emplace(name, std::move(look)).first->second;
}

const std::vector<double>& Symbols::dashes(std::wstring_view name) const {
  if (const auto found = m_linetypes.find(name); found != m_linetypes.end()) return found->second;
  const dxf::RecordId record = m_database.findSymbol(dxf::RecordType::ltype, name);
  std::vector<double> dashes;
  if (record != dxf::kNoRecord) dashes = readDashes(m_database.file(), record);
  return m_linetypes.emplace(name, std::move(dashes)).first->second;
}

const db::MlineStyleData& Symbols::mlineStyle(dxf::Handle handle, std::wstring_view name) const {
  const dxf::RecordId record = db::mlineStyleOf(m_database, handle, name);
  const auto [entry, isNew] = m_mlineStyles.try_emplace(record);
  if (isNew && record != dxf::kNoRecord)
    entry->second = db::readMlineStyle(m_database.file(), m_database.file().groups(record));
  return entry->second;
}

double Symbols::linetypeScale() const {
  if (m_linetypeScale) return *m_linetypeScale;
  const std::vector<dxf::Group> groups = m_database.file().headerVariable("$LTSCALE");
  const double scale = groups.empty() ? 1 : groups.front().realOr(1);
  m_linetypeScale = scale > 0 ? scale : 1;
  return *m_linetypeScale;
}

void Symbols::clear() {
  m_layers.clear();
  m_linetypes.clear();
  m_mlineStyles.clear();
  m_linetypeScale.reset();
}

}  // namespace torva::draw

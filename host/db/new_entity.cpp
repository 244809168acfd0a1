#include "db/new_entity.h"

#include "base/text.h"
#include "db/database.h"
#include "db/header_values.h"
#include "db/system_variables.h"

namespace torva::db {

NewEntity::NewEntity(Database& database, dxf::RecordId block, std::string_view type, EntityProperties properties)
    : m_database(database), m_block(block), m_groups(database.file()) {
  dxf::DrawingFile& file = database.file();
  properties = fittingProperties(database, std::move(properties));
  dxf::RecordBuilder head(file);
  head.name(0, type);
  if (file.usesHandles()) head.handle(5, file.newHandle());
  if (file.version() >= dxf::Version::r13) {
    if (const dxf::Handle owner = file.handle(block); owner != 0) head.handle(330, owner);
    head.name(100, "AcDbEntity");
  }
  if (database.isPaperSpaceAmongEntities(block)) head.integer(67, 1);
  head.text(8, properties.layer);
  const std::string bytes = writeEntityProperties(file, head.take(), properties);
  for (const dxf::Group& group : file.groupsOf(bytes)) m_groups.copy(group);
}

void NewEntity::beginPart(std::string_view classMark) {
  if (m_database.file().version() >= dxf::Version::r13) m_groups.name(100, classMark);
}

void NewEntity::point(int code, const KdGePoint3d& point) {
  m_groups.real(code, point.x);
  m_groups.real(code + 10, point.y);
  m_groups.real(code + 20, point.z);
}

void NewEntity::extrusion(const KdGeVector3d& normal) {
  if (normal.x != 0 || normal.y != 0 || normal.z != 1) point(210, KdGePoint3d() + normal);
}

Result<dxf::RecordId> NewEntity::append() {
  const dxf::RecordId record = m_database.appendToBlock(m_block, m_groups.take());
  if (record == dxf::kNoRecord) return fail(ErrorCode::notApplicable, "the drawing has no place for entities");
  return record;
}

EntityProperties currentProperties(const SystemVariables& variables) {
  EntityProperties properties;
  properties.layer = std::get<std::wstring>(variables.get(L"CLAYER").value());
  properties.linetype = std::get<std::wstring>(variables.get(L"CELTYPE").value());
  properties.linetypeScale = std::get<double>(variables.get(L"CELTSCALE").value());
  properties.lineWeight = std::get<int>(variables.get(L"CELWEIGHT").value());
  const auto color = colorIndexOf(std::get<std::wstring>(variables.get(L"CECOLOR").value()));
  if (color) properties.color = KdCmColor::byIndex(*color);
  return properties;
}

EntityProperties fittingProperties(const Database& database, EntityProperties properties) {
  const EntityProperties defaults;
  const bool hasLinetype = equalsIgnoringCase(properties.linetype, defaults.linetype) ||
                           equalsIgnoringCase(properties.linetype, L"BYBLOCK") ||
                           database.findSymbol(dxf::RecordType::ltype, properties.linetype) != dxf::kNoRecord;
  if (!hasLinetype) properties.linetype = defaults.linetype;
  if (equalsIgnoringCase(properties.linetype, defaults.linetype)) properties.linetype = defaults.linetype;
  const bool hasLayer = database.findSymbol(dxf::RecordType::layer, properties.layer) != dxf::kNoRecord;
  if (!hasLayer) properties.layer = defaults.layer;
  const dxf::Version version = database.file().version();
  if (version < dxf::Version::r13) properties.linetypeScale = defaults.linetypeScale;
  if (version < dxf::Version::r2000) properties.lineWeight = defaults.lineWeight;
  return properties;
}

}  // namespace torva::db

#include "db/entity_properties.h"

#include <algorithm>
#include <array>

#include "db/color_groups.h"
#include "db/database.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

constexpr int kByLayerIndex = 256;
constexpr std::array kCodes = {8, 6, 62, 420, 430, 48, 60, 370, 440};

/// Passes the groups of an entity's common part: those before its own class part, in old files those before its first point.
class CommonPart {
 public:
  bool contains(const dxf::Group& group) {
    if (m_isPast || m_application.contains(group)) return false;
    if (group.code == 100 && ++m_classMarks == 2) m_isPast = true;
    if (group.code == 10 || group.code >= 1000 || group.code == 101) m_isPast = true;
    return !m_isPast && std::ranges::find(kCodes, group.code) != kCodes.end();
  }
  bool isPast() const { return m_isPast; }

 private:
  ApplicationGroups m_application;
  int m_classMarks = 0;
  bool m_isPast = false;
};

EntityProperties read(const dxf::DrawingFile& file, dxf::Groups groups) {
  EntityProperties properties;
  ColorGroups color;
  CommonPart common;
  for (const dxf::Group& group : groups) {
    if (!common.contains(group)) {
      if (common.isPast()) break;
      continue;
    }
    switch (group.code) {
      case 8:
        properties.layer = file.text(group);
        break;
      case 6:
        properties.linetype = file.text(group);
        break;
      case 48:
        properties.linetypeScale = group.realOr(1);
        break;
      case 60:
        properties.isInvisible = group.integerOr(0) != 0;
        break;
      case 370:
        properties.lineWeight = static_cast<int>(group.integerOr(-1));
        break;
      case 440:
        properties.transparency = static_cast<int>(group.integerOr(0));
        break;
      default:
        color.take(file, group);
    }
  }
  properties.color = color.color(kByLayerIndex);
  return properties;
}

class PropertyWriter {
 public:
  PropertyWriter(const dxf::DrawingFile& file, std::string_view bytes, const EntityProperties& target)
      : m_file(file),
        m_groups(file.groupsOf(bytes)),
        m_source(read(file, m_groups)),
        m_target(target),
        m_color(ColorGroups::of(target.color)),
        m_out(file) {}

  std::string write() {
    CommonPart common;
    for (const dxf::Group& group : m_groups) {
      const bool isCommon = common.contains(group);
      if (common.isPast()) finish();
      if (!isCommon) {
        m_out.copy(group);
        continue;
      }
      const auto place = static_cast<std::size_t>(std::ranges::find(kCodes, group.code) - kCodes.begin());
      m_seen[place] = true;
      if (isUnchanged(group)) {
        m_out.copy(group);
      } else {
        value(group.code);
      }
    }
    finish();
    return m_out.take();
  }

 private:
  bool isUnchanged(const dxf::Group& group) const {
    if (!ColorGroups::isColorCode(group.code)) return isSame(group.code, m_source);
    // The index beside a true color stays what the writing program chose only as long as the color does.
    return m_color.says(m_file, group) && (group.code != 62 || !m_color.rgb || m_source.color == m_target.color);
  }

  bool isSame(int code, const EntityProperties& other) const {
    switch (code) {
      case 8:
        return m_target.layer == other.layer;
      case 6:
        return m_target.linetype == other.linetype;
      case 48:
        return m_target.linetypeScale == other.linetypeScale;
      case 60:
        return m_target.isInvisible == other.isInvisible;
      case 370:
        return m_target.lineWeight == other.lineWeight;
      case 440:
        return m_target.transparency == other.transparency;
      case 62:
        return m_target.color.isByLayer();
      default:
        return !m_color.has(code);
    }
  }

  void value(int code) {
    switch (code) {
      case 8:
        m_out.text(8, m_target.layer);
        break;
      case 6:
        m_out.text(6, m_target.linetype);
        break;
      case 48:
        m_out.real(48, m_target.linetypeScale);
        break;
      case 60:
        m_out.integer(60, m_target.isInvisible ? 1 : 0);
        break;
      case 370:
        m_out.integer(370, m_target.lineWeight);
        break;
      case 440:
        m_out.integer(440, m_target.transparency);
        break;
      default:
        m_color.write(m_out, code);
    }
  }

  /// Adds what the record lacks and does not go without saying.
  void finish() {
    if (std::exchange(m_isFinished, true)) return;
    const EntityProperties defaults;
    for (std::size_t i = 0; i < kCodes.size(); ++i) {
      if (!m_seen[i] && !isSame(kCodes[i], defaults)) value(kCodes[i]);
    }
  }

  const dxf::DrawingFile& m_file;
  dxf::Groups m_groups;
  EntityProperties m_source;
  const EntityProperties& m_target;
  ColorGroups m_color;
  dxf::RecordBuilder m_out;
  std::array<bool, kCodes.size()> m_seen = {};
  bool m_isFinished = false;
};

}  // namespace

EntityProperties readEntityProperties(const dxf::DrawingFile& file, dxf::RecordId record) {
  return read(file, file.groups(record));
}

std::string writeEntityProperties(const dxf::DrawingFile& file, std::string_view bytes, const EntityProperties& properties) {
  return PropertyWriter(file, bytes, properties).write();
}

void changeEntityProperties(Database& database, dxf::RecordId entity, const EntityPropertyChange& change) {
  database.flush();
  const dxf::DrawingFile& file = database.file();
  const EntityProperties former = readEntityProperties(file, entity);
  for (const dxf::RecordId part : withParts(file, entity)) {
    const EntityProperties before = readEntityProperties(file, part);
    EntityProperties after = before;
    const bool standsWithIt = before.layer == former.layer && file.type(part) != dxf::RecordType::attrib;
    if (change.layer && standsWithIt) after.layer = *change.layer;
    if (part == entity) {
      after.linetype = change.linetype.value_or(after.linetype);
      after.color = change.color.value_or(after.color);
      after.lineWeight = change.lineWeight.value_or(after.lineWeight);
    }
    if (after != before) database.setBytes(part, writeEntityProperties(file, file.bytes(part), after));
  }
}

}  // namespace torva::db

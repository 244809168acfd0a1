#include "db/layers.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/text.h"
#include "db/color_groups.h"
#include "db/database.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

constexpr int kFrozenFlag = 1, kLockedFlag = 4;
constexpr int kDefaultLineWeight = -3;
constexpr std::array kCodes = {70, 62, 420, 430, 6};

int withFlag(std::int64_t flags, int flag, bool isSet) {
  return static_cast<int>(isSet ? flags | flag : flags & ~flag);
}

/// Writes the groups of a layer's properties anew where they differ, over the record that there is.
class LayerWriter {
 public:
  LayerWriter(const dxf::DrawingFile& file, dxf::RecordId record, const LayerData& target)
      : m_groups(file.groups(record)),
        m_source(readLayer(file, record)),
        m_target(target),
        m_color(ColorGroups::of(target.color)),
        m_out(file) {}

  std::string write() {
    ApplicationGroups application;
    for (const dxf::Group& group : m_groups) {
      if (group.code >= 1000) finish();
      const auto* place = std::ranges::find(kCodes, group.code);
      if (application.contains(group) || place == kCodes.end() || m_isFinished) {
        m_out.copy(group);
        continue;
      }
      m_seen[static_cast<std::size_t>(place - kCodes.begin())] = true;
      if (isUnchanged(group.code)) {
        m_out.copy(group);
      } else {
        value(group.code, group.integerOr(0));
      }
    }
    finish();
    return m_out.take();
  }

 private:
  bool isUnchanged(int code) const {
    switch (code) {
      case 70:
        return m_source.isFrozen == m_target.isFrozen && m_source.isLocked == m_target.isLocked;
      case 62:
        return m_source.color == m_target.color && m_source.isOff == m_target.isOff;
      case 6:
        return m_source.linetype == m_target.linetype;
      default:
        return m_source.color == m_target.color;
    }
  }

  void value(int code, std::int64_t former) {
    switch (code) {
      case 70:
        m_out.integer(70, withFlag(withFlag(former, kFrozenFlag, m_target.isFrozen), kLockedFlag, m_target.isLocked));
        break;
      case 62: {
        // Beside a true color the index is whatever the writing program chose.
        const bool keepsIndex = former != 0 && m_source.color == m_target.color;
        const std::int64_t index = keepsIndex ? std::abs(former) : *m_color.index;
        m_out.integer(62, m_target.isOff ? -index : index);
        break;
      }
      case 6:
        m_out.text(6, m_target.linetype);
        break;
      default:
        m_color.write(m_out, code);
    }
  }

  /// Adds what the record lacks.
  void finish() {
    if (std::exchange(m_isFinished, true)) return;
    for (std::size_t i = 0; i < kCodes.size(); ++i) {
      if (!m_seen[i] && !isUnchanged(kCodes[i])) value(kCodes[i], 0);
    }
  }

  dxf::Groups m_groups;
  LayerData m_source;
  const LayerData& m_target;
  ColorGroups m_color;
  dxf::RecordBuilder m_out;
  std::array<bool, kCodes.size()> m_seen = {};
  bool m_isFinished = false;
};

/// Names from R2000 on may hold anything but a few marks; older ones are capitals, digits and three marks (which case they
/// are written in does not matter).
bool isLayerName(const std::wstring& name, dxf::Version version) {
  const bool isOld = version < dxf::Version::r2000;
  const std::size_t longest = isOld ? 31 : 255;
  if (name.empty() || name.size() > longest || trimmed(name) != name) return false;
  return std::ranges::all_of(name, [&](wchar_t c) {
    if (isOld && c < 128)
      return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || (c >= L'0' && c <= L'9') || c == L'$' || c == L'-' ||
             c == L'_';
    return c >= L' ' && std::wstring_view(L"<>/\\\":;?*|,=`").find(c) == std::wstring_view::npos;
  });
}

/// Copies what a drawing with plot styles and materials says of every layer.
void copyReferences(Database& database, dxf::RecordBuilder& out) {
  for (const dxf::RecordId layer : database.symbols(dxf::RecordType::layer)) {
    const auto plotStyle = firstGroup(database.file().groups(layer), 390);
    if (!plotStyle) continue;
    out.copy(*plotStyle);
    if (const auto material = firstGroup(database.file().groups(layer), 347)) out.copy(*material);
    return;
  }
}

}  // namespace

LayerData readLayer(const dxf::DrawingFile& file, dxf::RecordId record) {
  LayerData layer;
  ColorGroups color;
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code >= 1000) break;
    switch (group.code) {
      case 2:
        layer.name = file.text(group);
        break;
      case 6:
        layer.linetype = file.text(group);
        break;
      case 70:
        layer.isFrozen = group.integerOr(0) & kFrozenFlag;
        layer.isLocked = group.integerOr(0) & kLockedFlag;
        break;
      default:
        if (ColorGroups::isColorCode(group.code)) color.take(file, group);
    }
  }
  layer.isOff = color.index.value_or(0) < 0;
  layer.color = color.color(layer.color.colorIndex());
  return layer;
}

std::vector<LayerData> readLayers(const Database& database) {
  std::vector<LayerData> layers;
  for (const dxf::RecordId record : database.symbols(dxf::RecordType::layer)) {
    layers.push_back(readLayer(database.file(), record));
  }
  return layers;
}

bool isLockedLayer(const dxf::DrawingFile& file, dxf::RecordId layer) {
  const auto flags = firstGroup(file.groups(layer), 70);
  return flags && flags->integerOr(0) & kLockedFlag;
}

bool isOnLockedLayer(const Database& database, dxf::RecordId entity) {
  const std::set<dxf::RecordId>& locked = database.lockedLayers();
  if (locked.empty()) return false;
  return locked.contains(database.findSymbol(dxf::RecordType::layer, firstText(database.file(), entity, 8)));
}

void changeLayer(Database& database, dxf::RecordId record, const LayerData& layer) {
  if (readLayer(database.file(), record) == layer) return;
  database.setBytes(record, LayerWriter(database.file(), record, layer).write());
}

Result<dxf::RecordId> addLayer(Database& database, const std::wstring& name) {
  dxf::DrawingFile& file = database.file();
  const dxf::RecordId table = database.findTable("LAYER");
  if (table == dxf::kNoRecord) return fail(ErrorCode::notApplicable, "the drawing has no layer table");
  if (!isLayerName(name, file.version())) {
    return fail(ErrorCode::invalidValue, utf8FromWide(L'"' + name + L"\" cannot be the name of a layer"));
  }
  const LayerData layer;
  dxf::RecordBuilder bytes(file);
  bytes.name(0, "LAYER");
  if (file.usesHandles()) bytes.handle(5, file.newHandle());
  if (file.version() >= dxf::Version::r13) {
    if (const dxf::Handle owner = file.handle(table); owner != 0) bytes.handle(330, owner);
    bytes.name(100, "AcDbSymbolTableRecord");
    bytes.name(100, "AcDbLayerTableRecord");
  }
  bytes.text(2, name);
  bytes.integer(70, 0);
  bytes.integer(62, layer.color.colorIndex());
  bytes.text(6, layer.linetype);
  if (file.version() >= dxf::Version::r2000) {
    bytes.integer(370, kDefaultLineWeight);
    copyReferences(database, bytes);
  }
  return database.appendToTable(table, bytes.take());
}

}  // namespace torva::db

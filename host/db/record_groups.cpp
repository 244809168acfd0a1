#include "db/record_groups.h"

namespace torva::db {

bool ApplicationGroups::contains(const dxf::Group& group) {
  if (group.code != 102) return m_isInside;
  m_isInside = group.value.starts_with('{');
  return true;
}

dxf::Handle ownerHandle(dxf::Groups groups) {
  ApplicationGroups application;
  for (const dxf::Group& group : groups) {
    if (application.contains(group)) continue;
    if (group.code == 100) return 0;
    if (group.code == 330) return group.handle().value_or(0);
  }
  return 0;
}

std::optional<dxf::Group> firstGroup(dxf::Groups groups, int code) {
  for (const dxf::Group& group : groups) {
    if (group.code == code) return group;
  }
  return std::nullopt;
}

std::wstring firstText(const dxf::DrawingFile& file, dxf::RecordId record, int code) {
  const auto group = firstGroup(file.groups(record), code);
  return group ? file.text(*group) : std::wstring();
}

bool saySame(dxf::Groups a, dxf::Groups b) {
  const auto isSame = [](const dxf::Group& p, const dxf::Group& q) {
    if (p.code != q.code) return false;
    if (p.value == q.value) return true;
    switch (dxf::valueKind(p.code)) {
      case dxf::ValueKind::real:
        return p.real() && p.real() == q.real();
      case dxf::ValueKind::int16:
      case dxf::ValueKind::int32:
      case dxf::ValueKind::int64:
        return p.integer() && p.integer() == q.integer();
      default:
        return false;
    }
  };
  auto p = a.begin(), q = b.begin();
  for (; p != a.end() && q != b.end(); ++p, ++q) {
    if (!isSame(*p, *q)) return false;
  }
  return p == a.end() && q == b.end();
}

bool isEntity(const dxf::DrawingFile& file, dxf::RecordId record) {
  using enum dxf::RecordType;
  const dxf::RecordType type = file.type(record);
  if (type >= line && type <= table_entity) return true;
  if (type < kFirstOther) return type == block || type == endblk;
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == 100) return group.value == "AcDbEntity";
    if (group.code == 8) return true;
  }
  return false;
}

bool isPartOfEntityBefore(dxf::RecordType type) {
  return type == dxf::RecordType::vertex || type == dxf::RecordType::attrib || type == dxf::RecordType::seqend;
}

std::vector<dxf::RecordId> withParts(const dxf::DrawingFile& file, dxf::RecordId entity) {
  std::vector<dxf::RecordId> records;
  dxf::RecordId record = entity;
  do {
    if (!file.isErased(record)) records.push_back(record);
    record = file.next(record);
  } while (record != dxf::kNoRecord && isPartOfEntityBefore(file.type(record)));
  return records;
}

}  // namespace torva::db

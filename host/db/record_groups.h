#pragma once

#include <string>
#include <vector>

#include "base/export.h"
#include "dxf/drawing_file.h"

namespace torva::db {

/// The handle of a record's owner (group 330 outside of the application groups 102); 0 when it names none.
dxf::Handle ownerHandle(dxf::Groups groups);

/// The first value of a group code in a record; empty when it has none.
TORVA_API std::wstring firstText(const dxf::DrawingFile& file, dxf::RecordId record, int code);
std::optional<dxf::Group> firstGroup(dxf::Groups groups, int code);

/// Whether two records have the same groups with the same values, however these are written.
bool saySame(dxf::Groups a, dxf::Groups b);

/// Whether a record of a type is a drawing entity. Types that the host does not know are looked into.
bool isEntity(const dxf::DrawingFile& file, dxf::RecordId record);

/// Whether records of a type belong to the entity before them: vertices, attributes and the end mark of both.
bool isPartOfEntityBefore(dxf::RecordType type);

/// An entity and the records that are part of it, in their order, erased ones left out.
std::vector<dxf::RecordId> withParts(const dxf::DrawingFile& file, dxf::RecordId entity);

/// Passes over the groups that applications put between 102 "{NAME" and 102 "}".
class ApplicationGroups {
 public:
  /// Whether this group belongs to an application, its 102 marks included. To be called for every group in turn.
  bool contains(const dxf::Group& group);

 private:
  bool m_isInside = false;
};

}  // namespace torva::db

#pragma once

#include <memory>

#include "db/entity_properties.h"
#include "db/mline_geometry.h"
#include "db/mline_groups.h"
#include "db/object_imp.h"

namespace torva::db {

class MlineImp final : public KdDbObjectImp, public KdDbMlineImp {
 public:
  void enter() override;
  void read() override;
  void letGo() override;
  KdDbMlineImp* mline() override { return this; }
  std::wstring layerName() const override { return properties().layer; }

  bool appendSegments(const std::vector<KdGePoint3d>& points) override;
  bool appendSeg(const std::vector<KdGeVector3d>& vectors, int selector) override;

  const MlineData& data() const;
  /// The data for a change; touches the object. Requires: it is writable.
  MlineData& change();
  EntityProperties properties() const;
  /// Requires: it is writable.
  void setProperties(EntityProperties properties);
  void copyFrom(const MlineImp& source);

  /// The record of the style, found by handle, by name, or STANDARD; kNoRecord when none exists.
  dxf::RecordId style() const;
  MlineShape shape() const;
  /// Brings the lists into agreement with style, scale and justification after one of them changed.
  void restyle();
  void setStyle(dxf::RecordId style);

 protected:
  dxf::RecordText write() const override;

 private:
  /// Reads the data from the record. Returns what it says besides.
  std::shared_ptr<const MlineSource> load() const;
  /// The data for a change.
  MlineData& own();

  // Shared with the original and with copies, until one of them changes. Null: as in the record, or as a new one.
  mutable std::shared_ptr<MlineData> m_data;
  /// What the record says in the drawing as it was opened, while that is at hand.
  mutable std::weak_ptr<const MlineSource> m_original;
  /// Only when they may differ from those in the file; most multilines never need it.
  std::optional<EntityProperties> m_newProperties;
  /// Number of the database whose handles the data has, for objects outside any database; 0 when the data names no handle.
  std::uint32_t m_origin = 0;
};

}  // namespace torva::db

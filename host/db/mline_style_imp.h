#pragma once

#include "db/mline_style_data.h"
#include "db/object_imp.h"

namespace torva::db {

class MlineStyleImp final : public KdDbObjectImp {
 public:
  void enter() override { m_nameInMlines = m_data.name; }
  void read() override;

  const MlineStyleData& data() const { return m_data; }
  /// The data for a change; touches the object. Requires: it is writable.
  MlineStyleData& change();
  /// The elements for a change: they are sorted when the style is closed.
  MlineStyleElements& changeElements();

  /// Name of the linetype with an id in context(); empty when there is none.
  std::wstring linetypeName(KdDbObjectId linetype) const;
  /// Id of the linetype of an element; null when its name is not in the drawing.
  KdDbObjectId linetypeId(const MlineStyleElement& element) const;

 protected:
  dxf::RecordText write() const override;
  void settle() override;

 private:
  MlineStyleData m_data;
  std::wstring m_nameInMlines;
  bool m_areElementsChanged = false;
};

}  // namespace torva::db

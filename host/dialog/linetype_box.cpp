#include "db/database.h"
#include "db/record_groups.h"

#include <kdrx/db_reserved.h>
#include <kdrx/ui/color_box.h>

#include <QtCore/QStringList>

namespace {

/// Whether a linetype is one of those that come first, by its name in drawings.
bool isReserved(const QString& name) {
  return QStringList{"ByLayer", "ByBlock", "Continuous"}.contains(name, Qt::CaseInsensitive);
}

}  // namespace

CKdUiLineTypeComboBox::~CKdUiLineTypeComboBox() = default;

void CKdUiLineTypeComboBox::PreSubclassWindow() {
  CComboBox::PreSubclassWindow();
  ResetContent();
  for (const auto name : {KdReservedName::byLayer, KdReservedName::byBlock, KdReservedName::continuous}) {
    AddString(kddbReservedString(name).c_str());
  }
  const auto* database = static_cast<const torva::db::Database*>(kddbWorkingDatabase());
  if (!database) return;
  for (const auto record : database->symbols(torva::dxf::RecordType::ltype)) {
    const std::wstring name = torva::db::firstText(database->file(), record, 2);
    if (!isReserved(QString::fromStdWString(name))) AddString(name.c_str());
  }
}

#include "dialog/color_dialog.h"
#include "dialog/color_swatch.h"
#include "runtime/host_texts.h"

#include <kdrx/db_reserved.h>
#include <kdrx/ui/color_box.h>

#include <QtGui/QKeyEvent>

namespace {

constexpr int kWordRole = Qt::UserRole, kKeyRole = Qt::UserRole + 1;
constexpr int kByLayerIndex = 256, kByBlockIndex = 0;
constexpr int kNamedColors = 7;
constexpr int kFirstRecentRow = 2 + kNamedColors;
constexpr int kMostRecent = 8;

bool hasColor(const QComboBox& box, int row) {
  return box.itemData(row, kWordRole).isValid();
}

KdCmColor colorAt(const QComboBox& box, int row) {
  KdCmColor color;
  if (!hasColor(box, row)) return color;
  color.setColor(box.itemData(row, kWordRole).toUInt());
  color.setNamesFromDictionaryKey(box.itemData(row, kKeyRole).toString().toStdWString());
  return color;
}

/// By layer and by block are what they are, whatever else their words hold.
bool isSame(const KdCmColor& a, const KdCmColor& b) {
  return a == b || (a.isByLayer() && b.isByLayer()) || (a.isByBlock() && b.isByBlock());
}

int rowOf(const QComboBox& box, const KdCmColor& color) {
  for (int row = 0; row < box.count(); ++row) {
    if (hasColor(box, row) && isSame(colorAt(box, row), color)) return row;
  }
  return -1;
}

void insertColor(QComboBox& box, int row, const KdCmColor& color) {
  const QString name = QString::fromStdWString(CKdUiTrueColorComboBox::NameOf(color));
  box.insertItem(row, torva::dialog::swatchIcon(color), name, color.color());
  box.setItemData(row, QString::fromStdWString(color.dictionaryKey()), kKeyRole);
}

void addRecent(QComboBox& box, const KdCmColor& color) {
  insertColor(box, kFirstRecentRow, color);
  box.setCurrentIndex(kFirstRecentRow);
  if (hasColor(box, kFirstRecentRow + kMostRecent)) box.removeItem(kFirstRecentRow + kMostRecent);
}

QComboBox* boxOf(const CKdUiTrueColorComboBox& box) {
  return qobject_cast<QComboBox*>(box.GetWidget());
}

}  // namespace

QKdUiTrueColorComboBox::QKdUiTrueColorComboBox(QWidget* parent) : QComboBox(parent) {
  setIconSize({torva::dialog::kSwatchPx, torva::dialog::kSwatchPx});
  for (const int index : {kByLayerIndex, kByBlockIndex}) insertColor(*this, count(), KdCmColor::byIndex(index));
  for (int index = 1; index <= kNamedColors; ++index) insertColor(*this, count(), KdCmColor::byIndex(index));
  addItem(QString::fromStdWString(torva::runtime::hostText(torva::runtime::HostText::selectColor)));
  // Connected before a layout can: whoever hears of a choice next finds the color chosen.
  connect(this, QOverload<int>::of(&QComboBox::activated), this, &QKdUiTrueColorComboBox::OnActivated);
  connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QKdUiTrueColorComboBox::OnCurrentIndexChanged);
}

QKdUiTrueColorComboBox::~QKdUiTrueColorComboBox() = default;

void QKdUiTrueColorComboBox::OnCurrentIndexChanged(int row) {
  if (hasColor(*this, row)) m_colorRow = row;
}

void QKdUiTrueColorComboBox::OnActivated(int row) {
  if (hasColor(*this, row)) return;
  const auto title = torva::runtime::hostText(torva::runtime::HostText::selectColorTitle);
  const auto color = torva::dialog::chooseColor(this, colorAt(*this, m_colorRow), QString::fromStdWString(title));
  if (!color) return setCurrentIndex(m_colorRow);
  const int present = rowOf(*this, *color);
  present < 0 ? addRecent(*this, *color) : setCurrentIndex(present);
}

/// Going down through the rows ends before the last one, whose dialog is only shown to who asks for it.
void QKdUiTrueColorComboBox::keyPressEvent(QKeyEvent* event) {
  const bool opensList = event->modifiers() & Qt::AltModifier;
  const bool goesDown = (event->key() == Qt::Key_Down && !opensList) || event->key() == Qt::Key_PageDown;
  const int last = count() - 2;
  const bool isAtEnd = currentIndex() >= last;
  if (goesDown && isAtEnd) return;
  if (event->key() != Qt::Key_End) return QComboBox::keyPressEvent(event);
  if (isAtEnd) return;
  setCurrentIndex(last);
  emit activated(last);
}

CKdUiTrueColorComboBox::~CKdUiTrueColorComboBox() = default;

CStdStr<wchar_t> CKdUiTrueColorComboBox::NameOf(const KdCmColor& color) {
  if (!color.dictionaryKey().empty() || color.isTrueColor()) return color.displayName();
  if (color.isByLayer()) return kddbReservedString(KdReservedName::byLayer);
  if (color.isByBlock()) return kddbReservedString(KdReservedName::byBlock);
  const std::wstring name = torva::runtime::hostColorName(color.colorIndex());
  return name.empty() ? color.displayName() : name;
}

int CKdUiTrueColorComboBox::FindColor(const KdCmColor& color) const {
  const QComboBox* box = boxOf(*this);
  return box ? rowOf(*box, color) : -1;
}

bool CKdUiTrueColorComboBox::SelectColor(const KdCmColor& color) {
  const int row = FindColor(color);
  return row >= 0 && SetCurSel(row);
}

void CKdUiTrueColorComboBox::AddRecentColor(const KdCmColor& color) {
  if (QComboBox* box = boxOf(*this)) addRecent(*box, color);
}

KdCmColor CKdUiTrueColorComboBox::GetColor() const {
  const QComboBox* box = boxOf(*this);
  return box ? colorAt(*box, box->currentIndex()) : KdCmColor();
}

#include "runtime/host_texts.h"

#include <kdrx/db_reserved.h>
#include <kdrx/ui/color_box.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QColorDialog>

namespace {

constexpr int kWordRole = Qt::UserRole, kKeyRole = Qt::UserRole + 1;
constexpr int kByLayerIndex = 256, kByBlockIndex = 0, kForegroundIndex = 7;
constexpr int kNamedColors = 7;
constexpr int kFirstRecentRow = 2 + kNamedColors;
constexpr int kMostRecent = 8;
constexpr int kSwatchPx = 14;

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

/// What is by layer or by block has an empty frame; white, which is black on paper, is half of each.
QPixmap swatchOf(const KdCmColor& color, int scale) {
  QPixmap swatch(kSwatchPx * scale, kSwatchPx * scale);
  swatch.setDevicePixelRatio(scale);
  swatch.fill(Qt::transparent);
  QPainter painter(&swatch);
  const QRectF frame(0.5, 1.5, kSwatchPx - 1, kSwatchPx - 3);
  const bool isShown = !color.isByLayer() && !color.isByBlock();
  if (isShown) painter.fillRect(frame, QColor(QRgb(color.rgb() | 0xFF000000u)));
  if (isShown && !color.isTrueColor() && color.colorIndex() == kForegroundIndex) {
    painter.fillRect(frame.adjusted(frame.width() / 2, 0, 0, 0), Qt::black);
  }
  painter.setPen(QPen(Qt::darkGray, 1));
  painter.drawRect(frame);
  return swatch;
}

void insertColor(QComboBox& box, int row, const KdCmColor& color) {
  QIcon icon;
  for (const int scale : {1, 2}) icon.addPixmap(swatchOf(color, scale));
  box.insertItem(row, icon, QString::fromStdWString(CKdUiTrueColorComboBox::NameOf(color)), color.color());
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
  setIconSize({kSwatchPx, kSwatchPx});
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
  const std::uint32_t rgb = colorAt(*this, m_colorRow).rgb();
  const auto title = torva::runtime::hostText(torva::runtime::HostText::selectColorTitle);
  const QColor chosen = QColorDialog::getColor(QColor(QRgb(rgb)), this, QString::fromStdWString(title));
  if (!chosen.isValid()) return setCurrentIndex(m_colorRow);
  const KdCmColor color = KdCmColor::trueColor(chosen.rgb() & 0xFFFFFFu);
  const int present = rowOf(*this, color);
  present < 0 ? addRecent(*this, color) : setCurrentIndex(present);
}

/// Going down through the rows stops before the last one, whose dialog is only shown to who asks for it.
void QKdUiTrueColorComboBox::keyPressEvent(QKeyEvent* event) {
  const bool goesOn = event->key() == Qt::Key_Down || event->key() == Qt::Key_PageDown || event->key() == Qt::Key_End;
  if (goesOn && event->modifiers() == Qt::NoModifier && !hasColor(*this, currentIndex() + 1)) return;
  QComboBox::keyPressEvent(event);
}

/// A turn of the wheel that was meant for something else would change the color without a word.
void QKdUiTrueColorComboBox::wheelEvent(QWheelEvent* event) {
  event->ignore();
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

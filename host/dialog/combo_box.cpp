#include "dialog/row_search.h"

#include <kdrx/ui.h>

#include <QtCore/QEvent>
#include <QtWidgets/QComboBox>

namespace {

QComboBox* boxOf(const CComboBox& box) {
  return qobject_cast<QComboBox*>(box.GetWidget());
}

template <class Matches>
int find(const CComboBox& control, int after, const Matches& matches) {
  const QComboBox* box = boxOf(control);
  if (!box) return -1;
  return torva::dialog::findRow(
      box->count(), after, [&](int row) { return box->itemText(row); }, matches);
}

/// A turn of the wheel that was meant for something else would change the choice without a word.
class WheelFilter final : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Wheel) return false;
    event->ignore();
    return true;
  }
};

}  // namespace

CComboBox::~CComboBox() = default;

void CComboBox::PreSubclassWindow() {
  if (QComboBox* box = boxOf(*this)) box->installEventFilter(new WheelFilter(box));
}

int CComboBox::GetCount() const {
  const QComboBox* box = boxOf(*this);
  return box ? box->count() : 0;
}

int CComboBox::AddString(const wchar_t* text) {
  QComboBox* box = boxOf(*this);
  if (!box || !text) return -1;
  box->addItem(QString::fromWCharArray(text));
  return box->count() - 1;
}

void CComboBox::ResetContent() {
  if (QComboBox* box = boxOf(*this)) box->clear();
}

CStdStr<wchar_t> CComboBox::GetLBText(int row) const {
  const QComboBox* box = boxOf(*this);
  return box ? box->itemText(row).toStdWString() : std::wstring();
}

int CComboBox::GetCurSel() const {
  const QComboBox* box = boxOf(*this);
  return box ? box->currentIndex() : -1;
}

bool CComboBox::SetCurSel(int row) {
  QComboBox* box = boxOf(*this);
  if (!box) return false;
  const bool isRow = row >= 0 && row < box->count();
  box->setCurrentIndex(isRow ? row : -1);
  return isRow;
}

int CComboBox::FindString(int after, const wchar_t* text) const {
  return find(*this, after, torva::dialog::beginsWith(text));
}

int CComboBox::FindStringExact(int after, const wchar_t* text) const {
  return find(*this, after, torva::dialog::isText(text));
}

int CComboBox::SelectString(int after, const wchar_t* text) {
  const int row = FindString(after, text);
  if (row >= 0) SetCurSel(row);
  return row;
}

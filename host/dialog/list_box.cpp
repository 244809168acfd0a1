#include "dialog/row_keys.h"
#include "dialog/row_search.h"

#include <kdrx/ui.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QListWidget>

namespace {

QListWidget* listOf(const CListBox& box) {
  return qobject_cast<QListWidget*>(box.GetWidget());
}

template <class Matches>
int find(const CListBox& box, int after, const Matches& matches) {
  const QListWidget* list = listOf(box);
  if (!list) return -1;
  return torva::dialog::findRow(
      list->count(), after, [&](int row) { return list->item(row)->text(); }, matches);
}

}  // namespace

CListBox::~CListBox() = default;

void CListBox::PreSubclassWindow() {
  if (QListWidget* list = listOf(*this)) torva::dialog::letKeysSelect(*list);
}

int CListBox::GetCount() const {
  const QListWidget* list = listOf(*this);
  return list ? list->count() : 0;
}

int CListBox::AddString(const wchar_t* text) {
  QListWidget* list = listOf(*this);
  if (!list || !text) return -1;
  list->addItem(QString::fromWCharArray(text));
  return list->count() - 1;
}

int CListBox::DeleteString(int row) {
  QListWidget* list = listOf(*this);
  const QSignalBlocker silence(list);
  if (!list || !list->item(row)) return -1;
  delete list->takeItem(row);
  return list->count();
}

void CListBox::ResetContent() {
  QListWidget* list = listOf(*this);
  const QSignalBlocker silence(list);
  if (list) list->clear();
}

CStdStr<wchar_t> CListBox::GetText(int row) const {
  const QListWidget* list = listOf(*this);
  return list && list->item(row) ? list->item(row)->text().toStdWString() : std::wstring();
}

int CListBox::GetCurSel() const {
  const QListWidget* list = listOf(*this);
  const auto selected = list ? list->selectedItems() : QList<QListWidgetItem*>();
  return selected.empty() ? -1 : list->row(selected.front());
}

bool CListBox::SetCurSel(int row) {
  QListWidget* list = listOf(*this);
  const QSignalBlocker silence(list);
  if (!list) return false;
  if (!list->item(row)) list->clearSelection();
  list->setCurrentRow(row);
  return list->item(row) != nullptr;
}

int CListBox::FindString(int after, const wchar_t* text) const {
  return find(*this, after, torva::dialog::beginsWith(text));
}

int CListBox::FindStringExact(int after, const wchar_t* text) const {
  return find(*this, after, torva::dialog::isText(text));
}

int CListBox::SelectString(int after, const wchar_t* text) {
  const int row = FindString(after, text);
  if (row >= 0) SetCurSel(row);
  return row;
}

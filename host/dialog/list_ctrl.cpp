#include <algorithm>
#include <vector>

#include "dialog/row_keys.h"

#include <kdrx/ui.h>

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableWidget>

namespace {

constexpr int kDataRole = Qt::UserRole;
constexpr const char* kFormats = "itemFormats";

QTableWidget* tableOf(const CListCtrl& list) {
  return qobject_cast<QTableWidget*>(list.GetWidget());
}

QHeaderView* headerOf(const CHeaderCtrl& header) {
  return qobject_cast<QHeaderView*>(header.GetWidget());
}

bool isRow(const QTableWidget& table, int row) {
  return row >= 0 && row < table.rowCount();
}

/// The item of a cell, made on first need. Requires: the table has the column.
QTableWidgetItem& itemOf(QTableWidget& table, int row, int column) {
  if (!table.item(row, column)) table.setItem(row, column, new QTableWidgetItem);
  return *table.item(row, column);
}

}  // namespace

CHeaderCtrl::~CHeaderCtrl() = default;

int CHeaderCtrl::GetItemCount() const {
  const QHeaderView* header = headerOf(*this);
  return header ? header->count() : 0;
}

unsigned CHeaderCtrl::GetItemFormat(int column) const {
  const QHeaderView* header = headerOf(*this);
  return header ? header->property(kFormats).toMap()[QString::number(column)].toUInt() : 0;
}

void CHeaderCtrl::SetItemFormat(int column, unsigned format) {
  QHeaderView* header = headerOf(*this);
  if (!header) return;
  QVariantMap formats = header->property(kFormats).toMap();
  formats[QString::number(column)] = format;
  header->setProperty(kFormats, formats);
}

void CHeaderCtrl::ShowSortArrow(int column, bool isAscending) {
  QHeaderView* header = headerOf(*this);
  if (!header) return;
  header->setSortIndicator(column, isAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
  header->setSortIndicatorShown(true);
}

CListCtrl::~CListCtrl() = default;

void CListCtrl::PreSubclassWindow() {
  QTableWidget* table = tableOf(*this);
  if (!table) return;
  table->setSelectionMode(QAbstractItemView::SingleSelection);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->verticalHeader()->hide();
  torva::dialog::letKeysSelect(*table);
  QHeaderView* header = table->horizontalHeader();
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  QObject::connect(header, &QHeaderView::sectionClicked, table, [table](int column) {
    if (auto* list = dynamic_cast<CListCtrl*>(FromWidget(table))) list->OnColumnClick(column);
  });
}

void CListCtrl::OnColumnClick(int) {}

void CListCtrl::SetExtendedStyle(unsigned style) {
  QTableWidget* table = tableOf(*this);
  if (!table) return;
  const bool isWholeRow = style & LVS_EX_FULLROWSELECT;
  table->setSelectionBehavior(isWholeRow ? QAbstractItemView::SelectRows : QAbstractItemView::SelectItems);
}

bool CListCtrl::SubclassHeader(CHeaderCtrl& header) {
  QTableWidget* table = tableOf(*this);
  if (!table || header.GetWidget()) return false;
  header.Bind(table->horizontalHeader());
  return true;
}

int CListCtrl::InsertColumn(int column, const wchar_t* heading, int widthPx) {
  QTableWidget* table = tableOf(*this);
  if (!table || !heading || column < 0 || column > table->columnCount()) return -1;
  table->insertColumn(column);
  table->setHorizontalHeaderItem(column, new QTableWidgetItem(QString::fromWCharArray(heading)));
  table->setColumnWidth(column, widthPx);
  return column;
}

int CListCtrl::GetItemCount() const {
  const QTableWidget* table = tableOf(*this);
  return table ? table->rowCount() : 0;
}

int CListCtrl::InsertItem(int row, const wchar_t* text) {
  QTableWidget* table = tableOf(*this);
  if (!table || table->columnCount() == 0 || row < 0 || row > table->rowCount()) return -1;
  table->insertRow(row);
  SetItemText(row, 0, text);
  return row;
}

bool CListCtrl::DeleteItem(int row) {
  QTableWidget* table = tableOf(*this);
  if (!table || !isRow(*table, row)) return false;
  table->removeRow(row);
  return true;
}

void CListCtrl::DeleteAllItems() {
  if (QTableWidget* table = tableOf(*this)) table->setRowCount(0);
}

bool CListCtrl::SetItemText(int row, int column, const wchar_t* text) {
  QTableWidget* table = tableOf(*this);
  if (!table || !text || !isRow(*table, row) || column < 0 || column >= table->columnCount()) return false;
  itemOf(*table, row, column).setText(QString::fromWCharArray(text));
  return true;
}

CStdStr<wchar_t> CListCtrl::GetItemText(int row, int column) const {
  const QTableWidget* table = tableOf(*this);
  const QTableWidgetItem* item = table ? table->item(row, column) : nullptr;
  return item ? item->text().toStdWString() : std::wstring();
}

bool CListCtrl::SetItemData(int row, unsigned long data) {
  QTableWidget* table = tableOf(*this);
  if (!table || !isRow(*table, row) || table->columnCount() == 0) return false;
  itemOf(*table, row, 0).setData(kDataRole, static_cast<qulonglong>(data));
  return true;
}

unsigned long CListCtrl::GetItemData(int row) const {
  const QTableWidget* table = tableOf(*this);
  const QTableWidgetItem* item = table ? table->item(row, 0) : nullptr;
  return item ? static_cast<unsigned long>(item->data(kDataRole).toULongLong()) : 0;
}

void CListCtrl::SortItems(Compare compare, unsigned long parameter) {
  QTableWidget* table = tableOf(*this);
  if (!table) return;
  struct Row {
    unsigned long data;
    bool isSelected;
    std::vector<QTableWidgetItem*> items;
  };
  std::vector<Row> rows;
  const int selected = GetSelectedItem();
  for (int row = 0; row < table->rowCount(); ++row) {
    rows.push_back({GetItemData(row), row == selected, {}});
    for (int column = 0; column < table->columnCount(); ++column) {
      rows.back().items.push_back(table->takeItem(row, column));
    }
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [=](const Row& a, const Row& b) { return compare(a.data, b.data, parameter) < 0; });
  for (int row = 0; row < table->rowCount(); ++row) {
    const Row& sorted = rows[static_cast<std::size_t>(row)];
    for (int column = 0; column < table->columnCount(); ++column) {
      table->setItem(row, column, sorted.items[static_cast<std::size_t>(column)]);
    }
    if (sorted.isSelected) SelectItem(row);
  }
}

int CListCtrl::GetSelectedItem() const {
  const QTableWidget* table = tableOf(*this);
  const auto selected = table ? table->selectionModel()->selectedIndexes() : QModelIndexList();
  return selected.empty() ? -1 : selected.front().row();
}

void CListCtrl::SelectItem(int row) {
  QTableWidget* table = tableOf(*this);
  if (!table) return;
  if (!isRow(*table, row)) return table->clearSelection();
  table->setCurrentCell(row, 0);
  table->scrollToItem(table->item(row, 0));
}

#pragma once

#include <kdrx/export.h>
#include <kdrx/ui/wnd.h>

/// The heading row of a list of columns.
class KDRX_API CHeaderCtrl : public CWnd {
 public:
  ~CHeaderCtrl() override;

  /// How many columns there are.
  int GetItemCount() const;
  /// Format bits of a column, kept for who asks; 0 at first.
  unsigned GetItemFormat(int column) const;
  void SetItemFormat(int column, unsigned format);
  /// Marks the column by which the list is sorted.
  void ShowSortArrow(int column, bool isAscending);

 private:
  friend class CListCtrl;
};

/// Format bit of a heading that is drawn in a way of its own.
inline constexpr unsigned HDF_OWNERDRAW = 0x8000;
/// Extended style of a list: a click selects the whole row.
inline constexpr unsigned LVS_EX_FULLROWSELECT = 0x20;

/// A list of rows in columns, over a table widget; one row at most is selected, and cells are not edited in place. Rows and
/// columns are counted from 0; -1 is none.
class KDRX_API CListCtrl : public CWnd {
 public:
  /// Compares the data of two rows: below 0, 0, above 0.
  using Compare = int (*)(unsigned long first, unsigned long second, unsigned long parameter);

  ~CListCtrl() override;

  void SetExtendedStyle(unsigned style);
  /// Binds `header` to the list's headings. @return false when it is bound already, or the list is not
  bool SubclassHeader(CHeaderCtrl& header);
  /// Adds a column, left-aligned, `widthPx` wide.
  /// @return its number; -1 when the place is none, or the list is unbound
  int InsertColumn(int column, const wchar_t* heading, int widthPx);

  int GetItemCount() const;
  /// Adds a row. @return its number; -1 when the place is none, or the list has no columns
  int InsertItem(int row, const wchar_t* text);
  /// @return false when there is no such row, nor such a column
  bool DeleteItem(int row);
  void DeleteAllItems();
  bool SetItemText(int row, int column, const wchar_t* text);
  CStdStr<wchar_t> GetItemText(int row, int column) const;
  /// A number that goes with a row; 0 at first. @return false when there is no such row, or the list has no columns
  bool SetItemData(int row, unsigned long data);
  unsigned long GetItemData(int row) const;
  /// Sorts the rows by their data; equal ones stay in order, and the selected row stays selected.
  void SortItems(Compare compare, unsigned long parameter);

  int GetSelectedItem() const;
  /// Selects a row and brings it into view; any other number selects none.
  void SelectItem(int row);

  /// Called when the user clicks a heading.
  virtual void OnColumnClick(int column);

 protected:
  void PreSubclassWindow() override;
};

#pragma once

#include <string>
#include <vector>

#include <kdrx/ui.h>

/// The headings of a CSortListCtrl.
class CSortHeaderCtrl : public CHeaderCtrl {
 public:
  /// Marks a heading as the one by which the list is sorted.
  void SetSortArrow(int column, bool isAscending);
  int GetSortColumn() const { return m_sortColumn; }
  bool IsAscending() const { return m_isAscending; }

  /// The state of the headings as a block for the profile, and back from one. There is none to keep, deliberately: widths
  /// come from the heading text each time.
  std::vector<unsigned char> Save() const { return {}; }
  void Load(const std::vector<unsigned char>&) {}

 private:
  int m_sortColumn = -1;
  bool m_isAscending = true;
};

/// A list of rows in columns that is sorted by a column's numbers, at the user's click on a heading too.
class CSortListCtrl : public CListCtrl {
 public:
  ~CSortListCtrl() override;

  /// Adds the columns of a text of the form "name,width;name,width". A text without a comma has none.
  /// @return false at the first column that cannot be added; those before it stay
  bool SetHeadings(const CStdStr<wchar_t>& headings);
  /// Takes that text from the current resource library.
  bool SetHeadings(unsigned textId);

  /// Adds a row at the end: the text of column 0, then exactly one const wchar_t* for each further column.
  /// @return its number; -1 when it cannot be added
  int AddItem(const wchar_t* first, ...);
  /// @return false when there is no such row or column
  bool SetItemText(int row, int column, const wchar_t* text);
  /// A number of the caller's that goes with a row; 0 at first. @return false when there is no row that AddItem() made
  bool SetItemData(int row, unsigned long data);
  unsigned long GetItemData(int row) const;
  bool DeleteItem(int row);
  void DeleteAllItems();

  /// Sorts the rows by the numbers that the texts of a column begin with, and says so in its heading.
  void Sort(int column, bool isAscending);
  int GetSortColumn() const { return m_sortColumn; }
  bool IsAscending() const { return m_isAscending; }
  /// Sorts by the column, the other way round when it is the one in ascending order already.
  void OnColumnClick(int column) override;

  /// The headings' state in the profile, under the number of the control.
  void LoadColumnInfo();
  void SaveColumnInfo() const;

  void OnDestroy() override;

 protected:
  void PreSubclassWindow() override;

 private:
  /// What stands behind a row: copies of its texts, by column, and the caller's number.
  struct ItemData {
    std::vector<std::wstring> texts;
    unsigned long user = 0;
  };
  ItemData* DataOf(int row) const;
  void FreeItemData();
  static int CompareFunction(unsigned long first, unsigned long second, unsigned long list);

  CSortHeaderCtrl m_header;
  int m_columnCount = 0;
  int m_sortColumn = -1;
  bool m_isAscending = true;
};

// Tests of a cell's text. Sorting looks at numbers alone and uses NumberCompare() for every column, deliberately: it keeps
// offsets in their order.

/// Whether all characters are decimal digits, as those of an empty text are.
bool IsNumber(const wchar_t* text);
/// -1, 0 or 1, by the number that each text begins with; 0 for one that begins with none. The point is '.' in every
/// language.
int NumberCompare(const wchar_t* a, const wchar_t* b);
/// Whether a text has the form "00/00/0000", digits and slashes.
bool IsDate(const wchar_t* text);
/// -1, 0 or 1, by characters 6 to 9, then 3 and 4, then 0 and 1, each part as a number. Requires: both are dates.
int DateCompare(const wchar_t* a, const wchar_t* b);

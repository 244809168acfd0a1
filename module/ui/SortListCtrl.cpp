#include "ui/SortListCtrl.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cwchar>

#include <kdrx/app.h>

namespace {

constexpr const wchar_t* kSection = L"ListCtrls";

bool isDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

/// The number that a text begins with. The C library's conversions would follow the user's language.
double numberOf(const wchar_t* text) {
  while (*text == L' ' || *text == L'\t') ++text;
  if (*text == L'+') ++text;
  std::string digits;
  for (; *text > 0 && *text < 128; ++text) digits += static_cast<char>(*text);
  double value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return std::isnan(value) ? 0 : value;
}

int compare(double a, double b) {
  return a < b ? -1 : a > b;
}

long partOf(const wchar_t* date, std::size_t first, std::size_t count) {
  return std::wcstol(std::wstring(date).substr(first, count).c_str(), nullptr, 10);
}

std::wstring keyOf(const CWnd& control) {
  return std::to_wstring(control.GetDlgCtrlID());
}

}  // namespace

void CSortHeaderCtrl::SetSortArrow(int column, bool isAscending) {
  m_sortColumn = column;
  m_isAscending = isAscending;
  SetItemFormat(column, GetItemFormat(column) | HDF_OWNERDRAW);
  ShowSortArrow(column, isAscending);
  Invalidate();
}

CSortListCtrl::~CSortListCtrl() {
  FreeItemData();
}

void CSortListCtrl::PreSubclassWindow() {
  CListCtrl::PreSubclassWindow();
  SubclassHeader(m_header);
}

bool CSortListCtrl::SetHeadings(const CStdStr<wchar_t>& headings) {
  std::size_t position = 0;
  for (std::size_t comma; (comma = headings.find(L',', position)) != headings.npos;) {
    const std::wstring name = headings.substr(position, comma - position);
    const std::size_t end = std::min(headings.find(L';', comma), headings.size());
    const std::wstring width = headings.substr(comma + 1, end - comma - 1);
    if (InsertColumn(m_columnCount, name.c_str(), static_cast<int>(std::wcstol(width.c_str(), nullptr, 10))) < 0)
      return false;
    ++m_columnCount;
    position = std::min(end + 1, headings.size());
  }
  return true;
}

bool CSortListCtrl::SetHeadings(unsigned textId) {
  CStdStr<wchar_t> headings;
  headings.LoadStringW(AfxGetResourceHandle(), textId);
  return SetHeadings(headings);
}

int CSortListCtrl::AddItem(const wchar_t* first, ...) {
  const int row = InsertItem(GetItemCount(), first);
  if (row < 0) return -1;
  auto* data = new ItemData{{first ? first : L""}, 0};
  va_list further;
  va_start(further, first);
  for (int column = 1; column < m_columnCount; ++column) {
    const wchar_t* text = va_arg(further, const wchar_t*);
    data->texts.push_back(text ? text : L"");
    CListCtrl::SetItemText(row, column, text);
  }
  va_end(further);
  CListCtrl::SetItemData(row, reinterpret_cast<unsigned long>(data));
  return row;
}

bool CSortListCtrl::SetItemText(int row, int column, const wchar_t* text) {
  if (!CListCtrl::SetItemText(row, column, text)) return false;
  ItemData* data = DataOf(row);
  if (data && column < m_columnCount) data->texts[static_cast<std::size_t>(column)] = text;
  return true;
}

bool CSortListCtrl::SetItemData(int row, unsigned long user) {
  ItemData* data = DataOf(row);
  if (data) data->user = user;
  return data != nullptr;
}

unsigned long CSortListCtrl::GetItemData(int row) const {
  const ItemData* data = DataOf(row);
  return data ? data->user : 0;
}

bool CSortListCtrl::DeleteItem(int row) {
  delete DataOf(row);
  return CListCtrl::DeleteItem(row);
}

void CSortListCtrl::DeleteAllItems() {
  FreeItemData();
  CListCtrl::DeleteAllItems();
}

void CSortListCtrl::Sort(int column, bool isAscending) {
  m_sortColumn = column;
  m_isAscending = isAscending;
  SortItems(CompareFunction, reinterpret_cast<unsigned long>(this));
  m_header.SetSortArrow(column, isAscending);
}

void CSortListCtrl::OnColumnClick(int column) {
  Sort(column, column != m_sortColumn || !m_isAscending);
}

void CSortListCtrl::LoadColumnInfo() {
  const std::vector<unsigned char> block = kdrxGetProfileBinary(kSection, keyOf(*this).c_str());
  if (block.empty()) return;
  m_header.Load(block);
  m_header.Invalidate();
}

void CSortListCtrl::SaveColumnInfo() const {
  kdrxWriteProfileBinary(kSection, keyOf(*this).c_str(), m_header.Save());
}

void CSortListCtrl::OnDestroy() {
  FreeItemData();
  CListCtrl::OnDestroy();
}

CSortListCtrl::ItemData* CSortListCtrl::DataOf(int row) const {
  return reinterpret_cast<ItemData*>(CListCtrl::GetItemData(row));
}

void CSortListCtrl::FreeItemData() {
  for (int row = 0; row < GetItemCount(); ++row) {
    delete DataOf(row);
    CListCtrl::SetItemData(row, 0);
  }
}

int CSortListCtrl::CompareFunction(unsigned long first, unsigned long second, unsigned long listAddress) {
  const auto& list = *reinterpret_cast<const CSortListCtrl*>(listAddress);
  const auto textOf = [&](unsigned long address) {
    const auto* data = reinterpret_cast<const ItemData*>(address);
    const auto column = static_cast<std::size_t>(list.m_sortColumn);
    return data && column < data->texts.size() ? data->texts[column].c_str() : L"";
  };
  if (!list.m_isAscending) std::swap(first, second);
  return NumberCompare(textOf(first), textOf(second));
}

bool IsNumber(const wchar_t* text) {
  return std::all_of(text, text + std::wcslen(text), isDigit);
}

int NumberCompare(const wchar_t* a, const wchar_t* b) {
  return compare(numberOf(a), numberOf(b));
}

bool IsDate(const wchar_t* text) {
  constexpr std::wstring_view kForm = L"00/00/0000";
  const std::wstring_view date = text;
  return std::equal(date.begin(), date.end(), kForm.begin(), kForm.end(),
                    [](wchar_t c, wchar_t form) { return form == L'0' ? isDigit(c) : c == form; });
}

int DateCompare(const wchar_t* a, const wchar_t* b) {
  constexpr std::pair<std::size_t, std::size_t> kParts[] = {{6, 4}, {3, 2}, {0, 2}};
  for (const auto& [first, count] : kParts) {
    const long partOfA = partOf(a, first, count), partOfB = partOf(b, first, count);
    if (partOfA != partOfB) return partOfA < partOfB ? -1 : 1;
  }
  return 0;
}

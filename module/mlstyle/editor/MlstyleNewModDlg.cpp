#include "mlstyle/editor/MlstyleNewModDlg.h"

#include <algorithm>
#include <iterator>

#include "mlaccess/mlstyle_access.h"
#include "mlstyle/OpenedObject.h"
#include "mlstyle/VariableSetting.h"
#include "mlstyle/editor/MlstyleNewModWidget.h"
#include "mlstyle/editor/RealText.h"
#include "ui/DialogPosition.h"

#include <kdrx/db_database.h>
#include <kdrx/db_reserved.h>
#include <kdrx/ut.h>

namespace {

constexpr unsigned kTemplateId = 105;
constexpr const wchar_t* kPositionPrefix = L"MlstyNewModDlg";
constexpr const wchar_t* kNoOffset = L"0.000";
constexpr const wchar_t* kZeroSuppression = L"DIMZIN";
constexpr short kKeepZeros = 0, kDropTrailingZeros = 8;
constexpr int kAnglePrecision = 2, kOffsetPrecision = 1;
constexpr double kLeastAngleDeg = 10, kMostAngleDeg = 170;
constexpr int kMostElements = 2147483647;
constexpr int kNumberCapacity = 512;

enum ControlId : int {
  kDescription = 1037,
  kStartAngle = 1044,
  kEndAngle = 1045,
  kElements = 1046,
  kFillColor = 1048,
  kElementColor = 1049,
  kOffset = 1050,
  kDelete = 1052,
  kFill = 1054,
  kLinetype = 1055,
};

enum TextId : unsigned {
  kOffsetHeading = 1,
  kColorHeading = 2,
  kLinetypeHeading = 3,
  kNewTitle = 4,
  kModifyTitle = 5,
  kTooManyElements = 25,
};

enum Column : int { kOffsetColumn, kLinetypeColumn, kColorColumn, kColumnCount };

/// The check boxes, what they stand for in the flag word, and in a style.
constexpr struct {
  int id, flag;
  bool (KdDbMlineStyle::*isOn)() const;
} kCheckBoxes[] = {
    {1038, kStyleStartSquareCap, &KdDbMlineStyle::startSquareCap},
    {1039, kStyleEndSquareCap, &KdDbMlineStyle::endSquareCap},
    {1040, kStyleStartRoundCap, &KdDbMlineStyle::startRoundCap},
    {1041, kStyleStartInnerArcs, &KdDbMlineStyle::startInnerArcs},
    {1042, kStyleEndRoundCap, &KdDbMlineStyle::endRoundCap},
    {1043, kStyleEndInnerArcs, &KdDbMlineStyle::endInnerArcs},
    {1047, kStyleShowMiters, &KdDbMlineStyle::showMiters},
    {kFill, kStyleFilled, &KdDbMlineStyle::filled},
};

constexpr struct {
  KdReservedName name;
  const wchar_t* inDrawings;
} kReservedNames[] = {
    {KdReservedName::byLayer, L"ByLayer"},
    {KdReservedName::byBlock, L"ByBlock"},
    {KdReservedName::continuous, L"Continuous"},
};

bool isSameText(const std::wstring& a, const std::wstring& b) {
  return kdutEqualsIgnoringCase(a.c_str(), b.c_str());
}

CStdStr<wchar_t> textOf(unsigned id) {
  CStdStr<wchar_t> text;
  text.LoadStringW(AfxGetResourceHandle(), id);
  return text;
}

/// The name of a linetype as the user sees it; null is by layer.
std::wstring linetypeName(KdDbObjectId id) {
  const COpenedObject<KdDbLinetypeTableRecord> linetype(id, KdOpenMode::forRead);
  const std::wstring name = linetype ? linetype->name() : L"ByLayer";
  for (const auto& reserved : kReservedNames) {
    if (isSameText(name, reserved.inDrawings)) return kddbReservedString(reserved.name);
  }
  return name;
}

/// The linetype that an element gets for the name in its row: by layer, by block, for all others the continuous one.
std::wstring storedLinetype(const std::wstring& shown) {
  if (isSameText(shown, kddbReservedString(KdReservedName::byLayer))) return L"ByLayer";
  if (isSameText(shown, kddbReservedString(KdReservedName::byBlock))) return L"ByBlock";
  const std::wstring continuous = kddbReservedString(KdReservedName::continuous);
  return isSameText(shown, continuous) ? continuous : L"Continuous";
}

double numberOf(const std::wstring& text) {
  double value = 0;
  gx_strIsValidReal(text.c_str(), true, false, &value);
  return value;
}

std::wstring offsetText(double offset) {
  wchar_t text[kNumberCapacity] = L"0";
  static_cast<void>(kddbRToS(offset, kKdDecimal, kOffsetPrecision, text, kNumberCapacity));
  return text;
}

CStdStr<wchar_t> angleText(double angleRad) {
  wchar_t text[kNumberCapacity] = L"";
  static_cast<void>(kddbAngToS(angleRad, kKdDegrees, kAnglePrecision, text, kNumberCapacity));
  return text;
}

/// A fill is of a plain color: of any other the index nearest to it, deliberately.
KdCmColor fillColorOf(const KdCmColor& chosen) {
  KdCmColor color;
  color.setColorIndex(chosen.colorIndex());
  return color;
}

}  // namespace

CMlstyleNewModDlg::CMlstyleNewModDlg(CWnd* parent)
    : CDialog(kTemplateId),
      m_widget(new KVUI::CMlstyleNewModDlg(this, parent ? parent->GetWidget() : nullptr)),
      m_previewer(dynamic_cast<CStylePreviewer*>(parent)),
      m_workingCopy(std::make_unique<KdDbMlineStyle>()) {
  SetDialogWidget(m_widget);
}

bool CMlstyleNewModDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  SetcurentStyle(m_sourceName);
  InitialDialog();
  OnCreate();
  if (m_mode == EStyleEdit::newStyle) CreateStyle();
  if (!CopyStyle()) {
    MessageBeep();
    OnCancel();
    return false;
  }
  RestorePosition(*this, kPositionPrefix);
  ShowHostIcon(*this);
  ShowWorkingCopy();
  return true;
}

void CMlstyleNewModDlg::SetcurentStyle(const CStdStr<wchar_t>& name) {
  m_style.setNull();
  const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forRead);
  if (styles) styles->getAt(name, m_style);
}

void CMlstyleNewModDlg::InitialDialog() {
  SetControlState(false);
  const COpenedObject<KdDbMlineStyle> style(m_style, KdOpenMode::forRead);
  if (!style) return;
  m_description = style->description();
  ShowFlags(*style.Get());
  if (!m_fillColor.SelectColor(style->fillColor())) m_fillColor.AddRecentColor(style->fillColor());
  ShowAngles(*style.Get());
  AddColumns();
  AddRows(*style.Get());
  m_offsetEdit.SetWindowTextW(kNoOffset);
  m_elements.Sort(kOffsetColumn, true);
  UpdateData(false);
}

void CMlstyleNewModDlg::ShowFlags(const KdDbMlineStyle& style) {
  for (const auto& box : kCheckBoxes) CheckDlgButton(box.id, (style.*box.isOn)());
  m_fillColor.EnableWindow(style.filled());
}

void CMlstyleNewModDlg::ShowAngles(const KdDbMlineStyle& style) {
  const CVariableSetting zeros(kZeroSuppression, kKeepZeros);
  m_startAngle = angleText(style.startAngle());
  m_endAngle = angleText(style.endAngle());
}

void CMlstyleNewModDlg::AddColumns() {
  m_widget->ArrangeGroups();
  m_elements.SetExtendedStyle(LVS_EX_FULLROWSELECT);
  const std::wstring width = std::to_wstring(m_elements.GetClientRect().Width() / kColumnCount);
  std::wstring headings;
  for (const unsigned id : {kOffsetHeading, kLinetypeHeading, kColorHeading}) {
    headings += textOf(id) + L"," + width + L";";
  }
  m_elements.SetHeadings(headings);
  m_elements.LoadColumnInfo();
}

void CMlstyleNewModDlg::AddRows(const KdDbMlineStyle& style) {
  const CVariableSetting zeros(kZeroSuppression, kDropTrailingZeros);
  for (int i = 0; i < style.numElements(); ++i) {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId linetype;
    if (style.getElementAt(i, offset, color, linetype) != KdStatus::ok) continue;
    AddRow(offsetText(offset).c_str(), linetypeName(linetype), color);
  }
}

int CMlstyleNewModDlg::AddRow(const wchar_t* offset, const std::wstring& linetype, const KdCmColor& color) {
  const CStdStr<wchar_t> colorName = CKdUiTrueColorComboBox::NameOf(color);
  const int row = m_elements.AddItem(offset, linetype.c_str(), colorName.c_str());
  m_colors.push_back(std::make_unique<KdCmColor>(color));
  m_elements.SetItemData(row, reinterpret_cast<unsigned long>(m_colors.back().get()));
  return row;
}

KdCmColor* CMlstyleNewModDlg::ColorOf(int row) const {
  return reinterpret_cast<KdCmColor*>(m_elements.GetItemData(row));
}

void CMlstyleNewModDlg::OnCreate() {
  const CStdStr<wchar_t> title =
      m_mode == EStyleEdit::modify ? textOf(kModifyTitle) + m_sourceName : textOf(kNewTitle) + m_newName;
  SetWindowTextW(title.c_str());
}

void CMlstyleNewModDlg::CreateStyle() {
  const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forWrite);
  const COpenedObject<KdDbMlineStyle> source(m_style, KdOpenMode::forRead);
  m_style.setNull();
  if (!styles || !source || styles->has(m_newName)) return;
  auto style = std::make_unique<KdDbMlineStyle>();
  style->initMlineStyle();
  style->set(*source.Get());
  style->setName(m_newName);
  if (styles->setAt(m_newName, style.get(), m_style) == KdStatus::ok) style.release()->close();
}

bool CMlstyleNewModDlg::CopyStyle() {
  const COpenedObject<KdDbMlineStyle> style(m_style, KdOpenMode::forRead);
  if (!style) return false;
  m_workingCopy->initMlineStyle();
  m_workingCopy->set(*style.Get());
  return true;
}

void CMlstyleNewModDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Control(exchange, kFillColor, m_fillColor);
  DDX_Control(exchange, kElementColor, m_elementColor);
  DDX_Control(exchange, kElements, m_elements);
  DDX_Control(exchange, kLinetype, m_linetype);
  DDX_Control(exchange, kOffset, m_offsetEdit);
  DDX_Control(exchange, kStartAngle, m_startAngleEdit);
  DDX_Control(exchange, kEndAngle, m_endAngleEdit);
  DDX_Text(exchange, kDescription, m_description);
  DDX_Text(exchange, kStartAngle, m_startAngle);
  DDV_RealAng(exchange, m_startAngle);
  DDX_Text(exchange, kEndAngle, m_endAngle);
  DDV_RealAng(exchange, m_endAngle);
  exchange->PrepareEditCtrl(kOffset);
  DDV_RealOffset(exchange, m_offsetEdit.GetWindowTextW());
}

void CMlstyleNewModDlg::DDV_RealOffset(CDataExchange* exchange, const CStdStr<wchar_t>& offset) const {
  if (!exchange->m_bSaveAndValidate || exchange->HasFailed()) return;
  if (gx_strIsValidReal(offset.c_str(), true, false, nullptr)) return;
  MessageBeep();
  exchange->Fail();
}

void CMlstyleNewModDlg::DDV_RealAng(CDataExchange* exchange, const CStdStr<wchar_t>& angle) const {
  if (!exchange->m_bSaveAndValidate || exchange->HasFailed()) return;
  if (gx_strIsValidReal(angle.c_str(), true, false, nullptr) && ValidateAng(angle)) return;
  MessageBeep();
  exchange->Fail();
}

bool CMlstyleNewModDlg::ValidateAng(const CStdStr<wchar_t>& angle) const {
  const double degrees = numberOf(angle);
  return degrees >= kLeastAngleDeg && degrees <= kMostAngleDeg;
}

void CMlstyleNewModDlg::SetControlState(bool hasElement) {
  m_linetype.EnableWindow(hasElement);
  m_offsetEdit.EnableWindow(hasElement);
  m_elementColor.EnableWindow(hasElement);
  GetDlgItem(kDelete)->EnableWindow(hasElement && m_elements.GetItemCount() != 1);
}

bool CMlstyleNewModDlg::IsOffsetRefused() const {
  return m_shownColor && !gx_strIsValidReal(m_offsetEdit.GetWindowTextW().c_str(), true, false, nullptr);
}

int CMlstyleNewModDlg::RowOf(const KdCmColor* color) const {
  for (int row = 0; row < m_elements.GetItemCount(); ++row) {
    if (ColorOf(row) == color) return row;
  }
  return -1;
}

void CMlstyleNewModDlg::OnClickList() {
  // Else the row would be left with what was a number on the way.
  if (IsOffsetRefused()) return m_elements.SelectItem(RowOf(m_shownColor));
  const int row = m_elements.GetSelectedItem();
  m_shownColor = ColorOf(row);
  SetControlState(row >= 0);
  if (row < 0) return m_offsetEdit.SetWindowTextW(kNoOffset);
  m_offsetEdit.SetWindowTextW(m_elements.GetItemText(row, kOffsetColumn).c_str());
  m_linetype.SelectString(-1, m_elements.GetItemText(row, kLinetypeColumn).c_str());
  const CStdStr<wchar_t> colorName = m_elements.GetItemText(row, kColorColumn);
  const int entry = m_elementColor.FindStringExact(-1, colorName.c_str());
  if (entry >= 0) {
    m_elementColor.SetCurSel(entry);
  } else if (const KdCmColor* color = ColorOf(row)) {
    m_elementColor.AddRecentColor(*color);
  }
}

void CMlstyleNewModDlg::OnAddElement() {
  if (IsOffsetRefused()) return m_offsetEdit.SetFocus();
  if (m_workingCopy->numElements() == kMostElements) {
    MessageBoxW(textOf(kTooManyElements).c_str(), L"");
    return;
  }
  const int row = AddRow(L"0", kddbReservedString(KdReservedName::byLayer), KdCmColor());
  m_elements.SetFocus();
  m_elements.SelectItem(row);
  SetControlState(true);
  OnClickList();
  SortElements();
}

void CMlstyleNewModDlg::OnDelElement() {
  const int row = m_elements.GetSelectedItem();
  if (row < 0) return;
  m_shownColor = nullptr;
  m_elements.SetFocus();
  std::erase_if(m_colors, [color = ColorOf(row)](const auto& owned) { return owned.get() == color; });
  m_elements.DeleteItem(row);
  OnClickList();
  TakeElements();
}

void CMlstyleNewModDlg::OnEnterOffset() {
  const int row = m_elements.GetSelectedItem();
  const CStdStr<wchar_t> offset = m_offsetEdit.GetWindowTextW();
  if (!gx_strIsValidReal(offset.c_str(), true, false, nullptr)) return;
  if (row >= 0) m_elements.SetItemText(row, kOffsetColumn, offset.c_str());
}

bool CMlstyleNewModDlg::TakeFields() {
  if (m_isTakingFields || !IsWindowVisible()) return false;
  m_isTakingFields = true;
  const bool isWell = UpdateData(true);
  m_isTakingFields = false;
  return isWell;
}

void CMlstyleNewModDlg::OnOffsetKillfocus() {
  if (!TakeFields()) return;
  m_isSortDue = true;
  // The row that the list is pressed at has to stay under the mouse.
  if (!m_widget->IsListPressed()) SortElements();
}

void CMlstyleNewModDlg::OnListReleased() {
  if (m_isSortDue && !m_widget->IsListPressed()) SortElements();
}

void CMlstyleNewModDlg::SortElements() {
  m_isSortDue = false;
  m_elements.Sort(kOffsetColumn, true);
  TakeElements();
}

void CMlstyleNewModDlg::OnAngKillfocus() {
  if (!TakeFields()) return;
  if (!ValidateAng(m_startAngle) || !ValidateAng(m_endAngle)) return;
  SetAnger(m_workingCopy.get());
  ShowWorkingCopy();
}

void CMlstyleNewModDlg::OnselchgElecol() {
  const int row = m_elements.GetSelectedItem();
  KdCmColor* color = ColorOf(row);
  if (!color) return;
  *color = m_elementColor.GetColor();
  m_elements.SetItemText(row, kColorColumn, CKdUiTrueColorComboBox::NameOf(*color).c_str());
  TakeElements();
}

void CMlstyleNewModDlg::OnselchgFillcol() {
  m_workingCopy->setFillColor(fillColorOf(m_fillColor.GetColor()));
  ShowWorkingCopy();
}

void CMlstyleNewModDlg::OnLtypeSelChange() {
  const int row = m_elements.GetSelectedItem();
  if (row < 0) return;
  m_elements.SetItemText(row, kLinetypeColumn, m_linetype.GetWindowTextW().c_str());
  TakeElements();
}

void CMlstyleNewModDlg::OnOpenCloseFill() {
  m_fillColor.EnableWindow(IsDlgButtonChecked(kFill));
}

bool CMlstyleNewModDlg::OnCommand(int id, unsigned code) {
  const auto isIt = [id](const auto& box) { return box.id == id; };
  if (code == BN_CLICKED && std::any_of(std::begin(kCheckBoxes), std::end(kCheckBoxes), isIt)) {
    SetFlag(m_workingCopy.get(), GetFlag70());
    ShowWorkingCopy();
  }
  return CDialog::OnCommand(id, code);
}

int CMlstyleNewModDlg::GetFlag70() {
  int flags = 0;
  for (const auto& box : kCheckBoxes) {
    if (IsDlgButtonChecked(box.id)) flags |= box.flag;
  }
  return flags;
}

void CMlstyleNewModDlg::SetElementData(KdDbMlineStyle* style) {
  std::vector<double> offsets;
  std::vector<std::wstring> linetypes;
  std::vector<int> indices;
  std::vector<unsigned> rgbs;
  std::vector<const wchar_t*> linetypeNames, bookKeys;
  const int count = m_elements.GetItemCount();
  for (int row = 0; row < count; ++row) {
    const KdCmColor& color = *ColorOf(row);
    offsets.push_back(numberOf(m_elements.GetItemText(row, kOffsetColumn)));
    linetypes.push_back(storedLinetype(m_elements.GetItemText(row, kLinetypeColumn)));
    indices.push_back(color.colorIndex());
    rgbs.push_back(color.isTrueColor() ? color.rgb() : kNoRgb);
    bookKeys.push_back(color.dictionaryKey().c_str());
  }
  for (const std::wstring& name : linetypes) linetypeNames.push_back(name.c_str());
  SetNumElements(style, count);
  SetElemLtype(style, linetypeNames.data(), count, kddbWorkingDatabase());
  SetElemOffset(style, offsets.data(), count);
  SetElemColor(style, indices.data(), count);
  SetElemRgb(style, rgbs.data(), count);
  SetElemName(style, bookKeys.data(), count);
}

void CMlstyleNewModDlg::SetAnger(KdDbMlineStyle* style) const {
  double start = style->startAngle(), end = style->endAngle();
  static_cast<void>(kddbAngToF(m_startAngle.c_str(), kKdDegrees, &start));
  static_cast<void>(kddbAngToF(m_endAngle.c_str(), kKdDegrees, &end));
  style->setStartAngle(start);
  style->setEndAngle(end);
}

void CMlstyleNewModDlg::TakeElements() {
  SetElementData(m_workingCopy.get());
  ShowWorkingCopy();
}

void CMlstyleNewModDlg::ShowWorkingCopy() {
  if (m_previewer) m_previewer->PaintPreview(m_workingCopy.get());
  m_widget->ShowPreview(*m_workingCopy);
}

void CMlstyleNewModDlg::OnOK() {
  if (!UpdateData(true) || !ValidateAng(m_startAngle) || !ValidateAng(m_endAngle)) return;
  // Whatever column the user sorted by: elements are stored by their offsets.
  m_elements.Sort(kOffsetColumn, true);
  ModifyStyle();
  KeepPosition(*this, kPositionPrefix);
  EndDialog(IDOK);
}

void CMlstyleNewModDlg::ModifyStyle() {
  const int flags = GetFlag70();
  const COpenedObject<KdDbMlineStyle> style(m_style, KdOpenMode::forWrite);
  if (!style) return;
  SetFlag(style.Get(), flags);
  style->setDescription(m_description);
  style->setFillColor(fillColorOf(m_fillColor.GetColor()));
  SetElementData(style.Get());
  SetAnger(style.Get());
}

void CMlstyleNewModDlg::OnCancel() {
  if (m_mode == EStyleEdit::newStyle && !m_style.isNull()) {
    const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forWrite);
    if (styles) styles->remove(m_newName);
  }
  CDialog::OnCancel();
}

void CMlstyleNewModDlg::OnDestroy() {
  m_shownColor = nullptr;
  m_colors.clear();
  CDialog::OnDestroy();
}

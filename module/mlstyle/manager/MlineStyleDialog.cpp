#include "mlstyle/manager/MlineStyleDialog.h"

#include <algorithm>

#include "mlstyle/OpenedObject.h"
#include "mlstyle/editor/MlstyleNewModDlg.h"
#include "mlstyle/library/library_lines.h"
#include "mlstyle/library/style_library.h"
#include "mlstyle/load/LibraryFolder.h"
#include "mlstyle/load/MlStyleLoadDlg.h"
#include "mlstyle/manager/MlineStyleWidget.h"
#include "mlstyle/names/MlstyleNewDlg.h"
#include "mlstyle/names/MlstyleRenameDlg.h"
#include "mlstyle/names/StyleNames.h"
#include "mlstyle/preview/StylePreview.h"
#include "mlstyle/usage.h"
#include "ui/DialogPosition.h"

#include <kdrx/db_database.h>
#include <kdrx/ed.h>

namespace {

constexpr unsigned kTemplateId = 101;
constexpr const wchar_t* kPositionPrefix = L"Mlstyle";
constexpr const wchar_t* kStyleDictionary = L"ACAD_MLINESTYLE";
constexpr const wchar_t* kCurrentStyle = L"CMLSTYLE";
constexpr const wchar_t* kStandard = L"STANDARD";

enum ControlId : int {
  kStyles = 1021,
  kCurrent = 1022,
  kDescriptionCaption = 1023,
  kDescription = 1024,
  kPreview = 1025,
  kSetCurrent = 1026,
  kNew = 1028,
  kModify = 1029,
  kRename = 1030,
  kDelete = 1031,
  kLoad = 1032,
  kSave = 1033,
};

enum TextId : unsigned { kDeleteQuestion = 13, kSaveTitle = 15 };

/// The controls and the sides that they are anchored to.
constexpr std::pair<int, unsigned> kAnchors[] = {
    {IDOK, 10}, {kStyles, 3}, {kSetCurrent, 6},         {kNew, 6},         {kModify, 6},   {kRename, 6}, {kDelete, 6},
    {kLoad, 6}, {kSave, 6},   {kDescriptionCaption, 3}, {kDescription, 3}, {kPreview, 15},
};

/// The first entity name of a chain of results; false when there is none.
bool takeName(const KdResbuf* chain, KdName name) {
  for (; chain; chain = chain->next) {
    if (chain->restype != kKdResultName) continue;
    std::copy_n(chain->value.name, 2, name);
    return true;
  }
  return false;
}

/// Looks a key up in a dictionary. @return false when it is not there; `name` and `id` are unchanged then
bool findInDictionary(const KdName dictionary, const wchar_t* key, KdName name, KdDbObjectId& id) {
  KdResbuf* entry = nullptr;
  if (kddbDictSearch(dictionary, key, &entry) != kKdInputNormal) return false;
  const bool isFound = takeName(entry, name);
  kdutRelRb(entry);
  return isFound && kddbGetObjectId(id, name) == KdStatus::ok;
}

KdDbObjectId styleIn(const KdDbDictionary& styles, const std::wstring& name) {
  KdDbObjectId id;
  styles.getAt(name, id);
  return id;
}

CStdStr<wchar_t> currentStyle() {
  KdResbuf value;
  if (kdedGetVar(kCurrentStyle, &value) != kKdInputNormal || value.restype != kKdResultString) return {};
  const CStdStr<wchar_t> name(value.value.string);
  kdutDelString(value.value.string);
  return name;
}

}  // namespace

CMlineStyleDialog::CMlineStyleDialog(CWnd* parent) : CDialog(kTemplateId) {
  SetDialogWidget(new KVUI::CMlineStyleDialog(this, parent ? parent->GetWidget() : nullptr));
}

bool CMlineStyleDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  ShowHostIcon(*this);
  const bool hasDictionaries = FindDictionary();
  // Where the drawing has no place for styles none can be made.
  for (const int id : {kNew, kLoad}) GetDlgItem(id)->EnableWindow(!m_dictionary.isNull());
  AllowOperations({});
  if (!hasDictionaries) return false;
  m_currentName = currentStyle();
  ShowCurrentName(m_currentName);
  AddStylesToList();
  m_styles.SelectString(-1, m_currentName.c_str());
  m_preview.ModifyStyle(0, SS_BITMAP | SS_CENTERIMAGE);
  for (const auto& [id, anchors] : kAnchors) m_resizer.Add(this, id, anchors);
  RestorePosition(*this, kPositionPrefix);
  m_resizer.Resize(this);
  OnListSelChange();
  return true;
}

/// False when the drawing has no dictionaries at all.
bool CMlineStyleDialog::FindDictionary() {
  KdName root;
  if (kddbNamedObjDict(root) != kKdInputNormal) return false;
  findInDictionary(root, kStyleDictionary, m_dictionaryName, m_dictionary);
  return true;
}

void CMlineStyleDialog::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Control(exchange, kStyles, m_styles);
  DDX_Control(exchange, kPreview, m_preview);
}

void CMlineStyleDialog::AddStylesToList() {
  const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forRead);
  if (!styles) return;
  for (const auto entry = styles->newIterator(); !entry->done(); entry->next()) {
    std::wstring name;
    if (styles->nameAt(entry->objectId(), name) == KdStatus::ok) m_styles.AddString(name.c_str());
  }
}

CStdStr<wchar_t> CMlineStyleDialog::GetSelectedName() const {
  return m_styles.GetText(m_styles.GetCurSel());
}

void CMlineStyleDialog::ShowCurrentName(const CStdStr<wchar_t>& name) {
  GetDlgItem(kCurrent)->SetWindowTextW(name.c_str());
}

void CMlineStyleDialog::SelectStyle(const CStdStr<wchar_t>& name) {
  m_styles.SelectString(-1, name.c_str());
  OnListSelChange();
}

void CMlineStyleDialog::AllowOperations(const CStdStr<wchar_t>& name) {
  const bool isSelected = m_styles.GetCurSel() >= 0;
  const bool isCurrent = kdutEqualsIgnoringCase(name.c_str(), m_currentName.c_str());
  const bool isUsed = isSelected && isStyleUsed(kddbWorkingDatabase(), name.c_str());
  GetDlgItem(kSetCurrent)->EnableWindow(isSelected && !isCurrent);
  GetDlgItem(kModify)->EnableWindow(isSelected && !isUsed);
  GetDlgItem(kRename)->EnableWindow(isSelected && !isUsed && !kdutEqualsIgnoringCase(name.c_str(), kStandard));
  // STANDARD may be chosen here; that it is not deleted is OnDeleteStyle()'s matter.
  GetDlgItem(kDelete)->EnableWindow(isSelected && !isUsed && !isCurrent);
  GetDlgItem(kSave)->EnableWindow(isSelected);
}

void CMlineStyleDialog::OnListSelChange() {
  const CStdStr<wchar_t> name = GetSelectedName();
  AllowOperations(name);
  ShowDescription(name);
  DrawCurStylePreview();
}

void CMlineStyleDialog::ShowDescription(const CStdStr<wchar_t>& name) {
  KdDbObjectId id;
  if (const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forRead); styles)
    id = styleIn(*styles.Get(), name);
  const COpenedObject<KdDbMlineStyle> style(id, KdOpenMode::forRead);
  GetDlgItem(kDescription)->SetWindowTextW(style ? style->description().c_str() : L"");
}

void CMlineStyleDialog::SetCurStyle(CStdStr<wchar_t> name) {
  KdResbuf value;
  value.restype = kKdResultString;
  if (kdutNewString(name.c_str(), &value.value.string) != kKdInputNormal) return;
  const int status = kdedSetVar(kCurrentStyle, &value);
  kdutDelString(value.value.string);
  if (status != kKdInputNormal) return;
  kddbNextUndoStep();
  ShowCurrentName(name);
  GetDlgItem(kSetCurrent)->EnableWindow(false);
  m_currentName = name;
  OnListSelChange();
}

void CMlineStyleDialog::OnSetCurStyle() {
  SetCurStyle(GetSelectedName());
  // The button that was pressed is disabled now and would leave the keyboard nowhere.
  GetDlgItem(kNew)->SetFocus();
}

void CMlineStyleDialog::OnListDbClick() {
  const CStdStr<wchar_t> name = GetSelectedName();
  // Letters that differ in case alone make another name here, deliberately: so the drawing gets the style's own spelling.
  if (name != m_currentName) SetCurStyle(name);
}

void CMlineStyleDialog::OnAddStyle() {
  CMlstyleNewDlg dialog(this);
  dialog.SetStartWith(GetSelectedName());
  dialog.SetDictionary(m_dictionary);
  if (dialog.DoModal() != IDOK) return;
  CMlstyleNewModDlg editor(this);
  editor.SetMode(EStyleEdit::newStyle);
  editor.SetSourceName(dialog.GetStartWith());
  editor.SetNewName(dialog.GetNewName());
  editor.SetDictionary(m_dictionary);
  if (editor.DoModal() != IDOK || !HasStyleName(m_dictionary, dialog.GetNewName())) return DrawCurStylePreview();
  kddbNextUndoStep();
  m_styles.AddString(dialog.GetNewName().c_str());
  SelectStyle(dialog.GetNewName());
}

void CMlineStyleDialog::OnModifyStyle() {
  CMlstyleNewModDlg editor(this);
  editor.SetMode(EStyleEdit::modify);
  editor.SetSourceName(GetSelectedName());
  editor.SetDictionary(m_dictionary);
  if (editor.DoModal() != IDOK) return DrawCurStylePreview();
  kddbNextUndoStep();
  OnListSelChange();
}

void CMlineStyleDialog::OnRenameStyle() {
  if (m_styles.GetCurSel() < 0) return;
  CMlstyleRenameDlg dialog(this);
  dialog.SetOldName(GetSelectedName());
  dialog.SetDictionary(m_dictionary);
  if (dialog.DoModal() != IDOK) return;
  const CStdStr<wchar_t>& newName = dialog.GetNewName();
  if (m_styles.FindStringExact(-1, newName.c_str()) >= 0 || !RenameStyle(GetSelectedName(), newName)) return;
  kddbNextUndoStep();
  m_styles.DeleteString(m_styles.GetCurSel());
  m_styles.AddString(newName.c_str());
  // What is shown as current follows the style that was renamed, whether or not it is the drawing's current one, and
  // CMLSTYLE keeps the name that it has. Deliberate.
  m_currentName = newName;
  ShowCurrentName(newName);
  SelectStyle(newName);
}

bool CMlineStyleDialog::RenameStyle(const CStdStr<wchar_t>& oldName, const CStdStr<wchar_t>& newName) {
  const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forWrite);
  if (!styles) return false;
  const COpenedObject<KdDbMlineStyle> style(styleIn(*styles.Get(), oldName), KdOpenMode::forWrite);
  // First the step that the drawing may refuse.
  return style && styles->setName(oldName, newName) == KdStatus::ok && style->setName(newName) == KdStatus::ok;
}

void CMlineStyleDialog::OnDeleteStyle() {
  const int row = m_styles.GetCurSel();
  const CStdStr<wchar_t> name = GetSelectedName();
  if (row < 0 || kdutEqualsIgnoringCase(name.c_str(), kStandard)) return;
  CStdStr<wchar_t> question;
  question.LoadStringW(AfxGetResourceHandle(), kDeleteQuestion);
  question += L'"' + name + L"\"?";
  if (MessageBoxW(question.c_str(), L"TORVA", MB_YESNO | MB_ICONQUESTION) != IDYES || !RemoveStyle(name)) return;
  kddbNextUndoStep();
  m_styles.DeleteString(row);
  m_styles.SetCurSel(std::max(row - 1, 0));
  m_styles.SetFocus();
  OnListSelChange();
}

bool CMlineStyleDialog::RemoveStyle(const CStdStr<wchar_t>& name) {
  const COpenedObject<KdDbDictionary> styles(m_dictionary, KdOpenMode::forWrite);
  if (!styles) return false;
  if (!COpenedObject<KdDbMlineStyle>(styleIn(*styles.Get(), name), KdOpenMode::forRead)) return false;
  return styles->remove(name) == KdStatus::ok;
}

void CMlineStyleDialog::OnLoadStyle() {
  CMlStyleLoadDlg dialog(this);
  dialog.SetDictionary(m_dictionary);
  if (dialog.DoModal() == IDOK && HasStyleName(m_dictionary, dialog.GetChosenName())) {
    kddbNextUndoStep();
    const wchar_t* name = dialog.GetChosenName().c_str();
    if (m_styles.FindStringExact(-1, name) < 0) m_styles.AddString(name);
  }
  // Also after a cancelled dialog, deliberately.
  const int standard = m_styles.FindStringExact(-1, kStandard);
  if (standard < 0) return;
  m_styles.SetCurSel(standard);
  OnListSelChange();
}

void CMlineStyleDialog::OnSaveStyle() {
  CStdStr<wchar_t> title;
  title.LoadStringW(AfxGetResourceHandle(), kSaveTitle);
  KdResbuf file;
  constexpr int kFlags = kKdFileToWrite | kKdFileNoTypedEntry;
  if (kdedGetFileD(title.c_str(), LibraryFolder().c_str(), L"mln", kFlags, &file) != kKdInputNormal) return;
  saveToLibrary(file.value.string, GetSelectedName(), m_dictionary);
  kdutDelString(file.value.string);
}

void CMlineStyleDialog::DrawCurStylePreview() {
  KdName name;
  KdDbObjectId id;
  if (!findInDictionary(m_dictionaryName, GetSelectedName().c_str(), name, id)) return;
  if (const COpenedObject<KdDbMlineStyle> style(id, KdOpenMode::forRead); style) PaintPreview(style.Get());
}

void CMlineStyleDialog::PaintPreview(KdDbMlineStyle* style) {
  if (!style) return;
  const tagRECT area = m_preview.GetClientRect();
  const double pixelRatio = GetWidget() ? GetWidget()->devicePixelRatioF() : 1;
  m_preview.SetBitmap(stylePicture(*style, QSize(area.Width(), area.Height()), pixelRatio).toImage());
}

bool CMlineStyleDialog::IsContainStr(const std::wstring& line, const wchar_t* text) const {
  return isLine(line, text);
}

void CMlineStyleDialog::OnOK() {
  KeepPosition(*this, kPositionPrefix);
  CDialog::OnOK();
}

void CMlineStyleDialog::OnSize(unsigned type, int clientWidth, int clientHeight) {
  CDialog::OnSize(type, clientWidth, clientHeight);
  if (IsWindowVisible()) m_resizer.Resize(this);
}

void CMlineStyleDialog::OnSizing(unsigned edge, tagRECT* proposed) {
  CDialog::OnSizing(edge, proposed);
  m_resizer.OnSizing(this, proposed);
  DrawCurStylePreview();
}

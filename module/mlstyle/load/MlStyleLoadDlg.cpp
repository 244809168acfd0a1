#include "mlstyle/load/MlStyleLoadDlg.h"

#include "mlstyle/library/style_library.h"
#include "mlstyle/load/LibraryFolder.h"
#include "mlstyle/load/MlStyleLoadWidget.h"
#include "mlstyle/usage.h"
#include "ui/DialogPosition.h"

#include <kdrx/app.h>
#include <kdrx/db_database.h>
#include <kdrx/ed.h>

namespace {

constexpr unsigned kTemplateId = 108;
constexpr const wchar_t* kPositionPrefix = L"MlstyleLoadDlg";
constexpr const wchar_t* kSection = L"Settings";
constexpr const wchar_t* kFileKey = L"MlstyleFile";
constexpr const wchar_t* kDefaultLibrary = L"TORVA.mln";
constexpr int kFileLabel = 1057, kStyles = 1058, kStatus = 1064;
constexpr int kFileFlags = 64;
enum TextId : unsigned { kStyleIsUsed = 16, kFileTitle = 26 };
constexpr unsigned long kEnter = 13, kSpace = 32;

CStdStr<wchar_t> textOr(unsigned id, const wchar_t* otherwise) {
  CStdStr<wchar_t> text;
  return text.LoadStringW(AfxGetResourceHandle(), id) ? text : CStdStr<wchar_t>(otherwise);
}

}  // namespace

CMlStyleLoadDlg::CMlStyleLoadDlg(CWnd* parent) : CDialog(kTemplateId) {
  SetDialogWidget(new KVUI::CMlStyleLoadDlg(this, parent ? parent->GetWidget() : nullptr));
}

bool CMlStyleLoadDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  GetDlgItem(kStatus)->SetWindowTextW(L"");
  const CStdStr<wchar_t> file = kdrxGetProfileString(kSection, kFileKey);
  GetDlgItem(kFileLabel)->SetWindowTextW(file.empty() ? kDefaultLibrary : file.c_str());
  SetListStyleName(file.empty() ? CStdStr<wchar_t>(LibraryFolder() + kDefaultLibrary) : file);
  RestorePosition(*this, kPositionPrefix);
  GetDlgItem(IDOK)->EnableWindow(false);
  return true;
}

void CMlStyleLoadDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Control(exchange, kStyles, m_styles);
}

bool CMlStyleLoadDlg::PreTranslateMessage(tagMSG* message) {
  if (message->wParam != kEnter && message->wParam != kSpace) return CDialog::PreTranslateMessage(message);
  if (message->message == kFirstKeyMessage) PressDefaultButton();
  return true;
}

void CMlStyleLoadDlg::OnLoadFileStyle() {
  KdResbuf file;
  const CStdStr<wchar_t> title = textOr(kFileTitle, L"Load Multiline Style From File");
  const CStdStr<wchar_t> start = LibraryFolder() + kDefaultLibrary;
  if (kdedGetFileD(title.c_str(), start.c_str(), L"mln", kFileFlags, &file) != kKdInputNormal) return;
  const CStdStr<wchar_t> path(file.value.string);
  kdutDelString(file.value.string);
  SetListStyleName(path);
  kdrxWriteProfileString(kSection, kFileKey, path.c_str());
}

void CMlStyleLoadDlg::OnSelectChanged() {
  GetDlgItem(kStatus)->SetWindowTextW(L"");
  GetDlgItem(IDOK)->EnableWindow(m_styles.GetCurSel() >= 0);
}

void CMlStyleLoadDlg::OnDbClick() {
  OnOK();
}

void CMlStyleLoadDlg::OnOK() {
  if (m_styles.GetCurSel() < 0) return;
  m_chosenName = m_styles.GetText(m_styles.GetCurSel());
  if (isStyleUsed(kddbWorkingDatabase(), m_chosenName.c_str())) {
    GetDlgItem(kStatus)->SetWindowTextW(textOr(kStyleIsUsed, L"").c_str());
    return;
  }
  if (!m_chosenName.empty()) AddStyleToDrw();
  KeepPosition(*this, kPositionPrefix);
  CDialog::OnOK();
}

void CMlStyleLoadDlg::SetListStyleName(const CStdStr<wchar_t>& path) {
  const auto names = listLibrary(path);
  if (!names) return;
  m_styles.ResetContent();
  for (const std::wstring& name : *names) m_styles.AddString(name.c_str());
  GetDlgItem(kFileLabel)->SetWindowTextW(path.c_str());
  m_file = path;
  OnSelectChanged();
}

void CMlStyleLoadDlg::AddStyleToDrw() {
  m_style = addStyle(m_chosenName, m_dictionary);
  ModifyStyle();
}

void CMlStyleLoadDlg::ModifyStyle() {
  loadFromLibrary(m_file, m_chosenName, m_style);
}

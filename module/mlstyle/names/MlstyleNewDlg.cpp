#include "mlstyle/names/MlstyleNewDlg.h"

#include "mlstyle/names/MlstyleNewWidget.h"
#include "mlstyle/names/StyleNames.h"
#include "ui/DialogPosition.h"

namespace {

constexpr unsigned kTemplateId = 107;
constexpr const wchar_t* kPositionPrefix = L"MlstyleNew";
constexpr int kNameEdit = 1035, kStartWithBox = 1036;

}  // namespace

CMlstyleNewDlg::CMlstyleNewDlg(CWnd* parent) : CDialog(kTemplateId) {
  SetDialogWidget(new KVUI::CMlstyleNewDlg(this, parent ? parent->GetWidget() : nullptr));
  m_nameEdit.SetMaxWords(kLongestStyleName);
}

bool CMlstyleNewDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  AddStyleNameToCombo();
  UpdateData(false);
  ShowHostIcon(*this);
  RestorePosition(*this, kPositionPrefix);
  return true;
}

void CMlstyleNewDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Control(exchange, kStartWithBox, m_startWithBox);
  DDX_Control(exchange, kNameEdit, m_nameEdit);
  DDX_Text(exchange, kNameEdit, m_newName);
  DDX_Text(exchange, kStartWithBox, m_startWith);
}

void CMlstyleNewDlg::AddStyleNameToCombo() {
  AddStyleNames(m_startWithBox, m_dictionary);
}

void CMlstyleNewDlg::OnEnterName() {
  UpdateData(true);
  const bool isFree = m_startWithBox.FindStringExact(-1, m_newName.c_str()) < 0;
  GetDlgItem(IDOK)->EnableWindow(!m_newName.empty() && isFree && IsNewStyleName(m_newName));
}

void CMlstyleNewDlg::OnOK() {
  KeepPosition(*this, kPositionPrefix);
  CDialog::OnOK();
}

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
  AddStyleNames(m_startWithBox, m_dictionary, EStyleNames::ofStyles);
}

void CMlstyleNewDlg::OnEnterName() {
  UpdateData(true);
  const bool isFree = !HasStyleName(m_dictionary, m_newName);
  GetDlgItem(IDOK)->EnableWindow(!m_newName.empty() && isFree && IsNewStyleName(m_newName));
}

void CMlstyleNewDlg::OnOK() {
  KeepPosition(*this, kPositionPrefix);
  CDialog::OnOK();
}

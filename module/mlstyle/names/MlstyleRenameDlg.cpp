#include "mlstyle/names/MlstyleRenameDlg.h"

#include "mlstyle/names/MlstyleRenameWidget.h"
#include "mlstyle/names/StyleNames.h"
#include "ui/DialogPosition.h"

namespace {

constexpr unsigned kTemplateId = 109;
constexpr const wchar_t* kPositionPrefix = L"MlstyleRename";
constexpr int kOldNameLabel = 1059, kNameEdit = 1060, kNames = 1065;

}  // namespace

CMlstyleRenameDlg::CMlstyleRenameDlg(CWnd* parent) : CDialog(kTemplateId) {
  SetDialogWidget(new KVUI::CMlstyleRenameDlg(this, parent ? parent->GetWidget() : nullptr));
  m_nameEdit.SetMaxWords(kLongestStyleName);
}

bool CMlstyleRenameDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  AddStyleNames(m_names, m_dictionary, EStyleNames::all);
  m_names.SetCurSel(0);
  UpdateData(false);
  ShowHostIcon(*this);
  RestorePosition(*this, kPositionPrefix);
  return true;
}

void CMlstyleRenameDlg::DoDataExchange(CDataExchange* exchange) {
  CDialog::DoDataExchange(exchange);
  DDX_Control(exchange, kNames, m_names);
  DDX_Control(exchange, kNameEdit, m_nameEdit);
  DDX_Text(exchange, kOldNameLabel, m_oldName);
  DDX_Text(exchange, kNameEdit, m_newName);
}

void CMlstyleRenameDlg::OnEnterName() {
  UpdateData(true);
  const bool isFree = m_names.FindStringExact(-1, m_newName.c_str()) < 0;
  GetDlgItem(IDOK)->EnableWindow(!m_newName.empty() && isFree && IsRenamedStyleName(m_newName));
}

void CMlstyleRenameDlg::OnOK() {
  KeepPosition(*this, kPositionPrefix);
  CDialog::OnOK();
}

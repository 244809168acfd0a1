#include <kdrx/ui.h>

#include <QtWidgets/QLineEdit>

void CDataExchange::Fail() {
  m_hasFailed = true;
  if (!m_bSaveAndValidate) return;
  auto* edit = qobject_cast<QLineEdit*>(m_pDlgWnd->GetDlgItem(m_lastEditId)->GetWidget());
  if (!edit) return;
  edit->setFocus();
  edit->selectAll();
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
  if (control.GetWidget()) return;
  if (!control.SubclassDlgItem(static_cast<unsigned>(id), exchange->m_pDlgWnd)) exchange->Fail();
}

void DDX_Text(CDataExchange* exchange, int id, CStdStr<wchar_t>& text) {
  exchange->PrepareEditCtrl(id);
  CWnd* control = exchange->m_pDlgWnd->GetDlgItem(id);
  if (!control->GetWidget()) return exchange->Fail();
  if (exchange->m_bSaveAndValidate) {
    text = control->GetWindowTextW();
  } else {
    control->SetWindowTextW(text.c_str());
  }
}

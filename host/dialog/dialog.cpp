#include <kdrx/ui.h>

#include <QtCore/QVariant>
#include <QtWidgets/QApplication>

QBaseDialog::QBaseDialog(CDialog* logic, QWidget* parent)
    : QDialog(parent ? parent : QApplication::activeWindow()), m_logic(logic) {
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  // Else pictures are drawn at the size of a plain screen and blown up on a finer one.
  QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

QBaseDialog::~QBaseDialog() = default;

QWidget* QBaseDialog::GetControl(int id) const {
  for (QWidget* control : findChildren<QWidget*>()) {
    if (control->property("controlId") == id) return control;
  }
  return nullptr;
}

void QBaseDialog::accept() {
  m_logic ? m_logic->OnOK() : QDialog::accept();
}

void QBaseDialog::reject() {
  m_logic ? m_logic->OnCancel() : QDialog::reject();
}

CDialog::CDialog(unsigned templateId) : m_templateId(templateId) {}

CDialog::~CDialog() {
  // The widget may have gone with its parent.
  delete m_dialog.data();
}

int CDialog::DoModal() {
  if (!m_dialog) return -1;
  m_result = IDCANCEL;
  m_hasEnded = false;
  OnInitDialog();
  if (!m_hasEnded) m_dialog->exec();
  return m_result;
}

bool CDialog::OnInitDialog() {
  return UpdateData(false);
}

void CDialog::OnOK() {
  if (UpdateData(true)) EndDialog(IDOK);
}

void CDialog::OnCancel() {
  EndDialog(IDCANCEL);
}

void CDialog::EndDialog(int result) {
  m_result = result;
  m_hasEnded = true;
  if (m_dialog) m_dialog->done(result);
}

bool CDialog::UpdateData(bool saves) {
  CDataExchange exchange(this, saves);
  DoDataExchange(&exchange);
  return !exchange.HasFailed();
}

void CDialog::DoDataExchange(CDataExchange*) {}

void CDialog::SetDialogWidget(QBaseDialog* widget) {
  m_dialog = widget;
  Bind(widget);
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
  if (control.GetWidget()) return;
  if (!control.SubclassDlgItem(static_cast<unsigned>(id), exchange->m_pDlgWnd)) exchange->Fail();
}

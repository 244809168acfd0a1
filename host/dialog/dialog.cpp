#include "runtime/pictures.h"

#include <kdrx/rx.h>
#include <kdrx/ui.h>

#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QPushButton>

CDialog::CDialog(unsigned templateId) : m_templateId(templateId) {}

CDialog::~CDialog() {
  // The widget may have gone with its parent.
  delete m_dialog.data();
}

int CDialog::DoModal() {
  if (!m_dialog) return -1;
  m_result = IDCANCEL;
  m_hasEnded = false;
  m_dialog->Prepare();
  OnInitDialog();
  if (!m_hasEnded) m_dialog->exec();
  OnDestroy();
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

void CDialog::PressDefaultButton() {
  if (!m_dialog) return;
  for (auto* button : m_dialog->findChildren<QPushButton*>()) {
    if (button->isDefault()) return button->click();
  }
}

bool CDialog::UpdateData(bool saves) {
  CDataExchange exchange(this, saves);
  DoDataExchange(&exchange);
  return !exchange.HasFailed();
}

CWnd* CDialog::GetDlgItem(int id) {
  if (CWnd* bound = m_dialog ? FromWidget(m_dialog->GetControl(id)) : nullptr) return bound;
  std::unique_ptr<CWnd>& item = m_items[id];
  if (!item) item = std::make_unique<CWnd>();
  if (!item->GetWidget()) item->SubclassDlgItem(static_cast<unsigned>(id), this);
  return item.get();
}

void CDialog::CheckDlgButton(int id, bool isChecked) {
  if (auto* button = qobject_cast<QAbstractButton*>(GetDlgItem(id)->GetWidget())) button->setChecked(isChecked);
}

bool CDialog::IsDlgButtonChecked(int id) {
  const auto* button = qobject_cast<QAbstractButton*>(GetDlgItem(id)->GetWidget());
  return button && button->isChecked();
}

bool CDialog::SetIcon(const wchar_t* library, unsigned id) {
  const KdModuleHandle resources = loadResourceDll(library);
  const auto bytes = torva::runtime::pictureOf(resources, std::to_wstring(id));
  AfxFreeLibrary(resources);
  QPixmap picture;
  if (!m_dialog || !bytes || !picture.loadFromData(QByteArray::fromStdString(*bytes))) return false;
  m_dialog->setWindowIcon(picture);
  return true;
}

bool CDialog::PreTranslateMessage(tagMSG*) {
  return false;
}

bool CDialog::OnCommand(int, unsigned) {
  return false;
}

void CDialog::OnSizing(unsigned, tagRECT*) {}

void CDialog::OnSize(unsigned, int, int) {}

void CDialog::OnDestroy() {
  if (!m_dialog) return;
  for (QWidget* control : m_dialog->findChildren<QWidget*>()) {
    if (CWnd* object = FromWidget(control)) object->OnDestroy();
  }
}

void CDialog::DoDataExchange(CDataExchange*) {}

void CDialog::SetDialogWidget(QBaseDialog* widget) {
  m_dialog = widget;
  Bind(widget);
}

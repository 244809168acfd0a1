#include "dialog/message_service.h"

#include <kdrx/ui.h>

#include <QtCore/QVariant>

CWnd::~CWnd() = default;

int CWnd::GetDlgCtrlID() const {
  return m_widget ? m_widget->property("controlId").toInt() : 0;
}

bool CWnd::SubclassDlgItem(unsigned id, CWnd* parent) {
  const auto* dialog = parent ? dynamic_cast<QBaseDialog*>(parent->GetWidget()) : nullptr;
  QWidget* control = dialog && !m_widget ? dialog->GetControl(static_cast<int>(id)) : nullptr;
  if (!control) return false;
  Bind(control);
  PreSubclassWindow();
  return true;
}

int CWnd::MessageBoxW(const wchar_t* text, const wchar_t* caption, unsigned type) {
  return torva::dialog::showMessage(m_widget, text ? text : L"", caption ? caption : L"TORVA", type);
}

void CWnd::Bind(QWidget* widget) {
  m_widget = widget;
}

void MessageBeep(unsigned) noexcept {
  torva::dialog::beep();
}

#include "ui/EditLimited.h"

void CEditLimited::SetMaxWords(int characters) {
  if (characters > 0) m_maximum = characters;
  SetLimitText(m_maximum);
}

bool CEditLimited::OnChildNotify(unsigned code) {
  return m_swallowsNotifications || CEdit::OnChildNotify(code);
}

void CEditLimited::PreSubclassWindow() {
  SetLimitText(m_maximum);
}

#include "ui/DlgItemResizer.h"

namespace {

/// @param near, far the proposed edges of one direction
void keepSize(int least, int currentNear, int currentFar, int& near, int& far) {
  if (far - near >= least) return;
  const bool isNearDragged = far >= currentFar && near > currentNear;
  if (isNearDragged) {
    near = far - least;
  } else {
    near = currentNear;
    far = near + least;
  }
}

tagSIZE sizeOf(const tagRECT& rectangle) {
  return {rectangle.Width(), rectangle.Height()};
}

}  // namespace

void CDlgItemResizer::Add(CWnd* dialog, int id, unsigned flags) {
  if (auto* logic = dynamic_cast<CDialog*>(dialog)) Add(logic->GetDlgItem(id), flags);
}

void CDlgItemResizer::Add(CWnd* control, unsigned flags) {
  QWidget* widget = control ? control->GetWidget() : nullptr;
  const CWnd* dialog = widget ? CWnd::FromWidget(widget->window()) : nullptr;
  if (!dialog || flags == 0) return;
  if (m_clientSize == tagSIZE()) m_clientSize = sizeOf(dialog->GetClientRect());
  if (m_windowSize == tagSIZE()) m_windowSize = sizeOf(dialog->GetWindowRect());
  m_items.push_back({flags, widget, dialog->ScreenToClient(control->GetWindowRect())});
}

void CDlgItemResizer::SetGap(CWnd* first, CWnd* second, int gap, int type, int behaviour) {
  if (!first || !second || !first->GetWidget() || !second->GetWidget()) return;
  if (gap == -1) {
    const tagRECT from = first->GetWindowRect(), to = second->GetWindowRect();
    gap = type == 0 ? to.left - from.right : to.top - from.bottom;
  }
  m_gaps.push_back({first->GetWidget(), second->GetWidget(), gap, type, behaviour});
}

void CDlgItemResizer::OnSizing(CWnd* dialog, tagRECT* proposed) const {
  if (!dialog || !dialog->GetWidget()) return;
  const tagRECT current = dialog->GetWindowRect();
  keepSize(m_windowSize.cx, current.left, current.right, proposed->left, proposed->right);
  keepSize(m_windowSize.cy, current.top, current.bottom, proposed->top, proposed->bottom);
}

void CDlgItemResizer::SetInitial(tagSIZE size) {
  m_clientSize = m_windowSize = size;
}

void CDlgItemResizer::ClearData() {
  *this = {};
}

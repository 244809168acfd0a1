#include "mlstyle/editor/MlstyleNewModWidget.h"

#include "mlstyle/editor/MlstyleNewModDlg.h"
#include "mlstyle/preview/StylePreview.h"
#include "ui/LogicCall.h"
#include "ui_CMlstyleNewModDlg.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QGroupBox>

namespace KVUI {

CMlstyleNewModDlg::CMlstyleNewModDlg(CDialog* logic, QWidget* parent) : QBaseDialog(logic, parent) {
  Ui_CMlstyleNewModDlg layout;
  layout.setupUi(this);
  m_elements = layout.Elements;
  m_preview = layout.Preview;
}

void CMlstyleNewModDlg::ArrangeGroups() {
  for (QGroupBox* group : findChildren<QGroupBox*>()) group->layout()->activate();
}

bool CMlstyleNewModDlg::IsListPressed() const {
  return m_elements->hasFocus() && QApplication::mouseButtons() != Qt::NoButton;
}

bool CMlstyleNewModDlg::eventFilter(QObject* receiver, QEvent* event) {
  const bool isReleased = event->type() == QEvent::MouseButtonRelease && receiver == m_elements->viewport();
  if (isReleased) QMetaObject::invokeMethod(this, &CMlstyleNewModDlg::OnListReleased, Qt::QueuedConnection);
  return QBaseDialog::eventFilter(receiver, event);
}

void CMlstyleNewModDlg::OnListReleased() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnListReleased);
}

void CMlstyleNewModDlg::ShowPreview(const KdDbMlineStyle& style) {
  m_preview->setPixmap(stylePicture(style, m_preview->contentsRect().size(), devicePixelRatioF()));
}

void CMlstyleNewModDlg::OnOpenCloseFill() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnOpenCloseFill);
}

void CMlstyleNewModDlg::OnClickList() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnClickList);
}

void CMlstyleNewModDlg::OnAddElement() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnAddElement);
}

void CMlstyleNewModDlg::OnDelElement() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnDelElement);
}

void CMlstyleNewModDlg::OnOffsetKillfocus() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnOffsetKillfocus);
}

void CMlstyleNewModDlg::OnEnterOffset() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnEnterOffset);
}

void CMlstyleNewModDlg::OnAngKillfocus() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnAngKillfocus);
}

void CMlstyleNewModDlg::OnselchgElecol() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnselchgElecol);
}

void CMlstyleNewModDlg::OnselchgFillcol() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnselchgFillcol);
}

void CMlstyleNewModDlg::OnLtypeSelChange() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnLtypeSelChange);
}

void CMlstyleNewModDlg::OnOK() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnOK);
}

void CMlstyleNewModDlg::OnCancel() {
  CallLogic(*this, &::CMlstyleNewModDlg::OnCancel);
}

}  // namespace KVUI

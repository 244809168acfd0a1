#include "mledit/picker/MLEditWidget.h"

#include "mledit/picker/MLEditDialog.h"
#include "ui_MleditDialog.h"

// The pictures lie in an archive of this part: without this call nothing would link them in. The macro asks to be used
// outside of all namespaces.
static void initPictures() {
  Q_INIT_RESOURCE(tool_pictures);
}

namespace KVUI {

CMLEditDialog::CMLEditDialog(CDialog* logic, QWidget* parent) : QBaseDialog(logic, parent) {
  initPictures();
  Ui_MleditDialog().setupUi(this);
}

void CMLEditDialog::Forward(void (::CMLEditDialog::*handler)()) {
  if (auto* logic = dynamic_cast<::CMLEditDialog*>(GetLogic())) (logic->*handler)();
}

void CMLEditDialog::OnClosedCross() {
  Forward(&::CMLEditDialog::OnClosedCross);
}

void CMLEditDialog::OnClosedTee() {
  Forward(&::CMLEditDialog::OnClosedTee);
}

void CMLEditDialog::OnCornerJoint() {
  Forward(&::CMLEditDialog::OnCornerJoint);
}

void CMLEditDialog::OnCutSingle() {
  Forward(&::CMLEditDialog::OnCutSingle);
}

void CMLEditDialog::OnOpenCross() {
  Forward(&::CMLEditDialog::OnOpenCross);
}

void CMLEditDialog::OnOpenTee() {
  Forward(&::CMLEditDialog::OnOpenTee);
}

void CMLEditDialog::OnAddVertex() {
  Forward(&::CMLEditDialog::OnAddVertex);
}

void CMLEditDialog::OnCutAll() {
  Forward(&::CMLEditDialog::OnCutAll);
}

void CMLEditDialog::OnMergedCross() {
  Forward(&::CMLEditDialog::OnMergedCross);
}

void CMLEditDialog::OnMergedTee() {
  Forward(&::CMLEditDialog::OnMergedTee);
}

void CMLEditDialog::OnDeleteVertex() {
  Forward(&::CMLEditDialog::OnDeleteVertex);
}

void CMLEditDialog::OnWeldAll() {
  Forward(&::CMLEditDialog::OnWeldAll);
}

void CMLEditDialog::OnClose() {
  Forward(&::CMLEditDialog::OnClose);
}

}  // namespace KVUI

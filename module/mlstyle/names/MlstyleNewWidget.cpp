#include "mlstyle/names/MlstyleNewWidget.h"

#include "mlstyle/names/MlstyleNewDlg.h"
#include "ui/LogicCall.h"
#include "ui_CMlstyleNewDlg.h"

namespace KVUI {

CMlstyleNewDlg::CMlstyleNewDlg(CDialog* logic, QWidget* parent) : QBaseDialog(logic, parent) {
  Ui_CMlstyleNewDlg().setupUi(this);
}

void CMlstyleNewDlg::OnEnterName() {
  CallLogic(*this, &::CMlstyleNewDlg::OnEnterName);
}

void CMlstyleNewDlg::on_pBtnContinue_clicked() {
  CallLogic(*this, &::CMlstyleNewDlg::OnOK);
}

void CMlstyleNewDlg::on_pBtnCancel_clicked() {
  CallLogic(*this, &::CMlstyleNewDlg::OnCancel);
}

}  // namespace KVUI

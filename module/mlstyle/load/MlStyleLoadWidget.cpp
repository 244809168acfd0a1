#include "mlstyle/load/MlStyleLoadWidget.h"

#include "mlstyle/load/MlStyleLoadDlg.h"
#include "ui/LogicCall.h"
#include "ui_CMlStyleLoadDlg.h"

namespace KVUI {

CMlStyleLoadDlg::CMlStyleLoadDlg(CDialog* logic, QWidget* parent) : QBaseDialog(logic, parent) {
  Ui_CMlStyleLoadDlg().setupUi(this);
}

void CMlStyleLoadDlg::OnLoadFileStyle() {
  CallLogic(*this, &::CMlStyleLoadDlg::OnLoadFileStyle);
}

void CMlStyleLoadDlg::OnSelectChanged() {
  CallLogic(*this, &::CMlStyleLoadDlg::OnSelectChanged);
}

void CMlStyleLoadDlg::OnDbClick() {
  CallLogic(*this, &::CMlStyleLoadDlg::OnDbClick);
}

void CMlStyleLoadDlg::OnOK() {
  CallLogic(*this, &::CMlStyleLoadDlg::OnOK);
}

void CMlStyleLoadDlg::OnCancel() {
  CallLogic(*this, &::CMlStyleLoadDlg::OnCancel);
}

}  // namespace KVUI

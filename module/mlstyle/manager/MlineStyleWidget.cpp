#include "mlstyle/manager/MlineStyleWidget.h"

#include "mlstyle/manager/MlineStyleDialog.h"
#include "ui/LogicCall.h"
#include "ui_CMlineStyleDialog.h"

namespace KVUI {

CMlineStyleDialog::CMlineStyleDialog(CDialog* logic, QWidget* parent) : QBaseDialog(logic, parent) {
  Ui_CMlineStyleDialog().setupUi(this);
}

void CMlineStyleDialog::OnListSelChange() {
  CallLogic(*this, &::CMlineStyleDialog::OnListSelChange);
}

void CMlineStyleDialog::OnListDbClick() {
  CallLogic(*this, &::CMlineStyleDialog::OnListDbClick);
}

void CMlineStyleDialog::OnSetCurStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnSetCurStyle);
}

void CMlineStyleDialog::OnAddStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnAddStyle);
}

void CMlineStyleDialog::OnModifyStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnModifyStyle);
}

void CMlineStyleDialog::OnRenameStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnRenameStyle);
}

void CMlineStyleDialog::OnDeleteStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnDeleteStyle);
}

void CMlineStyleDialog::OnLoadStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnLoadStyle);
}

void CMlineStyleDialog::OnSaveStyle() {
  CallLogic(*this, &::CMlineStyleDialog::OnSaveStyle);
}

void CMlineStyleDialog::on_pBtnClose_clicked() {
  CallLogic(*this, &::CMlineStyleDialog::OnOK);
}

}  // namespace KVUI

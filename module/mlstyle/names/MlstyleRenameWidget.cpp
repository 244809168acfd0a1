#include "mlstyle/names/MlstyleRenameWidget.h"

#include "mlstyle/names/MlstyleRenameDlg.h"
#include "ui/LogicCall.h"
#include "ui_CMlstyleRenameDlg.h"

namespace KVUI {

CMlstyleRenameDlg::CMlstyleRenameDlg(CDialog* logic, QWidget* parent) : QBaseDialog(logic, parent) {
  Ui_CMlstyleRenameDlg().setupUi(this);
}

void CMlstyleRenameDlg::OnEnterName() {
  CallLogic(*this, &::CMlstyleRenameDlg::OnEnterName);
}

void CMlstyleRenameDlg::OnOK() {
  CallLogic(*this, &::CMlstyleRenameDlg::OnOK);
}

void CMlstyleRenameDlg::OnCancle() {
  CallLogic(*this, &::CMlstyleRenameDlg::OnCancel);
}

}  // namespace KVUI

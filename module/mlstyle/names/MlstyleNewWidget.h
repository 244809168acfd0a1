#pragma once

#include <kdrx/ui.h>

namespace KVUI {

/// The widget of the dialog for new styles.
class CMlstyleNewDlg : public QBaseDialog {
  Q_OBJECT
 public:
  /// @param logic may be null: the slots do nothing then
  CMlstyleNewDlg(CDialog* logic, QWidget* parent);

 public slots:
  void OnEnterName();
  void on_pBtnContinue_clicked();
  void on_pBtnCancel_clicked();
};

}  // namespace KVUI

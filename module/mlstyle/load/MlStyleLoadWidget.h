#pragma once

#include <kdrx/ui.h>

namespace KVUI {

/// The widget of the dialog that loads a style from a style library file.
class CMlStyleLoadDlg : public QBaseDialog {
  Q_OBJECT
 public:
  /// @param logic may be null: the slots do nothing then
  CMlStyleLoadDlg(CDialog* logic, QWidget* parent);

 public slots:
  void OnLoadFileStyle();
  void OnSelectChanged();
  void OnDbClick();
  void OnOK();
  void OnCancel();
};

}  // namespace KVUI

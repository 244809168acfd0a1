#pragma once

#include <kdrx/ui.h>

namespace KVUI {

/// The widget of the dialog that renames styles.
class CMlstyleRenameDlg : public QBaseDialog {
  Q_OBJECT
 public:
  /// @param logic may be null: the slots do nothing then
  CMlstyleRenameDlg(CDialog* logic, QWidget* parent);

 public slots:
  void OnEnterName();
  void OnOK();
  /// Its spelling is its name.
  void OnCancle();
};

}  // namespace KVUI

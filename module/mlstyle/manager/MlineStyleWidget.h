#pragma once

#include <kdrx/ui.h>

namespace KVUI {

/// The widget of the style manager.
class CMlineStyleDialog : public QBaseDialog {
  Q_OBJECT
 public:
  /// @param logic may be null: the slots do nothing then
  CMlineStyleDialog(CDialog* logic, QWidget* parent);

 public slots:
  void OnListSelChange();
  void OnListDbClick();
  void OnSetCurStyle();
  void OnAddStyle();
  void OnModifyStyle();
  void OnRenameStyle();
  void OnDeleteStyle();
  void OnLoadStyle();
  void OnSaveStyle();
  void on_pBtnClose_clicked();
};

}  // namespace KVUI

#pragma once

#include <kdrx/ui.h>

class CMLEditDialog;

namespace KVUI {

/// The picker's window. Each slot hands on to the handler of its name in the logic, and does nothing without one.
class CMLEditDialog : public QBaseDialog {
  Q_OBJECT

 public:
  CMLEditDialog(CDialog* logic, QWidget* parent);

 public slots:
  void OnClosedCross();
  void OnClosedTee();
  void OnCornerJoint();
  void OnCutSingle();
  void OnOpenCross();
  void OnOpenTee();
  void OnAddVertex();
  void OnCutAll();
  void OnMergedCross();
  void OnMergedTee();
  void OnDeleteVertex();
  void OnWeldAll();
  void OnClose();

 private:
  void Forward(void (::CMLEditDialog::*handler)());
};

}  // namespace KVUI

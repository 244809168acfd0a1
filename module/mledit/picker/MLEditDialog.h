#pragma once

#include <kdrx/ui.h>

/// The picker of editing tools: twelve buttons with pictures, and Close. Every button, Close too, records its number and
/// ends the dialog with IDOK; what the dialog was ended with does not matter.
class CMLEditDialog : public CDialog {
 public:
  /// Takes the pictures from the current resource library. @param parent may be null
  explicit CMLEditDialog(CWnd* parent);

  /// The number of the tool chosen: 1 to 12, 13 for Close, 0 while no button was pressed.
  int GetTool() const { return m_tool; }

  bool OnInitDialog() override;

  void OnClosedCross();
  void OnOpenCross();
  void OnMergedCross();
  void OnClosedTee();
  void OnOpenTee();
  void OnMergedTee();
  void OnCornerJoint();
  void OnAddVertex();
  void OnDeleteVertex();
  void OnCutSingle();
  void OnCutAll();
  void OnWeldAll();
  void OnClose();

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  void Choose(int tool);

  static constexpr int kPictureCount = 12;
  CBitmapButton m_pictures[kPictureCount];  // by tool number less one
  CButton m_close;
  int m_tool = 0;
};

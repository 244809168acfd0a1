#pragma once

#include <kdrx/ui.h>

class KdDbMlineStyle;
class QLabel;

namespace KVUI {

/// The widget of the style editor.
class CMlstyleNewModDlg : public QBaseDialog {
  Q_OBJECT
 public:
  /// @param logic may be null: the slots do nothing then
  CMlstyleNewModDlg(CDialog* logic, QWidget* parent);

  /// Gives the controls in groups their places, which else happens when the dialog is shown.
  void ArrangeGroups();
  /// Shows what a style looks like.
  void ShowPreview(const KdDbMlineStyle& style);

 public slots:
  void OnOpenCloseFill();
  void OnClickList();
  void OnAddElement();
  void OnDelElement();
  void OnOffsetKillfocus();
  void OnEnterOffset();
  void OnAngKillfocus();
  void OnselchgElecol();
  void OnselchgFillcol();
  void OnLtypeSelChange();
  void OnOK();
  void OnCancel();

 private:
  QLabel* m_preview;
};

}  // namespace KVUI

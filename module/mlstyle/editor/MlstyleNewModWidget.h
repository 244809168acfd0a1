#pragma once

#include <kdrx/ui.h>

class KdDbMlineStyle;
class QLabel;
class QTableWidget;

namespace KVUI {

/// The widget of the style editor.
class CMlstyleNewModDlg : public QBaseDialog {
  Q_OBJECT
 public:
  /// @param logic may be null: the slots do nothing then
  CMlstyleNewModDlg(CDialog* logic, QWidget* parent);

  /// Gives the controls in groups their places, which else happens when the dialog is shown.
  void ArrangeGroups();
  /// Whether the list of elements has been pressed and not yet been released.
  bool IsListPressed() const;
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

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void OnListReleased();

  QTableWidget* m_elements;
  QLabel* m_preview;
};

}  // namespace KVUI

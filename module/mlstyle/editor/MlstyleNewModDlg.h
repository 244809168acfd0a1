#pragma once

#include <memory>
#include <vector>

#include "mlstyle/preview/StylePreviewer.h"
#include "ui/SortListCtrl.h"

#include <kdrx/cm_color.h>
#include <kdrx/db_mline_style.h>
#include <kdrx/ui.h>

namespace KVUI {
class CMlstyleNewModDlg;
}

/// What a CMlstyleNewModDlg is run for.
enum class EStyleEdit : unsigned char { newStyle = 0, modify = 1 };

/// The editor of a multiline style: description, caps, fill, joints and elements.
///
/// Each change goes into a working copy, which is shown at once; the drawing's style is written with OK alone. A new style
/// is in the drawing from the start and goes again when the editor is cancelled. Without a style to edit, or to start with,
/// the editor is not shown: it beeps and is cancelled at once.
class CMlstyleNewModDlg : public CDialog {
 public:
  /// @param parent may be null; one that is a CStylePreviewer shows the working copy
  explicit CMlstyleNewModDlg(CWnd* parent);

  // To be set before the dialog is run.
  void SetMode(EStyleEdit mode) { m_mode = mode; }
  /// The style to be modified, or that a new one starts with.
  void SetSourceName(const CStdStr<wchar_t>& name) { m_sourceName = name; }
  void SetNewName(const CStdStr<wchar_t>& name) { m_newName = name; }
  /// The dictionary of the drawing's multiline styles.
  void SetDictionary(KdDbObjectId dictionary) { m_dictionary = dictionary; }

  bool OnInitDialog() override;
  void OnOK() override;
  /// Takes a new style away again.
  void OnCancel() override;
  bool OnCommand(int id, unsigned code) override;
  void OnDestroy() override;

  /// Finds the style of a name, which is the one that is edited from now on.
  void SetcurentStyle(const CStdStr<wchar_t>& name);
  /// Fills the controls from the style.
  void InitialDialog();
  /// Shows the title: what is done, and with which style.
  void OnCreate();
  /// Enables what concerns the selected element. The last element cannot be deleted.
  void SetControlState(bool hasElement);

  /// Shows the selected element. While the offset is none that selection stays where it is.
  void OnClickList();
  void OnAddElement();
  void OnDelElement();
  /// Takes over what is typed as soon as it is a number.
  void OnEnterOffset();
  void OnOffsetKillfocus();
  /// Does what waited for a press of the list to end.
  void OnListReleased();
  void OnAngKillfocus();
  void OnselchgElecol();
  void OnselchgFillcol();
  void OnLtypeSelChange();
  void OnOpenCloseFill();

  /// The flag word that the check boxes stand for.
  int GetFlag70();
  /// Writes the rows as the style's elements. Linetypes other than by layer and by block become "Continuous", deliberately.
  void SetElementData(KdDbMlineStyle* style);
  /// Writes both angles.
  void SetAnger(KdDbMlineStyle* style) const;
  /// Writes everything into the drawing's style; nothing when that cannot be opened.
  void ModifyStyle();
  /// Whether an angle is from 10 to 170 degrees.
  bool ValidateAng(const CStdStr<wchar_t>& angle) const;

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  void CreateStyle();
  /// Takes the style into the working copy. @return false when there is none
  bool CopyStyle();
  void ShowFlags(const KdDbMlineStyle& style);
  void ShowAngles(const KdDbMlineStyle& style);
  void AddColumns();
  void AddRows(const KdDbMlineStyle& style);
  int AddRow(const wchar_t* offset, const std::wstring& linetype, const KdCmColor& color);
  KdCmColor* ColorOf(int row) const;
  void DDV_RealOffset(CDataExchange* exchange, const CStdStr<wchar_t>& offset) const;
  void DDV_RealAng(CDataExchange* exchange, const CStdStr<wchar_t>& angle) const;
  /// Exchanges data when an edit was left. An edit that is left since the focus goes back to one that was refused, or since
  /// the dialog ends, is no input.
  bool TakeFields();
  bool IsOffsetRefused() const;
  int RowOf(const KdCmColor* color) const;
  /// Brings the rows into their order.
  void SortElements();
  /// Brings the rows into the working copy and shows it.
  void TakeElements();
  void ShowWorkingCopy();

  KVUI::CMlstyleNewModDlg* const m_widget;
  CStylePreviewer* const m_previewer;
  KdDbObjectId m_style;
  std::unique_ptr<KdDbMlineStyle> m_workingCopy;
  KdDbObjectId m_dictionary;
  CKdUiTrueColorComboBox m_fillColor, m_elementColor;
  CSortListCtrl m_elements;
  std::vector<std::unique_ptr<KdCmColor>> m_colors;  // of the rows, whose data point to them
  const KdCmColor* m_shownColor = nullptr;           // of the element that the edits show; null when they show none
  CKdUiLineTypeComboBox m_linetype;
  CStdStr<wchar_t> m_newName, m_sourceName, m_description;
  CStdStr<wchar_t> m_startAngle, m_endAngle;
  CEdit m_offsetEdit, m_startAngleEdit, m_endAngleEdit;
  EStyleEdit m_mode = EStyleEdit::newStyle;
  bool m_isTakingFields = false, m_isSortDue = false;
};

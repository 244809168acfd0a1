#pragma once

#include <string>

#include "mlstyle/preview/StylePreviewer.h"
#include "ui/DlgItemResizer.h"

#include <kdrx/db_mline_style.h>
#include <kdrx/ui.h>

/// The manager of the drawing's multiline styles. Each operation that goes through is a step of undo.
///
/// Nothing is kept of the styles but the rows of the list: each handler opens what it needs and closes it again.
class CMlineStyleDialog : public CDialog, public CStylePreviewer {
 public:
  /// @param parent may be null
  explicit CMlineStyleDialog(CWnd* parent);

  /// @return false when the drawing has no dictionaries: the list is empty then, and nothing but Close can be pressed
  bool OnInitDialog() override;
  void OnOK() override;
  void OnSize(unsigned type, int clientWidth, int clientHeight) override;
  void OnSizing(unsigned edge, tagRECT* proposed) override;
  /// There is nothing to paint beyond the controls.
  void OnPaint() {}

  /// Fills the list in the order of the dictionary.
  void AddStylesToList();
  /// Makes a style the current one of the drawing; a name that the drawing refuses changes nothing.
  void SetCurStyle(CStdStr<wchar_t> name);
  /// Allows what the selected style allows, and shows its description and picture.
  void OnListSelChange();
  void OnListDbClick();
  void OnSetCurStyle();
  void OnAddStyle();
  void OnModifyStyle();
  void OnRenameStyle();
  void OnDeleteStyle();
  void OnLoadStyle();
  void OnSaveStyle();

  /// Shows the selected style, as it is in the drawing, in the preview.
  void DrawCurStylePreview();
  void PaintPreview(KdDbMlineStyle* style) override;

  /// Whether a line is a text, ignoring case: all of it, in spite of the name.
  bool IsContainStr(const std::wstring& line, const wchar_t* text) const;

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  bool FindDictionary();
  CStdStr<wchar_t> GetSelectedName() const;
  /// Enables the buttons for the selected style, which has this name.
  void AllowOperations(const CStdStr<wchar_t>& name);
  void ShowCurrentName(const CStdStr<wchar_t>& name);
  void ShowDescription(const CStdStr<wchar_t>& name);
  void SelectStyle(const CStdStr<wchar_t>& name);
  bool RenameStyle(const CStdStr<wchar_t>& oldName, const CStdStr<wchar_t>& newName);
  bool RemoveStyle(const CStdStr<wchar_t>& name);

  CStatic m_preview;
  CListBox m_styles;
  CDlgItemResizer m_resizer;
  CStdStr<wchar_t> m_currentName;
  KdName m_dictionaryName = {};
  KdDbObjectId m_dictionary;
};

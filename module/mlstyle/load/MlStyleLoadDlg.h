#pragma once

#include <kdrx/db_object.h>
#include <kdrx/ui.h>

/// Loads a style from a style library file into the drawing.
class CMlStyleLoadDlg : public CDialog {
 public:
  /// @param parent may be null
  explicit CMlStyleLoadDlg(CWnd* parent);

  /// To be set before the dialog is run.
  void SetDictionary(KdDbObjectId dictionary) { m_dictionary = dictionary; }
  /// The style that was loaded, once the dialog was ended with IDOK.
  const CStdStr<wchar_t>& GetChosenName() const { return m_chosenName; }

  bool OnInitDialog() override;
  void OnOK() override;
  /// Enter and the space bar press the default button.
  bool PreTranslateMessage(tagMSG* message) override;

  /// Lets the user choose another file.
  void OnLoadFileStyle();
  void OnSelectChanged();
  void OnDbClick();

  /// Lists the styles of a file, which is the current one from now on. A file that cannot be read changes nothing.
  void SetListStyleName(const CStdStr<wchar_t>& path);
  /// Brings the chosen style into the drawing: a new one, or over the one of that name.
  void AddStyleToDrw();
  /// Reads the chosen style from the current file into the style of the drawing.
  void ModifyStyle();

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  KdDbObjectId m_style;
  CListBox m_styles;
  CStdStr<wchar_t> m_chosenName;
  CStdStr<wchar_t> m_file;
  KdDbObjectId m_dictionary;
};

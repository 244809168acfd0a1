#pragma once

#include "ui/EditLimited.h"

#include <kdrx/db_object.h>
#include <kdrx/ui.h>

/// Asks for the name of a new style and the style that it starts with. Nothing is changed in the drawing.
class CMlstyleNewDlg : public CDialog {
 public:
  /// @param parent may be null
  explicit CMlstyleNewDlg(CWnd* parent);

  /// To be set before the dialog is run: the style that is offered to start with, and the dictionary of the styles.
  void SetStartWith(const CStdStr<wchar_t>& name) { m_startWith = name; }
  void SetDictionary(KdDbObjectId dictionary) { m_dictionary = dictionary; }
  /// What the user chose, once the dialog was ended with IDOK.
  const CStdStr<wchar_t>& GetNewName() const { return m_newName; }
  const CStdStr<wchar_t>& GetStartWith() const { return m_startWith; }

  bool OnInitDialog() override;
  void OnOK() override;
  void AddStyleNameToCombo();
  /// Lets the user go on while the name is one that a new style may have, and none has.
  void OnEnterName();

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  CComboBox m_startWithBox;
  CStdStr<wchar_t> m_newName;
  CStdStr<wchar_t> m_startWith;
  KdDbObjectId m_dictionary;
  CEditLimited m_nameEdit;
};

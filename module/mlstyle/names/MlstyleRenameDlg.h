#pragma once

#include "ui/EditLimited.h"

#include <kdrx/db_object.h>
#include <kdrx/ui.h>

/// Asks for another name for a style. Nothing is changed in the drawing.
class CMlstyleRenameDlg : public CDialog {
 public:
  /// @param parent may be null
  explicit CMlstyleRenameDlg(CWnd* parent);

  /// To be set before the dialog is run: the style's name, and the dictionary of the styles.
  void SetOldName(const CStdStr<wchar_t>& name) { m_oldName = name; }
  void SetDictionary(KdDbObjectId dictionary) { m_dictionary = dictionary; }
  /// What the user chose, once the dialog was ended with IDOK.
  const CStdStr<wchar_t>& GetNewName() const { return m_newName; }

  bool OnInitDialog() override;
  void OnOK() override;
  /// Lets the user go on while the name is one that a style may be given, and none has. The old name is taken, too: letters
  /// cannot be made capitals by renaming.
  void OnEnterName();

 protected:
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  CComboBox m_names;  // hidden: it holds the names that are taken
  CStdStr<wchar_t> m_oldName;
  CStdStr<wchar_t> m_newName;
  KdDbObjectId m_dictionary;
  CEditLimited m_nameEdit;
};

#include "mlstyle/names/MlstyleNewDlg.h"
#include "mlstyle/names/MlstyleRenameDlg.h"
#include "style_dialogs.h"

#include <QtWidgets/QComboBox>

namespace {

using StyleNamesTest = StyleDialogTest;

struct Name {
  const char* text;
  bool isForNew, isForRename;
};
const Name kTypedNames[] = {
    {"", false, false},         {"42", true, true},          {"a_b", true, false},         {"a-b", true, false},
    {"a$b", true, false},       {"a b", false, false},       {"standard", false, false},   {"STANDARD2", true, true},
    {"wALL", false, false},     {"Stra\u00dfe", true, true}, {"\u0416\u4e2d", true, true}, {"a\u00a0b", false, false},
    {"a\u2013b", false, false}, {"kap\u0131", false, false},
};

bool isPlaceKept(const wchar_t* key) {
  return kdrxGetProfileInt(L"Settings", key, -10000) != -10000;
}

TEST_F(StyleNamesTest, OnlyGoodNamesMayBeConfirmed) {
  addStyle(L"Wall");
  addStyle(L"KAPI");
  const auto tryNames = [](QDialog& dialog, int editId, bool Name::*isGood) {
    auto& edit = control<QLineEdit>(dialog, editId);
    const auto& confirm = control<QPushButton>(dialog, IDOK);
    EXPECT_FALSE(confirm.isEnabled());
    for (const Name& name : kTypedNames) {
      SCOPED_TRACE(name.text);
      edit.setText(name.text);
      EXPECT_EQ(confirm.isEnabled(), name.*isGood);
    }
    for (const char c : "~`!@#%^&*()=+[]\\{}|:;'\"<>?/,. \t") {
      edit.setText(QString("Good") + QChar(c ? c : ' '));
      EXPECT_FALSE(confirm.isEnabled()) << c;
    }
    edit.clear();
    QTest::keyClicks(&edit, QString(40, 'n'));
    EXPECT_EQ(edit.text().size(), 31);
    EXPECT_TRUE(confirm.isEnabled());
  };
  CMlstyleNewDlg newDialog(nullptr);
  newDialog.SetDictionary(dictionaryId());
  newDialog.SetStartWith(L"Wall");
  withNextDialog([&](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Create New Multiline Style");
    EXPECT_EQ(control<QComboBox>(dialog, 1036).currentText(), "Wall");
    EXPECT_EQ(control<QComboBox>(dialog, 1036).count(), 3);
    tryNames(dialog, 1035, &Name::isForNew);
    control<QComboBox>(dialog, 1036).setCurrentText("STANDARD");
    QTest::keyClick(&control<QLineEdit>(dialog, 1035), Qt::Key_Return);
  });
  EXPECT_EQ(newDialog.DoModal(), IDOK);
  EXPECT_EQ(newDialog.GetNewName(), std::wstring(31, L'n'));
  EXPECT_EQ(newDialog.GetStartWith(), L"STANDARD");
  EXPECT_TRUE(isPlaceKept(L"MlstyleNewPosRight"));

  CMlstyleRenameDlg renameDialog(nullptr);
  renameDialog.SetDictionary(dictionaryId());
  renameDialog.SetOldName(L"Wall");
  withNextDialog([&](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Rename Multiline Style");
    tryNames(dialog, 1060, &Name::isForRename);
    QTest::keyClick(&dialog, Qt::Key_O, Qt::AltModifier);
    static_cast<void>(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
  });
  EXPECT_EQ(renameDialog.DoModal(), IDOK);
  EXPECT_EQ(renameDialog.GetNewName(), std::wstring(31, L'n'));
  EXPECT_TRUE(isPlaceKept(L"MlstyleRenamePosBottom"));
  EXPECT_EQ(stillOpen, 0);
}

TEST_F(StyleNamesTest, AnEntryWithoutAStyleIsANameAndNothingToStartWith) {
  addStyle(L"Gone");
  addStyle(L"Wall");
  drawing().flush();
  std::string text = bytes();
  const std::string record = "\nMLINESTYLE";
  const auto gone = text.find(record, text.find(record) + 1), next = text.find(record, gone + 1);
  ASSERT_NE(next, text.npos);
  text.erase(gone, next - gone);
  ASSERT_TRUE(host->editor().openDrawing(folder.write("gone.dxf", text)));
  CMlstyleNewDlg dialog(nullptr);
  dialog.SetDictionary(dictionaryId());
  withNextDialog([&](QDialog& widget) {
    const auto& box = control<QComboBox>(widget, 1036);
    ASSERT_EQ(box.count(), 2);
    EXPECT_EQ(box.itemText(1), "Wall");
    control<QLineEdit>(widget, 1035).setText("gONE");
    EXPECT_FALSE(control<QPushButton>(widget, IDOK).isEnabled());
    widget.reject();
  });
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_FALSE(isPlaceKept(L"MlstyleNewPosRight"));
}

}  // namespace

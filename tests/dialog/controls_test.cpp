#include <map>

#include "support/dialog_driver.h"
#include "support/host_driver.h"
#include "support/message_answers.h"

#include <kdrx/app.h>
#include <kdrx/ui.h>

#include <QtGui/QTextDocument>
#include <QtGui/QWheelEvent>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QTextEdit>

namespace {

enum Id : int { kEdit = 10, kOther, kLabel, kGroup, kCheck, kList, kBox, kTable, kArea };

class Sample : public CDialog {
 public:
  Sample() : CDialog(100) {
    auto* widget = new QBaseDialog(this);
    const std::pair<int, QWidget*> controls[] = {
        {kEdit, new QLineEdit(widget)},  {kOther, new QLineEdit(widget)},         {kLabel, new QLabel(widget)},
        {kGroup, new QGroupBox(widget)}, {kCheck, new QCheckBox(widget)},         {kList, new QListWidget(widget)},
        {kBox, new QComboBox(widget)},   {kTable, new QTableWidget(widget)},      {kArea, new QTextEdit(widget)},
        {IDOK, new QPushButton(widget)}, {IDCANCEL, new QPushButton("c", widget)}};
    for (const auto& [id, control] : controls) control->setProperty("controlId", id);
    qobject_cast<QPushButton*>(controls[9].second)->setDefault(true);
    widget->resize(300, 200);
    SetDialogWidget(widget);
  }
  bool OnInitDialog() override {
    const bool isWell = CDialog::OnInitDialog();
    if (endsAtOnce) EndDialog(IDNO);
    return isWell;
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Control(exchange, kEdit, edit);
    DDX_Control(exchange, kList, list);
    DDX_Control(exchange, kBox, box);
    DDX_Control(exchange, kTable, table);
    DDX_Control(exchange, kArea, area);
    for (auto& [id, text] : texts) DDX_Text(exchange, id, text);
    if (failsAt) exchange->PrepareEditCtrl(failsAt);
    if (failsAt) exchange->Fail();
  }
  bool PreTranslateMessage(tagMSG* message) override {
    keys.push_back({message->message, message->wParam});
    return swallowsKeys;
  }
  bool OnCommand(int id, unsigned code) override {
    commands.push_back({id, code});
    return CDialog::OnCommand(id, code);
  }
  void OnSizing(unsigned, tagRECT* proposed) override {
    EXPECT_EQ(GetWindowRect(), former);
    proposed->right = std::max(proposed->right, proposed->left + 250);
  }
  template <class Widget>
  Widget& widget(int id) {
    return *qobject_cast<Widget*>(GetDlgItem(id)->GetWidget());
  }

  CEdit edit;
  CListBox list;
  CComboBox box;
  CListCtrl table;
  CStatic area;
  std::map<int, CStdStr<wchar_t>> texts;
  std::vector<std::pair<unsigned, unsigned long>> keys;
  std::vector<std::pair<int, unsigned>> commands;
  tagRECT former;
  bool swallowsKeys = false, endsAtOnce = false;
  int failsAt = 0;
};

TEST_F(DialogTest, TextsGoToControlsOfAllKindsAndBack) {
  Sample sample;
  CButton stray;
  EXPECT_FALSE(stray.SubclassDlgItem(99, &sample) || stray.SubclassDlgItem(kCheck, nullptr));
  EXPECT_EQ(sample.edit.GetDlgCtrlID(), 0);
  sample.UpdateData(false);
  EXPECT_EQ(sample.edit.GetDlgCtrlID(), kEdit);
  EXPECT_FALSE(sample.edit.SubclassDlgItem(kEdit, &sample)) << "it is bound already";
  for (const wchar_t* text : {L"one", L"Two", L"two"}) sample.box.AddString(text);
  for (const int id : {kEdit, kLabel, kGroup, kCheck, kArea}) sample.texts[id] = L"<b>a & b" + std::to_wstring(id);
  sample.texts[kBox] = L"two";
  EXPECT_TRUE(sample.UpdateData(false));
  EXPECT_EQ(sample.box.GetCurSel(), 2);
  auto wanted = sample.texts;
  for (auto& [id, text] : sample.texts) text.clear();
  EXPECT_TRUE(sample.UpdateData(true));
  EXPECT_EQ(sample.texts, wanted);
  sample.SetWindowTextW(L"Title");
  EXPECT_EQ(sample.GetWidget()->windowTitle(), "Title");
  sample.GetDlgItem(99)->SetWindowTextW(L"nowhere");
  EXPECT_EQ(sample.GetDlgItem(99)->GetWindowTextW(), L"");
  EXPECT_EQ(sample.GetDlgItem(kList), &sample.list);
  sample.texts[99] = L"";
  EXPECT_FALSE(sample.UpdateData(true));
}

TEST_F(DialogTest, SearchesIgnoreCaseAndGoRound) {
  struct Case {
    int after;
    const wchar_t* text;
    int beginning, exact;
  };
  const Case cases[] = {{-1, L"wall", 1, 2}, {1, L"WALL", 2, 2}, {2, L"Wall", 1, 2},     {9, L"\u00e4", 3, -1},
                        {-1, L"", 0, -1},    {-1, L"x", -1, -1}, {-1, L"\u00c4b", 3, 3}, {-1, L"kap\u0131", 4, 4}};
  Sample sample;
  sample.UpdateData(false);
  for (const wchar_t* text : {L"Standard", L"WALL-2", L"wall", L"\u00e4B", L"KAPI"}) {
    EXPECT_EQ(sample.list.AddString(text), sample.box.AddString(text));
  }
  const QSignalSpy spy(&sample.widget<QListWidget>(kList), &QListWidget::itemSelectionChanged);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.after << ' ' << QString::fromWCharArray(c.text).toStdString());
    EXPECT_EQ(sample.list.FindString(c.after, c.text), c.beginning);
    EXPECT_EQ(sample.box.FindString(c.after, c.text), c.beginning);
    EXPECT_EQ(sample.list.FindStringExact(c.after, c.text), c.exact);
    EXPECT_EQ(sample.box.FindStringExact(c.after, c.text), c.exact);
    const int selected = sample.list.GetCurSel();
    EXPECT_EQ(sample.list.SelectString(c.after, c.text), c.beginning);
    EXPECT_EQ(sample.list.GetCurSel(), c.beginning < 0 ? selected : c.beginning);
  }
  for (const int left : {4, -1}) EXPECT_EQ(sample.list.DeleteString(4), left);
  EXPECT_FALSE(sample.list.SetCurSel(7) || sample.box.SetCurSel(-1));
  EXPECT_EQ(sample.list.GetCurSel() + sample.box.GetCurSel(), -2);
  EXPECT_EQ(spy.count(), 0) << "what the program selects is not told";
}

TEST_F(DialogTest, ListsKeepTheirRowsWholeWhenSorted) {
  Sample sample;
  CListCtrl& table = sample.table;
  EXPECT_EQ(table.InsertColumn(0, L"early", 50), -1);
  sample.UpdateData(false);
  EXPECT_EQ(table.InsertColumn(1, L"gap", 50) + table.InsertItem(0, L"without columns"), -2);
  for (const int column : {0, 1}) EXPECT_EQ(table.InsertColumn(column, L"name", 60), column);
  const unsigned long data[] = {5, 3, 8, 3};
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(table.InsertItem(row, std::to_wstring(data[row]).c_str()), row);
    EXPECT_TRUE(table.SetItemText(row, 1, std::to_wstring(row).c_str()) && table.SetItemData(row, data[row]));
  }
  EXPECT_FALSE(table.SetItemText(0, 2, L"outside") || table.SetItemData(4, 5));
  table.SelectItem(0);
  table.SortItems([](unsigned long a, unsigned long b, unsigned long by) { return static_cast<int>((a - b) * by); }, 1);
  std::wstring rows;
  for (int row = 0; row < 4; ++row) {
    rows += table.GetItemText(row, 0) + table.GetItemText(row, 1) + std::to_wstring(table.GetItemData(row));
  }
  EXPECT_EQ(rows, L"313333505828");
  EXPECT_EQ(table.GetSelectedItem(), 2);
  table.DeleteAllItems();
  EXPECT_EQ(table.GetItemCount(), 0);
}

TEST_F(DialogTest, AKeySelectsARowWhereNoneIs) {
  struct Case {
    int key, current, selected;
  };
  const Case cases[] = {{Qt::Key_Down, 0, 0},     {Qt::Key_Up, 0, 0},     {Qt::Key_Up, 2, 2},   {Qt::Key_Down, -1, 0},
                        {Qt::Key_PageDown, 1, 1}, {Qt::Key_PageUp, 1, 1}, {Qt::Key_Home, 1, 0}, {Qt::Key_Home, 0, 0},
                        {Qt::Key_End, 2, 2},      {Qt::Key_End, 0, 2},    {Qt::Key_F2, 0, -1}};
  Sample sample;
  sample.UpdateData(false);
  sample.table.InsertColumn(0, L"name", 60);
  for (const wchar_t* text : {L"one", L"two", L"three"}) sample.list.AddString(text);
  for (const int row : {0, 1, 2}) sample.table.InsertItem(row, L"row");
  QAbstractItemView* const views[] = {&sample.widget<QListWidget>(kList), &sample.widget<QTableWidget>(kTable)};
  for (QAbstractItemView* view : views) {
    const auto selected = [&] { return view == views[0] ? sample.list.GetCurSel() : sample.table.GetSelectedItem(); };
    for (const Case& c : cases) {
      SCOPED_TRACE(testing::Message() << view->metaObject()->className() << c.key << ' ' << c.current);
      view->selectionModel()->setCurrentIndex(view->model()->index(c.current, 0), QItemSelectionModel::Clear);
      ASSERT_EQ(selected(), -1);
      QTest::keyClick(view, static_cast<Qt::Key>(c.key));
      EXPECT_EQ(selected(), c.selected);
    }
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(selected(), 1) << "from a selected row keys go on";
    view->model()->removeRows(0, 3);
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(selected(), -1);
  }
}

TEST_F(DialogTest, TheWheelChangesNoChoice) {
  Sample sample;
  sample.UpdateData(false);
  auto& box = sample.widget<QComboBox>(kBox);
  for (const wchar_t* text : {L"one", L"two", L"three"}) sample.box.AddString(text);
  sample.box.SetCurSel(1);
  for (const int turn : {-120, 120}) {
    QWheelEvent wheel({5, 5}, box.mapToGlobal(QPoint(5, 5)), {}, {0, turn}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&box, &wheel);
    EXPECT_EQ(sample.box.GetCurSel(), 1);
    EXPECT_FALSE(wheel.isAccepted()) << "it is left to what lies around";
  }
}

TEST_F(DialogTest, KeysAndClicksComeToTheLogic) {
  Sample sample;
  withNextDialog([&](QDialog& dialog) {
    auto& edit = sample.widget<QLineEdit>(kEdit);
    edit.setFocus();
    QTest::keyClick(&edit, 'a');
    sample.swallowsKeys = true;
    QTest::keyClick(&edit, 'b');
    sample.swallowsKeys = false;
    EXPECT_EQ(edit.text(), "a");
    QTest::keyPress(&edit, Qt::Key_F5);
    sample.widget<QCheckBox>(kCheck).click();
    sample.PressDefaultButton();
    sample.GetDlgItem(IDOK)->EnableWindow(false);
    sample.PressDefaultButton();
    dialog.reject();
  });
  sample.DoModal();
  EXPECT_EQ(sample.keys, (decltype(sample.keys){{256, 'A'}, {257, 'A'}, {256, 'B'}, {257, 'B'}, {256, 0}}));
  EXPECT_EQ(sample.commands, (decltype(sample.commands){{kEdit, EN_CHANGE}, {kCheck, BN_CLICKED}, {IDOK, BN_CLICKED}}));
  EXPECT_TRUE(sample.IsDlgButtonChecked(kCheck));
}

TEST_F(DialogTest, AFailedExchangeKeepsTheDialogOpenAtTheEditAtFault) {
  Sample sample;
  sample.failsAt = kOther;
  withNextDialog([&](QDialog& dialog) {
    sample.widget<QLineEdit>(kOther).setText("bad");
    dialog.accept();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(sample.widget<QLineEdit>(kOther).hasFocus());
    EXPECT_EQ(sample.widget<QLineEdit>(kOther).selectedText(), "bad");
    dialog.reject();
  });
  EXPECT_EQ(sample.DoModal(), IDCANCEL);
}

TEST_F(DialogTest, ADialogMayEndBeforeItIsShownAndRunAgainAsLongAsItsWidgetIsThere) {
  Sample sample;
  sample.endsAtOnce = true;
  EXPECT_EQ(sample.DoModal(), IDNO);
  sample.endsAtOnce = false;
  withNextDialog([](QDialog& dialog) { dialog.accept(); });
  EXPECT_EQ(sample.DoModal(), IDOK);
  delete sample.GetWidget();
  EXPECT_EQ(sample.DoModal(), -1);
  sample.EndDialog(IDOK);
}

TEST_F(DialogTest, MessagesGoToTheServiceOrAskTheUser) {
  Sample sample;
  {
    MessageAnswers answers;
    answers.answer = IDNO;
    EXPECT_EQ(sample.MessageBoxW(L"Sure?", L"Title", MB_YESNO | MB_ICONQUESTION), IDNO);
    MessageBeep();
    sample.MessageBoxW(L"Done.");
    EXPECT_EQ(answers.heard, (std::vector<std::wstring>{L"Title|Sure?|36", L"beep", L"TORVA|Done.|0"}));
  }
  struct Case {
    unsigned type;
    QMessageBox::StandardButton pressed;  // NoButton: closed by Escape
    int result;
  };
  for (const Case& c : {Case{MB_OK, QMessageBox::Ok, IDOK},
                        {MB_YESNO, QMessageBox::Yes, IDYES},
                        {MB_YESNO, QMessageBox::NoButton, IDNO},
                        {MB_YESNOCANCEL | MB_ICONWARNING, QMessageBox::No, IDNO},
                        {MB_OKCANCEL, QMessageBox::NoButton, IDCANCEL}}) {
    SCOPED_TRACE(c.type);
    withNextDialog([&](QDialog& dialog) {
      auto& box = dynamic_cast<QMessageBox&>(dialog);
      c.pressed == QMessageBox::NoButton ? QTest::keyClick(&box, Qt::Key_Escape) : box.button(c.pressed)->click();
    });
    EXPECT_EQ(sample.MessageBoxW(L"<b>As it stands</b>", nullptr, c.type), c.result);
  }
  EXPECT_EQ(stillOpen, 0);
}

TEST_F(DialogTest, ASizeIsTakenAsTheLogicWantsIt) {
  Sample sample;
  withNextDialog([&](QDialog& dialog) {
    sample.MoveWindow({100, 90, 400, 290});
    sample.former = sample.GetWindowRect();
    EXPECT_EQ(sample.former, (tagRECT{100, 90, 400, 290}));
    sample.MoveWindow({90000, 90000, 90300, 90200});
    EXPECT_EQ(sample.GetWindowRect(), sample.former) << "no screen would show it";
    dialog.windowHandle()->setGeometry(100, 90, 80, 150);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.width() == 250; }));
    EXPECT_EQ(sample.GetWindowRect(), (tagRECT{100, 90, 350, 240}));
    dialog.reject();
  });
  sample.DoModal();
}

class HostedDialogTest : public DialogTest, protected HostDriver {};

TEST_F(HostedDialogTest, PicturesAndIconsAreShown) {
  startHost();
  Sample sample;
  sample.UpdateData(false);
  EXPECT_FALSE(sample.SetIcon(L"TORVARes.dll", 4));
  EXPECT_TRUE(sample.SetIcon(L"TORVARes.dll", 128));
  EXPECT_FALSE(sample.GetWidget()->windowIcon().isNull());
  QImage picture(40, 20, QImage::Format_RGB32);
  const auto* document = sample.widget<QTextEdit>(kArea).document();
  sample.area.SetBitmap(picture);
  EXPECT_TRUE(document->isEmpty()) << "without the style for pictures";
  sample.area.ModifyStyle(0, SS_BITMAP | SS_CENTERIMAGE);
  sample.area.SetBitmap(picture);
  EXPECT_FALSE(document->isEmpty());

  const std::vector<unsigned char> kept = {0, 0x9f, 255};
  EXPECT_TRUE(kdrxWriteProfileBinary(L"ListCtrls", L"7", kept));
  EXPECT_EQ(kdrxGetProfileBinary(L"ListCtrls", L"7"), kept);
  EXPECT_TRUE(kdrxWriteProfileString(L"ListCtrls", L"7", L"9f0"));
  EXPECT_TRUE(kdrxGetProfileBinary(L"ListCtrls", L"7").empty());
  EXPECT_TRUE(kdrxWriteProfileInt(L"Settings", L"Some", -3));
  EXPECT_EQ(kdrxGetProfileInt(L"Settings", L"Some", -10000), -3);
  EXPECT_EQ(kdrxGetProfileInt(L"Settings", L"None", -10000), -10000);
  EXPECT_FALSE(kdrxWriteProfileInt(L"Settings", L"a=b", 1) || kdrxWriteProfileString(L"Settings", nullptr, L""));
}

}  // namespace

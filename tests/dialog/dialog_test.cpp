#include "support/dialog_driver.h"
#include "support/message_answers.h"

#include <kdrx/ui.h>

#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace {

constexpr int kButton = 7, kMissing = 8;

class SampleDialog : public CDialog {
 public:
  SampleDialog() : CDialog(100) {
    auto* widget = new QBaseDialog(this);
    (new QPushButton(widget))->setProperty("controlId", kButton);
    SetDialogWidget(widget);
  }
  bool OnInitDialog() override {
    const bool isWell = CDialog::OnInitDialog();
    if (endsAtOnce) EndDialog(IDNO);
    return isWell;
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Control(exchange, kButton, button);
    if (wantsMissing) DDX_Control(exchange, kMissing, missing);
  }

  void OnCancel() override {
    ++cancels;
    CDialog::OnCancel();
  }

  CButton button, missing;
  int cancels = 0;
  bool endsAtOnce = false, wantsMissing = false;
};

TEST_F(DialogTest, ControlsAreBoundByTheirNumbers) {
  SampleDialog sample;
  EXPECT_EQ(sample.button.GetDlgCtrlID(), 0);
  EXPECT_FALSE(sample.missing.SubclassDlgItem(kMissing, &sample));
  EXPECT_FALSE(sample.missing.SubclassDlgItem(kButton, nullptr));
  EXPECT_TRUE(sample.UpdateData(false));
  EXPECT_EQ(sample.button.GetDlgCtrlID(), kButton);
  EXPECT_TRUE(sample.UpdateData(false));
  EXPECT_FALSE(sample.button.SubclassDlgItem(kButton, &sample));
}

TEST_F(DialogTest, AFailedExchangeKeepsTheDialogOpen) {
  SampleDialog sample;
  sample.wantsMissing = true;
  withNextDialog([](QDialog& dialog) {
    dialog.accept();
    EXPECT_TRUE(dialog.isVisible());
    dialog.reject();
  });
  EXPECT_EQ(sample.DoModal(), IDCANCEL);
  EXPECT_EQ(sample.cancels, 1);
  EXPECT_EQ(stillOpen, 0);
}

TEST_F(DialogTest, ADialogMayEndBeforeItIsShownAndRunAgain) {
  SampleDialog sample;
  sample.endsAtOnce = true;
  EXPECT_EQ(sample.DoModal(), IDNO);
  sample.endsAtOnce = false;
  withNextDialog([](QDialog& dialog) { dialog.accept(); });
  EXPECT_EQ(sample.DoModal(), IDOK);
}

TEST_F(DialogTest, ADialogWhoseWidgetIsGoneDoesNothing) {
  SampleDialog sample;
  delete sample.GetWidget();
  EXPECT_EQ(sample.DoModal(), -1);
  sample.EndDialog(IDOK);
}

TEST_F(DialogTest, MessagesGoToTheServiceThatAnswers) {
  SampleDialog sample;
  MessageAnswers answers;
  answers.answer = IDNO;
  EXPECT_EQ(sample.MessageBoxW(L"Sure?", L"Title", MB_YESNO | MB_ICONQUESTION), IDNO);
  MessageBeep();
  sample.MessageBoxW(L"Done.");
  EXPECT_EQ(answers.heard, (std::vector<std::wstring>{L"Title|Sure?|36", L"beep", L"TORVA|Done.|0"}));
}

TEST_F(DialogTest, WithoutAServiceABoxAsksTheUser) {
  struct Case {
    unsigned type;
    QMessageBox::StandardButton pressed;  // NoButton: closed by Escape
    int result;
  };
  const Case cases[] = {
      {MB_OK, QMessageBox::Ok, IDOK},
      {MB_YESNO, QMessageBox::Yes, IDYES},
      {MB_YESNO, QMessageBox::NoButton, IDNO},
      {MB_YESNOCANCEL | MB_ICONWARNING, QMessageBox::No, IDNO},
      {MB_OKCANCEL, QMessageBox::NoButton, IDCANCEL},
  };
  SampleDialog sample;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    withNextDialog([&](QDialog& dialog) {
      auto& box = dynamic_cast<QMessageBox&>(dialog);
      c.pressed == QMessageBox::NoButton ? QTest::keyClick(&box, Qt::Key_Escape) : box.button(c.pressed)->click();
    });
    EXPECT_EQ(sample.MessageBoxW(L"<b>As it stands</b>", nullptr, c.type), c.result);
  }
  EXPECT_EQ(stillOpen, 0);
}

}  // namespace

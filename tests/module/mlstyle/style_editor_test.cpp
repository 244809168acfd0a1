#include <gmock/gmock.h>
#include <numbers>

#include "mlstyle/editor/ColorNames.h"
#include "mlstyle/editor/MlstyleNewModDlg.h"
#include "mlstyle/editor/RealText.h"
#include "style_dialogs.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableWidget>

namespace {

using testing::ElementsAre;

enum : int {
  kDescription = 1037,
  kStartAngle = 1044,
  kEndAngle = 1045,
  kElements = 1046,
  kFillColor = 1048,
  kElementColor = 1049,
  kOffset = 1050,
  kAdd = 1051,
  kDelete = 1052,
  kFill = 1054,
  kLinetype = 1055
};
constexpr std::pair<int, int> kFlags[] = {{1038, 16},   {1039, 256}, {1040, 64}, {1041, 32},
                                          {1042, 1024}, {1043, 512}, {1047, 2},  {1054, 1}};

class StyleEditorTest : public StyleDialogTest {
 protected:
  StyleEditorTest() {
    addStyle(L"Plain", L"two");
    const std::string file = folder.write("d.lin", "*DASHED,dashes\nA,0.5,-0.25\n");
    KdDbObjectId dashed;
    EXPECT_EQ(kddbLoadLinetypeFromFile(std::wstring(file.begin(), file.end()).c_str(), L"DASHED", dashed, &drawing(), 0),
              KdStatus::ok);
    put(L"Rich", L"<b>rich</b>", kStyleFilled | kStyleEndRoundCap | kStyleStartInnerArcs,
        {{-2, 3, L"DASHED"}, {10}, {9.5}, {-0.5, 0, L"BYBLOCK"}, {0, 30, L"CONTINUOUS"}}, [](KdDbMlineStyle& style) {
          KdCmColor book = KdCmColor::trueColor(0x102030);
          book.setNamesFromDictionaryKey(L"BOOK$SEA");
          style.setElement(1, 10, KdCmColor::trueColor(0xFF8000), {});
          style.setElement(2, 9.5, book, {});
          style.setFillColor(KdCmColor::trueColor(0xFE0101));
          style.setStartAngle(std::numbers::pi / 4);
        });
    drawing().flush();
  }

  /// Runs the editor as a command does, in one step of undo.
  int edit(EStyleEdit mode, const std::wstring& source, const std::function<void(QDialog&)>& act) {
    CMlstyleNewModDlg editor(&parent);
    editor.SetMode(mode);
    editor.SetSourceName(source);
    editor.SetNewName(L"Fresh");
    editor.SetDictionary(dictionaryId());
    withNextDialog(act);
    drawing().beginUndoStep(L"MLSTYLE");
    const int result = editor.DoModal();
    drawing().endUndoStep();
    return result;
  }
  int modify(const std::wstring& source, const std::function<void(QDialog&)>& act) {
    return edit(EStyleEdit::modify, source, act);
  }
  /// Modifies a style and confirms that.
  void change(const std::wstring& source, const std::function<void(QDialog&)>& act) {
    const auto confirm = [&](QDialog& dialog) {
      act(dialog);
      press(dialog, IDOK);
    };
    EXPECT_EQ(modify(source, confirm), IDOK);
  }

  static QTableWidget& table(QDialog& dialog) { return control<QTableWidget>(dialog, kElements); }
  static std::string row(QDialog& dialog, int row) {
    std::string text;
    for (int column = 0; column < 3; ++column) text += table(dialog).item(row, column)->text().toStdString() + "|";
    return text;
  }
  static std::string textOf(QDialog& dialog, int id) {
    auto* box = qobject_cast<QComboBox*>(&control<QWidget>(dialog, id));
    return (box ? box->currentText() : control<QLineEdit>(dialog, id).text()).toStdString() + "|";
  }
  static void select(QDialog& dialog, int row) {
    table(dialog).scrollToItem(table(dialog).item(row, 0));
    const QPoint place = table(dialog).visualItemRect(table(dialog).item(row, 0)).center();
    QTest::mouseClick(table(dialog).viewport(), Qt::LeftButton, {}, place);
  }
  static void type(QDialog& dialog, int id, const char* text) {
    auto& edit = control<QLineEdit>(dialog, id);
    edit.setFocus();
    edit.selectAll();
    *text ? QTest::keyClicks(&edit, text) : QTest::keyClick(&edit, Qt::Key_Delete);
  }
  static void leave(QDialog& dialog, int id) { QTest::keyClick(&control<QLineEdit>(dialog, id), Qt::Key_Tab); }
  static void choose(QDialog& dialog, int id, const QString& text) {
    auto& box = control<QComboBox>(dialog, id);
    box.setCurrentIndex(box.findText(text));
    emit box.activated(box.currentIndex());
  }
  static void pressCancel(QDialog& dialog) { press(dialog, IDCANCEL); }

  struct Parent : CWnd, CStylePreviewer {
    void PaintPreview(KdDbMlineStyle* style) override { shown.push_back(describe(*style)); }
    std::vector<std::wstring> shown;
  };
  Parent parent;
};

TEST_F(StyleEditorTest, ShowsAStyleRowByRow) {
  modify(L"Rich", [&](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Modify Multiline Style: Rich");
    for (const auto& [id, flag] : kFlags) {
      EXPECT_EQ(control<QCheckBox>(dialog, id).isChecked(), (flag & (1 | 32 | 1024)) != 0) << id;
    }
    std::string texts;
    for (const int id : {kDescription, kStartAngle, kEndAngle, kOffset}) texts += textOf(dialog, id);
    EXPECT_EQ(texts + textOf(dialog, kFillColor), "<b>rich</b>|45.00|90.00|0.000|254,1,1|");
    for (const int id : {kOffset, kElementColor, kLinetype, kDelete}) {
      EXPECT_FALSE(control<QWidget>(dialog, id).isEnabled()) << id;
    }
    const char* const rows[] = {"-2|DASHED|Green|", "-0.5|ByBlock|ByBlock|", "0|Continuous|30|", "9.5|ByLayer|SEA|",
                                "10|ByLayer|255,128,0|"};
    ASSERT_EQ(table(dialog).rowCount(), 5);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(row(dialog, i), rows[i]);
      i == 0 ? select(dialog, i) : QTest::keyClick(&table(dialog), Qt::Key_Down);
      EXPECT_EQ(textOf(dialog, kOffset) + textOf(dialog, kLinetype) + textOf(dialog, kElementColor), rows[i]);
    }
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(table(dialog).columnWidth(i), table(dialog).viewport()->width() / 3, 20);
    EXPECT_TRUE(control<QWidget>(dialog, kDelete).isEnabled());
    QTest::keyClick(&table(dialog), Qt::Key_Tab);
    EXPECT_EQ(dialog.focusWidget(), &control<QWidget>(dialog, kAdd)) << "the table is one stop";
    pressCancel(dialog);
  });
  EXPECT_THAT(parent.shown, ElementsAre(stored(L"Rich")));
}

TEST_F(StyleEditorTest, EachChangeIsShownAtOnceAndWrittenWithOk) {
  struct Case {
    const char* name;
    const wchar_t* source;
    std::function<void(QDialog&)> act;
    const wchar_t* result;
    const wchar_t* shown = nullptr;  // the last that is, when it is not the result; empty for nothing
  };
  const Case cases[] = {
      {"nothing: linetypes narrow, a fill is of an index", L"Rich", [](QDialog&) {},
       L"<b>rich</b> 1057 1 4500 9000 10:bylayer:255,128,0 9.5:bylayer:sea 0:continuous:30 -0.5:byblock:byblock "
       L"-2:continuous:3",
       L""},
      {"add, all of it changed", L"Plain",
       [](QDialog& d) {
         press(d, kAdd);
         EXPECT_EQ(table(d).currentRow(), 1);
         type(d, kOffset, "-12.25");
         EXPECT_EQ(table(d).item(1, 0)->text(), "-12.25");
         leave(d, kOffset);
         EXPECT_EQ(table(d).item(0, 0)->text(), "-12.25");
         choose(d, kElementColor, "Cyan");
         choose(d, kLinetype, "ByBlock");
         EXPECT_EQ(row(d, 0), "-12.25|ByBlock|Cyan|");
       },
       L"two 0 bylayer 9000 9000 0.5:bylayer:bylayer -0.5:bylayer:bylayer -12.25:byblock:4"},
      {"delete down to one", L"Rich",
       [](QDialog& d) {
         select(d, 4);
         for (int left = 4; left > 0; --left) {
           press(d, kDelete);
           EXPECT_EQ(table(d).rowCount(), left);
         }
         EXPECT_FALSE(control<QWidget>(d, kDelete).isEnabled());
         EXPECT_TRUE(control<QWidget>(d, kOffset).isEnabled());
       },
       L"<b>rich</b> 1057 1 4500 9000 -2:continuous:3", L"<b>rich</b> 1057 254,1,1 4500 9000 -2:continuous:3"},
      {"angles, fill, description and a dashed linetype", L"Plain",
       [](QDialog& d) {
         type(d, kStartAngle, "10");
         leave(d, kStartAngle);
         type(d, kEndAngle, "170.");
         leave(d, kEndAngle);
         EXPECT_FALSE(control<QWidget>(d, kFillColor).isEnabled());
         control<QCheckBox>(d, kFill).click();
         EXPECT_TRUE(control<QWidget>(d, kFillColor).isEnabled());
         choose(d, kFillColor, "Blue");
         type(d, kDescription, "walls");
         select(d, 0);
         choose(d, kLinetype, "DASHED");
         EXPECT_EQ(row(d, 0), "-0.5|DASHED|ByLayer|");
       },
       L"walls 1 5 1000 17000 0.5:bylayer:bylayer -0.5:continuous:bylayer",
       L"two 1 5 1000 17000 0.5:bylayer:bylayer -0.5:continuous:bylayer"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string before = bytes();
    parent.shown.clear();
    change(c.source, c.act);
    EXPECT_EQ(stored(c.source), c.result);
    EXPECT_EQ(parent.shown.size() > 1 ? parent.shown.back() : L"", c.shown ? c.shown : c.result);
    EXPECT_EQ(drawing().undo(), L"MLSTYLE");
    EXPECT_TRUE(bytes() == before);
  }
  EXPECT_EQ(stillOpen, 0);
  EXPECT_TRUE(messages.heard.empty());
  EXPECT_TRUE(drawing().openObjects().empty());
}

TEST_F(StyleEditorTest, EveryCheckBoxIsABitOfTheFlagWord) {
  for (const auto& [id, flag] : kFlags) {
    SCOPED_TRACE(id);
    change(L"Plain", [id = id](QDialog& dialog) { control<QCheckBox>(dialog, id).click(); });
    const std::wstring expected =
        L"two " + std::to_wstring(flag) + L" bylayer 9000 9000 0.5:bylayer:bylayer -0.5:bylayer:bylayer";
    EXPECT_EQ(stored(L"Plain"), expected);
    EXPECT_EQ(parent.shown.back(), expected);
    drawing().undo();
  }
}

TEST_F(StyleEditorTest, RefusesWhatIsNoOffsetAndNoAngle) {
  const std::pair<int, const char*> cases[] = {{kOffset, "+1"},    {kOffset, "1 "},        {kOffset, ""},
                                               {kStartAngle, ""},  {kStartAngle, "9.99"},  {kEndAngle, "170.01"},
                                               {kEndAngle, "-90"}, {kStartAngle, "ninety"}};
  const std::wstring before = stored(L"Plain");
  for (const auto& [id, text] : cases) {
    SCOPED_TRACE(std::to_string(id) + text);
    const auto mistype = [&, id = id, text = text](QDialog& dialog) {
      select(dialog, 0);
      type(dialog, id, text);
      leave(dialog, id);
      EXPECT_EQ(dialog.focusWidget(), &control<QLineEdit>(dialog, id));
      EXPECT_THAT(std::exchange(messages.heard, {}), ElementsAre(L"beep"));
      press(dialog, IDOK);
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(parent.shown.back(), before);
      messages.heard.clear();
      dialog.close();
    };
    EXPECT_EQ(modify(L"Plain", mistype), IDCANCEL);
    EXPECT_TRUE(messages.heard.empty()) << "leaving the dialog is no input";
  }
  EXPECT_EQ(stored(L"Plain"), before);
}

TEST_F(StyleEditorTest, ARefusedOffsetKeepsItsElementUntilItIsPutRight) {
  change(L"Plain", [&](QDialog& dialog) {
    auto& offset = control<QLineEdit>(dialog, kOffset);
    select(dialog, 0);
    type(dialog, kOffset, "7abc");
    select(dialog, 1);
    QApplication::processEvents();
    EXPECT_THAT(messages.heard, ElementsAre(L"beep"));
    press(dialog, kAdd);
    EXPECT_EQ(table(dialog).rowCount(), 2);
    for (int i = 0; i < 2; ++i) emit table(dialog).horizontalHeader()->sectionClicked(0);
    EXPECT_EQ(table(dialog).currentRow(), 1) << "behind 0.5 and still the same";
    EXPECT_EQ(table(dialog).selectedItems().size(), 3);
    EXPECT_EQ(offset.text(), "7abc");
    EXPECT_TRUE(offset.hasFocus());
    type(dialog, kOffset, "8.5");
    select(dialog, 0);
    EXPECT_EQ(offset.text(), "0.5");
    type(dialog, kOffset, "x");
    press(dialog, kDelete);
    EXPECT_EQ(row(dialog, 0), "8.5|ByLayer|ByLayer|");
    EXPECT_EQ(offset.text(), "8.5");
  });
  EXPECT_EQ(stored(L"Plain"), L"two 0 bylayer 9000 9000 8.5:bylayer:bylayer");
}

TEST_F(StyleEditorTest, AClickSelectsWhatIsUnderTheMouseAlsoWhenRowsAreAboutToMove) {
  struct Case {
    const char *offset, *shown;
    int clicked, selected;
  };
  const Case cases[] = {
      {"8.5", "-0.5", 1, 0}, {"8.5", "10", 4, 4}, {"8.5", "8.5", 0, 2}, {"-3", "-0.5", 1, 1}, {"99", "0", 2, 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.offset << ' ' << c.clicked);
    modify(L"Rich", [&](QDialog& dialog) {
      select(dialog, 0);
      type(dialog, kOffset, c.offset);
      QWidget* viewport = table(dialog).viewport();
      table(dialog).scrollToItem(table(dialog).item(c.clicked, 0));
      const QPoint place = table(dialog).visualItemRect(table(dialog).item(c.clicked, 0)).center();
      QTest::mousePress(viewport, Qt::LeftButton, {}, place);
      QApplication::processEvents();
      QMouseEvent moved(QEvent::MouseMove, place + QPoint(1, 0), Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(viewport, &moved);
      QTest::mouseRelease(viewport, Qt::LeftButton, {}, place);
      QApplication::processEvents();
      EXPECT_EQ(table(dialog).currentRow(), c.selected);
      EXPECT_EQ(control<QLineEdit>(dialog, kOffset).text(), c.shown);
      EXPECT_EQ(parent.shown.back().find(L" -2:"), std::wstring::npos) << "the typed offset is taken";
      std::vector<double> offsets;
      for (int i = 0; i < 5; ++i) offsets.push_back(table(dialog).item(i, 0)->text().toDouble());
      EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end()));
      pressCancel(dialog);
    });
  }
}

TEST_F(StyleEditorTest, ANewStyleIsThereUntilItIsCancelled) {
  const std::string before = bytes();
  const std::pair<int, std::function<void(QDialog&)>> ends[] = {
      {IDCANCEL, pressCancel},
      {IDCANCEL, [](QDialog& dialog) { dialog.close(); }},
      {IDOK, [](QDialog& dialog) { press(dialog, IDOK); }},
  };
  for (const auto& [result, end] : ends) {
    const auto addElement = [&, finish = end](QDialog& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "New Multiline Style: Fresh");
      EXPECT_EQ(stored(L"Fresh"), stored(L"Rich"));
      press(dialog, kAdd);
      finish(dialog);
    };
    EXPECT_EQ(edit(EStyleEdit::newStyle, L"Rich", addElement), result);
    EXPECT_EQ(bytes() == before, result == IDCANCEL);
    EXPECT_EQ(stored(L"Fresh").find(L" 0:bylayer:bylayer") != std::wstring::npos, result == IDOK);
    EXPECT_EQ(drawing().undo().has_value(), result == IDOK);
    EXPECT_TRUE(bytes() == before);
    EXPECT_TRUE(drawing().openObjects().empty());
  }
}

TEST_F(StyleEditorTest, ANewStyleDoesNotTakeTheNameOfAnother) {
  addStyle(L"FRESH", L"taken");
  drawing().flush();
  const std::string before = bytes();
  for (const int end : {IDCANCEL, IDOK}) {
    edit(EStyleEdit::newStyle, L"Rich", [=](QDialog& dialog) { press(dialog, end); });
    EXPECT_TRUE(bytes() == before);
  }
}

TEST_F(StyleEditorTest, ItsPlaceIsKeptWithOkAlone) {
  expectPlaceKept(
      L"MlstyNewModDlg", [this](const auto& act) { modify(L"Plain", act); }, pressCancel,
      [](QDialog& dialog) { press(dialog, IDOK); });
}

TEST_F(StyleEditorTest, AnyColorCanBeChosen) {
  const auto chooseOther = [this](QDialog& editor, int id, const QString& color) {
    withNextDialog([color](QDialog& dialog) {
      dialog.findChild<QLineEdit*>("color")->setText(color);
      color.isEmpty() ? dialog.reject() : dialog.accept();
    });
    choose(editor, id, "Select color...");
    return textOf(editor, id);
  };
  change(L"Plain", [&](QDialog& dialog) {
    auto& box = control<QComboBox>(dialog, kElementColor);
    select(dialog, 0);
    choose(dialog, kElementColor, "Red");
    EXPECT_EQ(chooseOther(dialog, kElementColor, {}), "Red|");
    EXPECT_EQ(row(dialog, 0), "-0.5|ByLayer|Red|");
    for (const int i : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 10}) {
      EXPECT_EQ(chooseOther(dialog, kElementColor, QString("1,2,%1").arg(i)), "1,2," + std::to_string(i) + "|");
    }
    EXPECT_EQ(box.count(), 18) << "eight of them are kept";
    EXPECT_EQ(box.findText("1,2,2"), -1);
    EXPECT_EQ(box.findText("1,2,10"), 9);
    // The keyboard does not fall into the chooser.
    for (const auto key : {Qt::Key_End, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End}) {
      QTest::keyClick(&box, key, key == Qt::Key_PageDown ? Qt::KeypadModifier : Qt::NoModifier);
      EXPECT_EQ(row(dialog, 0), "-0.5|ByLayer|1,2,3|");
    }
    choose(dialog, kElementColor, "1,2,10");
    control<QCheckBox>(dialog, kFill).click();
    EXPECT_EQ(chooseOther(dialog, kFillColor, "146"), "146|");
  });
  EXPECT_EQ(stored(L"Plain"), L"two 1 146 9000 9000 0.5:bylayer:bylayer -0.5:bylayer:1,2,10");
}

TEST_F(StyleEditorTest, WithoutAStyleThereIsNoEditor) {
  const std::string before = bytes();
  for (const auto mode : {EStyleEdit::newStyle, EStyleEdit::modify}) {
    EXPECT_EQ(edit(mode, L"Nowhere", [](QDialog&) { ADD_FAILURE() << "an editor is shown"; }), IDCANCEL);
    QApplication::processEvents();
    EXPECT_TRUE(bytes() == before);
  }
  EXPECT_THAT(messages.heard, ElementsAre(L"beep", L"beep"));
  EXPECT_TRUE(drawing().openObjects().empty());
}

TEST(RealTextTest, TakesPlainNumbersOnly) {
  struct Case {
    const wchar_t* text;
    double value = 0;
    bool allowsMinus = true, trims = false;
  };
  const Case numbers[] = {{L"12.5", 12.5}, {L"-.5", -0.5}, {L"5.", 5}, {L"-.", 0}, {L" 1\t", 1, true, true}};
  for (const Case& c : numbers) {
    double value = -1;
    EXPECT_TRUE(gx_strIsValidReal(c.text, c.allowsMinus, c.trims, &value)) << c.text;
    EXPECT_EQ(value, c.value);
  }
  for (const wchar_t* text : {L"--1", L"1-", L"+1", L"1e2", L"1,000", L" 1", L"", L"1..2", L"\u0661"}) {
    EXPECT_FALSE(gx_strIsValidReal(text, true, false, nullptr)) << text;
  }
  EXPECT_FALSE(gx_strIsValidReal(L"-1", false, false, nullptr) || gx_strIsValidReal(L" ", true, true, nullptr));
  EXPECT_FALSE(gx_strIsValidReal(nullptr, true, false, nullptr));
  EXPECT_FALSE(gx_strIsValidReal(std::wstring(400, L'9').c_str(), true, false, nullptr));
  EXPECT_TRUE(gx_strIsValidReal((std::wstring(512, L'0') + L"x").c_str(), true, false, nullptr));
}

TEST_F(StyleEditorTest, ColorIndicesHaveNames) {
  for (const auto& [index, name] : {std::pair{0, L"BYBLOCK"}, {256, L"BYLAYER"}, {1, L"Red"}, {8, L"8"}}) {
    CStdStr<wchar_t> text;
    ColorToString(index, text);
    EXPECT_EQ(text, name);
    EXPECT_EQ(StringToColor(text), index);
  }
  EXPECT_EQ(StringToColor(L"bylayer"), 256);
  EXPECT_EQ(StringToColor(L"mauve"), 0);
}

}  // namespace

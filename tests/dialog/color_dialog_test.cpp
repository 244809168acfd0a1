#include "dialog/color_dialog.h"

#include <algorithm>
#include <set>

#include "support/dialog_driver.h"
#include "support/host_driver.h"

#include <QtWidgets/QColorDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

namespace {

class ColorDialogTest : public DialogTest, protected HostDriver {
 protected:
  ColorDialogTest() { startHost(); }

  /// What is chosen by `act`, followed by Enter unless that ended the dialog.
  std::wstring choose(const KdCmColor& present, const std::function<void(QDialog&)>& act) {
    withNextDialog([&](QDialog& dialog) {
      const QPointer<QDialog> guard(&dialog);
      EXPECT_EQ(dialog.windowTitle(), "Title");
      act(dialog);
      if (guard && guard->isVisible()) QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    const auto color = torva::dialog::chooseColor(nullptr, present, "Title");
    EXPECT_TRUE(!color || color->dictionaryKey() == present.dictionaryKey() || color->dictionaryKey().empty());
    return color ? color->displayName() : L"none";
  }
  static QWidget& palette(QDialog& dialog) { return *dialog.findChild<QWidget*>("palette"); }
  static QLineEdit& field(QDialog& dialog) { return *dialog.findChild<QLineEdit*>("color"); }
  static bool mayConfirm(QDialog& dialog) {
    const auto buttons = dialog.findChildren<QPushButton*>();
    return std::any_of(buttons.begin(), buttons.end(), [](auto* b) { return b->isDefault() && b->isEnabled(); });
  }
  static std::function<void(QDialog&)> keys(std::initializer_list<Qt::Key> keys) {
    return [list = std::vector<Qt::Key>(keys)](QDialog& dialog) {
      EXPECT_TRUE(palette(dialog).hasFocus());
      for (const Qt::Key key : list) QTest::keyClick(&palette(dialog), key);
    };
  }
  static std::function<void(QDialog&)> click(double x, double y, bool isDouble = false) {
    return [=](QDialog& dialog) {
      QWidget& all = palette(dialog);
      const QPoint place(static_cast<int>(x * all.width()), static_cast<int>(y * all.height()));
      if (isDouble) return QTest::mouseDClick(&all, Qt::LeftButton, {}, place);
      QTest::mouseClick(&all, Qt::LeftButton, {}, place);
    };
  }
  static std::function<void(QDialog&)> type(const char* text) {
    return [=](QDialog& dialog) {
      field(dialog).setFocus();
      field(dialog).selectAll();
      QTest::keyClicks(&field(dialog), text);
    };
  }
};

TEST_F(ColorDialogTest, OffersEveryColor) {
  using enum Qt::Key;
  KdCmColor book = KdCmColor::trueColor(0x102030);
  book.setNamesFromDictionaryKey(L"BOOK$SEA");
  const KdCmColor byLayer, red = KdCmColor::byIndex(1), orange = KdCmColor::byIndex(30);
  const struct {
    const char* name;
    KdCmColor present;
    std::function<void(QDialog&)> act;
    const wchar_t* chosen;
  } cases[] = {
      {"nothing done, of a book", book, keys({}), L"SEA"},
      {"cancelled", red, keys({Key_Escape}), L"none"},
      {"the end of a row", red, keys({Key_End, Key_Right}), L"9"},
      {"its begin", red, keys({Key_Right, Key_Home, Key_Left}), L"1"},
      {"up into the field", red, keys({Key_Up}), L"29"},
      {"down to the greys", red, keys({Key_Down, Key_Down, Key_End}), L"255"},
      {"a click", red, click(0.01, 0.01), L"18"},
      {"a double click", byLayer, click(0.99, 0.99, true), L"255"},
      {"a click between", red, click(0.5, 0.745), L"1"},
      {"a name", byLayer, type("Green"), L"3"},
      {"a true color", red, type("18, 52,86"), L"18,52,86"},
      {"typed, then walked on from there", red,
       [&](QDialog& dialog) {
         type("30")(dialog);
         palette(dialog).setFocus();
         keys({Key_Right})(dialog);
         EXPECT_EQ(field(dialog).text(), "40");
       },
       L"40"},
      {"true color dialog", orange,
       [&](QDialog& dialog) {
         withNextDialog([](QDialog& other) {
           auto& chooser = dynamic_cast<QColorDialog&>(other);
           EXPECT_EQ(chooser.currentColor().rgb() & 0xFFFFFF, KdCmColor::byIndex(30).rgb());
           chooser.setCurrentColor(QColor(1, 2, 3));
           chooser.accept();
         });
         dialog.findChild<QPushButton*>("trueColor")->click();
       },
       L"1,2,3"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(choose(c.present, c.act), c.chosen);
  }
  EXPECT_EQ(stillOpen, 0);
}

TEST_F(ColorDialogTest, WhatIsNoColorCannotBeConfirmed) {
  const auto tryTexts = [](QDialog& dialog) {
    EXPECT_TRUE(mayConfirm(dialog));
    for (const char* text : {"0", "256", "-1", "1,2", "1,2,256", "mauve", "bylayer", "BYBLOCK", "1,2,3,4", ""}) {
      field(dialog).setText(text);
      EXPECT_FALSE(mayConfirm(dialog)) << text;
    }
    QTest::keyClick(&field(dialog), Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    field(dialog).setText("255");
  };
  EXPECT_EQ(choose(KdCmColor::byIndex(5), tryTexts), L"255");
}

// Walking over all rows meets every index once.
TEST_F(ColorDialogTest, EveryIndexIsThereOnce) {
  std::multiset<int> met, all;
  for (int index = 1; index <= 255; ++index) all.insert(index);
  choose(KdCmColor::byIndex(18), [&](QDialog& dialog) {
    for (int row = 0; row < 12; ++row) {
      for (QString last; last != field(dialog).text(); QTest::keyClick(&palette(dialog), Qt::Key_Right)) {
        last = field(dialog).text();
        met.insert(last.toInt());
      }
      QTest::keyClick(&palette(dialog), Qt::Key_Home);
      QTest::keyClick(&palette(dialog), Qt::Key_Down);
    }
  });
  EXPECT_EQ(met, all);
}

}  // namespace

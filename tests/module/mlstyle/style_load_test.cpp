#include <filesystem>

#include "mlstyle/load/MlStyleLoadDlg.h"
#include "style_dialogs.h"

#include <QtWidgets/QLabel>

namespace {

enum : int { kFileName = 1057, kNames = 1058, kStatus = 1064 };

class StyleLoadTest : public StyleDialogTest {
 protected:
  /// Two styles of the drawing, one of them drawn with, saved into a library through the manager.
  StyleLoadTest() : m_library(QString::fromStdString(folder.path("my library.mln")).toStdWString()) {
    addStyle(L"Road", L"of the library");
    addStyle(L"Used");
    run("CMLSTYLE USED\nMLINE J Z S 1\n0,0\n10,0\n\n");
    chosenFile = m_library;
    manage([this](QDialog& dialog) {
      for (const char* name : {"Road", "Used", "Road"}) {
        select(name);
        press(dialog, kSave);
      }
    });
  }

  /// Presses Load in the manager, does `act` in the dialog and cancels it unless that ended it.
  void load(const std::function<void(QDialog&, QListWidget&)>& act) {
    manage([&](QDialog&) {
      withNextDialog([&](QDialog& dialog) {
        const QPointer<QDialog> guard(&dialog);
        act(dialog, control<QListWidget>(dialog, kNames));
        if (guard && guard->isVisible()) press(dialog, IDCANCEL);
      });
      press(*manager, kLoad);
      EXPECT_EQ(list->currentItem()->text(), "STANDARD") << "always afterwards";
    });
  }
  static std::wstring namesIn(const QListWidget& shown) {
    std::wstring names;
    for (int row = 0; row < shown.count(); ++row) names += shown.item(row)->text().toStdWString() + L' ';
    return names;
  }
  static bool mayLoad(QDialog& dialog) { return control<QPushButton>(dialog, IDOK).isEnabled(); }
  static void chooseFile(QDialog& dialog) { QTest::mouseClick(dialog.findChild<QPushButton*>("File"), Qt::LeftButton); }

  const std::wstring m_library;
};

TEST_F(StyleLoadTest, SavingAsksForAFileAndReplacesTheRecord) {
  ASSERT_EQ(requests.size(), 3u);
  EXPECT_EQ(requests.front().title, L"Save Multiline Style");
  EXPECT_TRUE(requests.front().start.ends_with(L"/Support/"));
  EXPECT_EQ(requests.front().extension, L"mln");
  EXPECT_EQ(requests.front().use, torva::command::FileUse::write);
  const std::string text = folder.read("my library.mln");
  EXPECT_EQ(text.find(" Road\n"), text.rfind(" Road\n"));
  EXPECT_LT(text.find(" Road\n"), text.find(" Used\n"));
  chosenFile.reset();
  const auto stamp = std::filesystem::last_write_time(folder.path("my library.mln"));
  manage([](QDialog& dialog) { press(dialog, kSave); });
  EXPECT_EQ(std::filesystem::last_write_time(folder.path("my library.mln")), stamp);
}

TEST_F(StyleLoadTest, AStyleIsLoadedFromTheChosenFile) {
  const std::function<void(QDialog&, QListWidget&)> ways[] = {
      [](QDialog& dialog, QListWidget&) { press(dialog, IDCANCEL); },
      [](QDialog& dialog, QListWidget&) { press(dialog, IDOK); },
      [](QDialog&, QListWidget& names) { clickRow(names, "Road", true); },
      [](QDialog&, QListWidget& names) { QTest::keyClick(&names, Qt::Key_Return); },
      [](QDialog&, QListWidget& names) { QTest::keyClick(&names, Qt::Key_Space); },
  };
  for (const auto& end : ways) {
    SCOPED_TRACE(&end - ways);
    host->editor().beginNewDrawing();
    const std::string before = bytes();
    load([&](QDialog& dialog, QListWidget& names) {
      chooseFile(dialog);
      EXPECT_EQ(namesIn(names), L"Road Used ");
      EXPECT_EQ(control<QLabel>(dialog, kFileName).text().toStdWString(), m_library);
      EXPECT_FALSE(mayLoad(dialog));
      names.setFocus();
      QTest::keyClick(&names, Qt::Key_Down);
      EXPECT_TRUE(mayLoad(dialog)) << "the first one by keys";
      names.clearSelection();
      EXPECT_FALSE(mayLoad(dialog));
      clickRow(names, "Road");
      EXPECT_TRUE(mayLoad(dialog));
      end(dialog, names);
    });
    if (&end != ways) {
      EXPECT_EQ(styleNames(), L"STANDARD Road ");
      run("U\n");
    }
    EXPECT_TRUE(bytes() == before);
  }
}

TEST_F(StyleLoadTest, AStyleInUseIsRefusedAndTheDialogStays) {
  const std::string before = bytes();
  load([&](QDialog& dialog, QListWidget& names) {
    EXPECT_EQ(control<QLabel>(dialog, kStatus).text(), "");
    chooseFile(dialog);
    clickRow(names, "Used");
    QTest::keyClick(&names, Qt::Key_Space);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(control<QLabel>(dialog, kStatus).text().contains("used by multilines"));
    clickRow(names, "Road");
    EXPECT_EQ(control<QLabel>(dialog, kStatus).text(), "");
  });
  EXPECT_TRUE(bytes() == before);
  EXPECT_EQ(kdrxGetProfileInt(L"Settings", L"MlstyleLoadDlgPosLeft", -10000), -10000);
}

TEST_F(StyleLoadTest, TheFileIsRememberedAndOneThatCannotBeReadChangesNothing) {
  load([&](QDialog& dialog, QListWidget& names) {
    EXPECT_TRUE(control<QLabel>(dialog, kFileName).text().endsWith("TORVA.mln"));
    chosenFile = m_library;
    chooseFile(dialog);
    EXPECT_EQ(requests.back().title, L"Load Multiline Style From File");
    EXPECT_TRUE(requests.back().start.ends_with(L"/Support/TORVA.mln"));
    EXPECT_EQ(requests.back().use, torva::command::FileUse::read);
    chosenFile.reset();
    chooseFile(dialog);
    EXPECT_EQ(namesIn(names), L"Road Used ");
    EXPECT_TRUE(dialog.focusWidget()->objectName() == "File");
  });
  load([&](QDialog& dialog, QListWidget& names) {
    EXPECT_EQ(namesIn(names), L"Road Used ");
    chosenFile = m_library + L".none";
    chooseFile(dialog);
    EXPECT_EQ(namesIn(names), L"Road Used ");
    EXPECT_EQ(control<QLabel>(dialog, kFileName).text().toStdWString(), m_library);
    clickRow(names, "Road");
    press(dialog, IDOK);
  });
  EXPECT_NE(kdrxGetProfileInt(L"Settings", L"MlstyleLoadDlgPosBottom", -10000), -10000);
}

}  // namespace

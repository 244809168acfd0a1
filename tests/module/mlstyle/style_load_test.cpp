#include <filesystem>
#include <fstream>
#include <iterator>

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
    manage([](QDialog& manager) {
      for (const char* name : {"Road", "Used", "Road"}) {
        clickRow(control<QListWidget>(manager, 1021), name);
        press(manager, kSave);
      }
    });
  }

  void manage(const std::function<void(QDialog&)>& act) {
    withNextDialog([&](QDialog& dialog) {
      act(dialog);
      dialog.reject();
    });
    run("MLSTYLE\n");
    EXPECT_EQ(stillOpen, 0);
  }
  /// Presses Load in the manager, does `act` in the dialog and cancels it unless that ended it.
  void load(const std::function<void(QDialog&, QListWidget&)>& act) {
    manage([&](QDialog& manager) {
      withNextDialog([&](QDialog& dialog) {
        const QPointer<QDialog> guard(&dialog);
        act(dialog, control<QListWidget>(dialog, kNames));
        if (guard && guard->isVisible()) press(dialog, IDCANCEL);
      });
      press(manager, kLoad);
      EXPECT_EQ(control<QListWidget>(manager, 1021).currentItem()->text(), "STANDARD") << "always afterwards";
    });
  }
  static std::wstring namesIn(const QListWidget& list) {
    std::wstring names;
    for (int row = 0; row < list.count(); ++row) names += list.item(row)->text().toStdWString() + L' ';
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
  std::ifstream file(folder.path("my library.mln"));
  const std::string text(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(text.find(" Road\n"), text.rfind(" Road\n"));
  EXPECT_LT(text.find(" Road\n"), text.find(" Used\n"));
  chosenFile.reset();
  const auto stamp = std::filesystem::last_write_time(folder.path("my library.mln"));
  manage([](QDialog& manager) { press(manager, kSave); });
  EXPECT_EQ(std::filesystem::last_write_time(folder.path("my library.mln")), stamp);
}

TEST_F(StyleLoadTest, AStyleIsLoadedFromTheChosenFile) {
  struct Way {
    const char* name;
    std::function<void(QDialog&, QListWidget&)> confirm;
  };
  const Way ways[] = {
      {"OK", [](QDialog& dialog, QListWidget&) { press(dialog, IDOK); }},
      {"double click", [](QDialog&, QListWidget& list) { clickRow(list, "Road", true); }},
      {"Enter", [](QDialog&, QListWidget& list) { QTest::keyClick(&list, Qt::Key_Return); }},
      {"the space bar", [](QDialog&, QListWidget& list) { QTest::keyClick(&list, Qt::Key_Space); }},
  };
  for (const Way& way : ways) {
    SCOPED_TRACE(way.name);
    host->editor().beginNewDrawing();
    const std::string before = bytes();
    const auto choose = [&](QDialog& dialog, QListWidget& list) {
      chooseFile(dialog);
      EXPECT_EQ(namesIn(list), L"Road Used ");
      EXPECT_EQ(control<QLabel>(dialog, kFileName).text().toStdWString(), m_library);
      EXPECT_FALSE(mayLoad(dialog));
      clickRow(list, "Road");
      EXPECT_TRUE(mayLoad(dialog));
      list.clearSelection();
      EXPECT_FALSE(mayLoad(dialog));
      list.setFocus();
      QTest::keyClick(&list, Qt::Key_Down);
      EXPECT_TRUE(mayLoad(dialog)) << "the first one by keys";
    };
    load(choose);
    EXPECT_TRUE(bytes() == before);
    load([&](QDialog& dialog, QListWidget& list) {
      choose(dialog, list);
      clickRow(list, "Road");
      way.confirm(dialog, list);
    });
    EXPECT_EQ(styleNames(), L"STANDARD Road ");
    run("U\n");
    EXPECT_TRUE(bytes() == before);
  }
}

TEST_F(StyleLoadTest, AStyleInUseIsRefusedAndTheDialogStays) {
  const std::string before = bytes();
  load([&](QDialog& dialog, QListWidget& list) {
    EXPECT_EQ(control<QLabel>(dialog, kStatus).text(), "");
    chooseFile(dialog);
    clickRow(list, "Used");
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(control<QLabel>(dialog, kStatus).text().contains("used by multilines"));
    clickRow(list, "Road");
    EXPECT_EQ(control<QLabel>(dialog, kStatus).text(), "");
  });
  EXPECT_TRUE(bytes() == before);
  EXPECT_EQ(kdrxGetProfileInt(L"Settings", L"MlstyleLoadDlgPosLeft", -10000), -10000);
}

TEST_F(StyleLoadTest, TheFileIsRememberedAndOneThatCannotBeReadChangesNothing) {
  load([&](QDialog& dialog, QListWidget& list) {
    EXPECT_TRUE(control<QLabel>(dialog, kFileName).text().endsWith("TORVA.mln"));
    chosenFile = m_library;
    chooseFile(dialog);
    EXPECT_EQ(requests.back().title, L"Load Multiline Style From File");
    EXPECT_TRUE(requests.back().start.ends_with(L"/Support/TORVA.mln"));
    EXPECT_EQ(requests.back().use, torva::command::FileUse::read);
    chosenFile.reset();
    chooseFile(dialog);
    EXPECT_EQ(namesIn(list), L"Road Used ");
    EXPECT_TRUE(dialog.focusWidget()->objectName() == "File");
  });
  load([&](QDialog& dialog, QListWidget& list) {
    EXPECT_EQ(namesIn(list), L"Road Used ");
    chosenFile = m_library + L".none";
    chooseFile(dialog);
    EXPECT_EQ(namesIn(list), L"Road Used ");
    EXPECT_EQ(control<QLabel>(dialog, kFileName).text().toStdWString(), m_library);
    clickRow(list, "Road");
    press(dialog, IDOK);
  });
  EXPECT_NE(kdrxGetProfileInt(L"Settings", L"MlstyleLoadDlgPosBottom", -10000), -10000);
}

}  // namespace

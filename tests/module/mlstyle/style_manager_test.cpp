#include <gmock/gmock.h>

#include "mlstyle/manager/MlineStyleDialog.h"
#include "style_dialogs.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QTextEdit>

namespace {

using testing::ElementsAre;

enum : int {
  kCurrent = 1022,
  kDescription = 1024,
  kPreview = 1025,
  kSetCurrent = 1026,
  kNew = 1028,
  kModify = 1029,
  kRename = 1030,
  kDelete = 1031,
};

class StyleManagerTest : public StyleDialogTest {
 protected:
  /// The manager's own styles beside STANDARD: two in use, one in use nowhere.
  StyleManagerTest() {
    addStyle(L"Used", L"drawn");
    addStyle(L"Paper");
    addStyle(L"Free", L"<b>A & B</b>");
    run("CMLSTYLE USED\nMLINE J Z S 1\n0,0\n10,0\n\nCMLSTYLE Paper\nMLINE 0,0\n10,0\n\nCMLSTYLE Free\n");
  }

  /// Types a name into an edit of the dialog that is shown next and confirms it, after doing `before`.
  void giveName(
      int edit, const char* name, const std::function<void()>& before = [] {}) {
    withNextDialog([=](QDialog& asked) {
      QTest::keyClicks(&control<QLineEdit>(asked, edit), name);
      before();
      press(asked, IDOK);
    });
  }
  void loadRoad() {
    withNextDialog([](QDialog& asked) { clickRow(control<QListWidget>(asked, 1058), "ROAD", true); });
    press(*manager, kLoad);
  }
  QString selected() { return list->currentItem() ? list->currentItem()->text() : QString(); }
  QString label(int id) { return control<QLabel>(*manager, id).text(); }
  /// The initials of the buttons that may be pressed: set Current, Modify, Rename, Delete.
  std::string allowed() {
    std::string initials;
    for (const auto& [id, initial] : {std::pair{kSetCurrent, 'C'}, {kModify, 'M'}, {kRename, 'R'}, {kDelete, 'D'}}) {
      if (control<QPushButton>(*manager, id).isEnabled()) initials += initial;
    }
    return initials;
  }
};

TEST_F(StyleManagerTest, AStyleSaysWhatMayBeDoneWithIt) {
  struct Case {
    const char *current, *name, *allowed, *description;
  };
  const Case cases[] = {
      {"free", "Free", "MR", "<b>A & B</b>"}, {"free", "STANDARD", "CMD", ""},
      {"free", "Used", "C", "drawn"},         {"free", "Paper", "C", ""},
      {"uSED", "Used", "", "drawn"},          {"Used", "Free", "CMRD", "<b>A & B</b>"},
      {"standard", "STANDARD", "M", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.current << ' ' << c.name);
    run(std::string("CMLSTYLE ") + c.current + "\n");
    const std::string before = bytes();
    manage([&](QDialog& dialog) {
      EXPECT_EQ(selected().compare(c.current, Qt::CaseInsensitive), 0);
      EXPECT_EQ(label(kCurrent), QString::fromStdWString(current()));
      EXPECT_FALSE(dialog.windowIcon().isNull());
      select("Paper");
      EXPECT_EQ(allowed(), "C");
      while (selected() != c.name) QTest::keyClick(list, list->currentRow() ? Qt::Key_Up : Qt::Key_End);
      EXPECT_EQ(allowed(), c.allowed) << "by keys";
      select(c.name);
      EXPECT_EQ(allowed(), c.allowed);
      EXPECT_EQ(label(kDescription), c.description);
    });
    EXPECT_TRUE(bytes() == before);
  }
}

TEST_F(StyleManagerTest, EachOperationIsAStepOfUndo) {
  const auto addElement = [this] {
    withNextDialog([](QDialog& editor) {
      press(editor, 1051);
      press(editor, IDOK);
    });
  };
  const std::function<void()> operations[] = {
      [&] {
        giveName(1035, "Pap", addElement);
        press(*manager, kNew);
        EXPECT_EQ(selected(), "Paper") << "the first row that begins so";
      },
      [&] {
        select("Pap");
        addElement();
        press(*manager, kModify);
      },
      [&] {
        giveName(1060, "Road2");
        press(*manager, kRename);
      },
      [&] { loadRoad(); },
      [&] {
        select("Free");
        press(*manager, kDelete);
      },
      [&] {
        select("Used");
        press(*manager, kSetCurrent);
      },
  };
  run("CMLSTYLE STANDARD\n");
  std::vector<std::string> states = {bytes()};
  manage([&](QDialog&) {
    for (const auto& operation : operations) {
      EXPECT_TRUE(bytes() == states.back());
      operation();
      states.push_back(bytes());
    }
    EXPECT_EQ(list->count(), 5);
  });
  EXPECT_EQ(styleNames(), L"STANDARD Used Paper Road2 ROAD ");
  for (std::size_t i = std::size(operations); i > 0; --i) {
    EXPECT_FALSE(states[i] == states[i - 1]) << i;
    run("U\n");
    EXPECT_TRUE(bytes() == states[i - 1]) << i;
  }
}

TEST_F(StyleManagerTest, RowsFollowWhatWentThrough) {
  COpenedObject<KdDbDictionary>(dictionaryId(), KdOpenMode::forWrite)->setName(L"STANDARD", L"First");
  manage([&](QDialog& dialog) {
    select("First");
    press(dialog, kDelete);
    EXPECT_EQ(list->item(0)->text(), "Used");
    EXPECT_EQ(selected(), "Used") << "the new first row";
    {
      const COpenedObject<KdDbDictionary> reader(dictionaryId(), KdOpenMode::forRead);
      loadRoad();
      EXPECT_EQ(list->count(), 3) << "the drawing did not take it";
    }
    for (int i = 0; i < 2; ++i) {
      loadRoad();
      EXPECT_EQ(list->count(), 4) << "appended once";
      EXPECT_EQ(list->item(3)->text(), "ROAD");
    }
    select("ROAD");
    COpenedObject<KdDbDictionary>(dictionaryId(), KdOpenMode::forWrite)->remove(L"ROAD");
    press(dialog, kSetCurrent);
    EXPECT_EQ(label(kCurrent), "Free") << "the drawing refuses a style that is gone";
    EXPECT_EQ(allowed(), "CMRD");
  });
  EXPECT_EQ(current(), L"Free");
}

TEST_F(StyleManagerTest, AStyleIsMadeCurrent) {
  manage([&](QDialog& dialog) {
    select("Used");
    press(dialog, kSetCurrent);
    EXPECT_EQ(label(kCurrent), "Used");
    EXPECT_EQ(allowed(), "");
    EXPECT_TRUE(control<QPushButton>(dialog, kNew).hasFocus());
    clickRow(*list, "Free", true);
    EXPECT_EQ(current(), L"Free");
    EXPECT_EQ(allowed(), "MR");
  });
  run("U\n");
  EXPECT_EQ(current(), L"Used");
  run("CMLSTYLE standard\n");
  for (const bool isChanged : {true, false}) {
    const std::string before = bytes();
    manage([&](QDialog&) { clickRow(*list, "STANDARD", true); });
    EXPECT_EQ(current(), L"STANDARD") << "letters in another case are another name to the double click";
    EXPECT_EQ(bytes() != before, isChanged);
  }
}

TEST_F(StyleManagerTest, ARenamedStyleIsShownAsTheCurrentOne) {
  manage([&](QDialog& dialog) {
    select("Free");
    giveName(1060, "Road2");
    press(dialog, kRename);
    EXPECT_EQ(selected() + label(kCurrent), "Road2Road2");
    EXPECT_EQ(label(kDescription), "<b>A & B</b>");
    EXPECT_EQ(allowed(), "MR") << "as the current one";
  });
  EXPECT_EQ(styleNames(), L"STANDARD Used Paper Road2 ");
  EXPECT_EQ(current(), L"Free") << "the drawing's variable stays";
}

TEST_F(StyleManagerTest, AStyleIsDeletedWhenTheUserSaysSo) {
  run("CMLSTYLE Used\n");
  const std::string before = bytes();
  messages.answer = IDNO;
  manage([&](QDialog& dialog) {
    select("STANDARD");
    press(dialog, kDelete);
    EXPECT_THAT(messages.heard, ElementsAre()) << "never deleted";
    select("Free");
    press(dialog, kDelete);
    EXPECT_THAT(messages.heard, ElementsAre(L"TORVA|Delete the multiline style \"Free\"?|36"));
    EXPECT_TRUE(bytes() == before);
    messages.answer = IDYES;
    press(dialog, kDelete);
    EXPECT_EQ(selected(), "Paper");
    EXPECT_EQ(allowed(), "C");
    EXPECT_TRUE(list->hasFocus());
  });
  EXPECT_EQ(styleNames(), L"STANDARD Used Paper ");
}

TEST_F(StyleManagerTest, WhatIsCancelledAfterSavingLeavesNoTrace) {
  const auto save = [&] {
    EXPECT_TRUE(drawing().save(folder.path("saved.dxf"), {}));
    return bytes();
  };
  const std::string saved = save();
  manage([&](QDialog& dialog) {
    select("Free");
    const auto picture = [&] { return control<QTextEdit>(dialog, kPreview).grab().toImage(); };
    const QImage before = picture();
    const auto changeAndCancel = [&] {
      withNextDialog([&](QDialog& editor) {
        press(editor, 1051);
        EXPECT_NE(picture(), before);
        press(editor, IDCANCEL);
      });
    };
    for (const int button : {kNew, kRename}) {
      withNextDialog([](QDialog& asked) { press(asked, IDCANCEL); });
      press(dialog, button);
    }
    giveName(1035, "None", changeAndCancel);
    press(dialog, kNew);
    EXPECT_EQ(picture(), before);
    changeAndCancel();
    press(dialog, kModify);
    EXPECT_EQ(picture(), before) << "the drawing's again";
    EXPECT_EQ(selected(), "Free");
    EXPECT_EQ(list->count(), 4);
  });
  EXPECT_FALSE(drawing().file().isModified());
  EXPECT_TRUE(save() == saved);
  EXPECT_NE(drawing().undo(), L"MLSTYLE");
}

TEST_F(StyleManagerTest, ItsPlaceIsKeptWhenItIsClosedAndNotWhenItIsLeft) {
  expectPlaceKept(
      L"Mlstyle", [this](const auto& act) { manage(act); },
      [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
      [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
}

TEST_F(StyleManagerTest, WithoutAPlaceForStylesNothingCanBeDone) {
  const auto expectClosed = [&](const QString& description) {
    manage([&](QDialog& dialog) {
      EXPECT_EQ(list->count(), 0);
      EXPECT_EQ(label(kDescription), description);
      for (const auto* button : dialog.findChildren<QPushButton*>()) {
        EXPECT_EQ(button->isEnabled(), button->property("controlId") == IDOK) << button->text().toStdString();
      }
    });
  };
  COpenedObject<KdDbDictionary>(drawing().namedObjectsDictionaryId(), KdOpenMode::forWrite)->remove(L"ACAD_MLINESTYLE");
  expectClosed("");
  const std::string old = folder.write("r12.dxf", "0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n");
  ASSERT_TRUE(host->openDrawing(old, torva::dxf::DamagePolicy::refuse));
  expectClosed("TextLabel");
}

TEST_F(StyleManagerTest, ItIsNotMadeSmallerThanItWas) {
  CMlineStyleDialog logic(nullptr);
  withNextDialog([&](QDialog& dialog) {
    const tagRECT before = logic.GetWindowRect();
    tagRECT proposed{before.left, before.top, before.left + 100, before.top + 50};
    logic.OnSizing(0, &proposed);
    EXPECT_EQ(QSize(proposed.Width(), proposed.Height()), dialog.size());
    dialog.reject();
  });
  logic.DoModal();
}

}  // namespace

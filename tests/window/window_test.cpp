#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "layers_panel.h"
#include "runtime/folders.h"
#include "runtime/recovery.h"
#include "support/message_answers.h"
#include "window/window_driver.h"

#include <kdrx/ui.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QCompleter>
#include <QDropEvent>
#include <QMimeData>
#include <QTreeWidget>
#include <QWheelEvent>

namespace {

using testing::HasSubstr;
using torva::command::Question;

// Picks in samples/closed-cross.dxf, each in the middle of an element.
constexpr double kFirstX = 1725, kFirstY = 900, kSecondX = 900, kSecondY = 2200;

class Window : public WindowTest {
 protected:
  /// Presses a picture of the dialog that comes next.
  Step pressNext(const QString& button) {
    return [=, this] {
      withNextDialog([button](QDialog& dialog) {
        auto* picture = dialog.findChild<QAbstractButton*>(button);
        ASSERT_TRUE(picture) << button.toStdString();
        QTest::mouseClick(picture, Qt::LeftButton);
      });
      source.giveCommand(L"MLEDIT");
    };
  }
  Step expectKind(Question::Kind kind) {
    return [=, this] { EXPECT_EQ(source.question()->kind, kind); };
  }
  Step expectChanged(bool isExpected) {
    return [=, this] { EXPECT_EQ(isChanged(), isExpected); };
  }
  Step give(const std::wstring& line) {
    return [=, this] { source.giveCommand(line); };
  }
  Step zoomExtents() {
    return [this] { window->canvas().zoomExtents(); };
  }
};

TEST_F(Window, aToolPickedByItsPictureIsUsedWithTheMouseUndoneAndSaved) {
  openSample("closed-cross.dxf");
  std::string edited;
  const std::string path = folder.path("saved.dxf");
  run({zoomExtents(), pressNext("ClosedCross"), expectKind(Question::Kind::entity), click(kFirstX, kFirstY),
       click(kSecondX, kSecondY), rightClick(), expectKind(Question::Kind::command), expectChanged(true),
       [&] { edited = drawing().file().toBytes(); }, give(L"U"), expectChanged(false), give(L"REDO"),
       give(L"SAVEAS \"" + std::wstring(path.begin(), path.end()) + L"\""),
       give(L"OPEN \"" + std::wstring(path.begin(), path.end()) + L"\""),
       [&] { EXPECT_EQ(drawing().file().toBytes(), edited); }});
  EXPECT_EQ(reported, "");
}

TEST_F(Window, escapeLeavesTheDrawingAsItWasAtEveryPrompt) {
  openSample("closed-cross.dxf");
  run({zoomExtents(), give(L"-MLEDIT"), key(Qt::Key_Escape), expectKind(Question::Kind::command), give(L"-MLEDIT CC"),
       key(Qt::Key_Escape), expectKind(Question::Kind::command), give(L"-MLEDIT CC"), click(kFirstX, kFirstY),
       key(Qt::Key_Escape), expectKind(Question::Kind::command), expectChanged(false)});
  EXPECT_TRUE(drawing().openObjects().empty());
}

TEST_F(Window, whatIsTypedAnywhereIsAnAnswer) {
  run({key(Qt::Key_Shift), keys("line 0,0 10,0"), key(Qt::Key_Return), key(Qt::Key_Space),
       expectKind(Question::Kind::command),
       // Enter runs the last command again.
       key(Qt::Key_Return), [this] { EXPECT_EQ(editor().runningTool(), L"LINE"); }, key(Qt::Key_Escape),
       // The last answer comes back.
       key(Qt::Key_Up), [this] { EXPECT_EQ(window->findChild<QLineEdit*>("answer")->text(), "10,0"); }, key(Qt::Key_Escape),
       give(L"ZOOM"),
       [this] {
         // A keyword of the prompt is a link to itself.
         EXPECT_THAT(promptWithLinks(*source.question()).toStdString(), HasSubstr("<a href=\"Window\">Window</a>"));
       },
       key(Qt::Key_Escape)});
  EXPECT_THAT(transcript().toStdString(), HasSubstr("Specify first point: 0,0"));
}

TEST_F(Window, whatIsChosenIsSeenUntilTheCommandEndsOrEscapeAndErasedByTheDeleteKey) {
  openSample("closed-cross.dxf");
  const auto expectChosen = [this](std::size_t count) {
    return [=, this] { EXPECT_EQ(editor().pickedFirst().size(), count); };
  };
  run({zoomExtents(), click(kFirstX, kFirstY), expectChosen(1), click(kFirstX, kFirstY, Qt::ShiftModifier), expectChosen(0),
       click(kFirstX, kFirstY), expectChosen(1), key(Qt::Key_Escape), expectChosen(0), give(L"ERASE"),
       click(kFirstX, kFirstY), expectChosen(1), click(kSecondX, kSecondY), expectChosen(2), key(Qt::Key_Escape),
       expectChosen(0), expectChanged(false),
       // The first corner of a window stays where it is in the drawing.
       click(2300, 1300), [this] { editor().view().set(editor().view().centerDcs(), editor().view().height() * 3); },
       click(1200, 1100), expectChosen(1), key(Qt::Key_Escape), zoomExtents(),
       // From the right a window takes what it touches, from the left what lies in it.
       drag(2300, 1300, 1200, 1100), expectChosen(1), drag(1200, 1100, 2300, 1300), expectChosen(1),
       [this] { window->findChild<QAction*>("ERASE")->trigger(); }, expectChanged(true), expectChosen(0)});
}

TEST_F(Window, anEmptyAnswerLineLeavesUndoAndErasingToTheDrawing) {
  openSample("closed-cross.dxf");
  auto* answer = window->findChild<QLineEdit*>("answer");
  // Whether the key is the line's own; if not, it is the shortcut of an entry.
  const auto takes = [&](int code, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::ShortcutOverride, code, modifiers);
    event.ignore();
    QApplication::sendEvent(answer, &event);
    return event.isAccepted();
  };
  for (const bool isEmpty : {true, false}) {
    answer->setText(isEmpty ? "" : "12");
    EXPECT_EQ(takes(Qt::Key_Z, Qt::ControlModifier), !isEmpty);
    EXPECT_EQ(takes(Qt::Key_Delete, Qt::NoModifier), !isEmpty);
  }
}

TEST_F(Window, completionsGoWithTheAnswer) {
  auto* answer = window->findChild<QLineEdit*>("answer");
  const auto expectPopup = [answer](bool isSeen) {
    return [=] { EXPECT_EQ(answer->completer()->popup()->isVisible(), isSeen) << answer->text().toStdString(); };
  };
  const auto type = [answer](const QString& text) { return [=] { QTest::keyClicks(answer, text); }; };
  run({type("lin"), expectPopup(true), [&] { QTest::keyClick(answer->completer()->popup(), Qt::Key_Escape); },
       expectPopup(false), key(Qt::Key_Escape), type("LINE"), [&] { QTest::keyClick(answer, Qt::Key_Return); },
       expectPopup(false), [this] { EXPECT_EQ(editor().runningTool(), L"LINE"); }, key(Qt::Key_Escape)});
}

TEST_F(Window, undoTakesBackTheStepThatTheCommandOffersTo) {
  const auto undo = [this] { window->findChild<QAction*>("U")->trigger(); };
  run({give(L"LINE 0,0 10,0 20,0"), undo, [this] { EXPECT_EQ(editor().runningTool(), L"LINE"); }, give(L""), undo});
  EXPECT_THAT(transcript().toStdString(), HasSubstr(": Undo"));
}

TEST_F(Window, aPropertyIsChangedByAChoiceAloneAndTheSelectionStays) {
  openSample("closed-cross.dxf");
  auto* layer = window->findChild<QComboBox*>("layer");
  const auto choose = [layer](const QString& name) { return [=] { emit layer->textActivated(name); }; };
  const auto expectLayer = [this, layer](const QString& name) {
    return [=, this] {
      EXPECT_EQ(editor().pickedFirst().size(), 1u);
      EXPECT_EQ(layer->currentText(), name);
    };
  };
  const auto turnTheWheel = [layer] {
    QWheelEvent wheel(QPointF(5, 5), QPointF(layer->mapToGlobal(QPoint(5, 5))), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(layer, &wheel);
  };
  QString first, other;
  run({zoomExtents(), click(kFirstX, kFirstY), [&] { QTest::keyClicks(layer, "0"); }, turnTheWheel, choose("(varies)"),
       [&] { EXPECT_EQ(window->findChild<QLineEdit*>("answer")->text(), "0"); }, key(Qt::Key_Backspace),
       expectKind(Question::Kind::command), expectChanged(false),
       [&] {
         first = layer->currentText();
         other = layer->itemText(layer->currentIndex() == 0 ? 1 : 0);
         choose(other)();
       },
       [&] { expectLayer(other)(); }, [&] { choose(first)(); }, [&] { expectLayer(first)(); }});
  EXPECT_EQ(reported, "");
}

TEST_F(Window, aDroppedFileIsOpened) {
  const QString path = TORVA_SOURCE_DIR "/samples/open-cross.dxf";
  QMimeData dropped;
  dropped.setUrls({QUrl::fromLocalFile(path)});
  run({[&] {
         QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
         QApplication::sendEvent(window.get(), &enter);
         EXPECT_TRUE(enter.isAccepted());
         QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
         QApplication::sendEvent(window.get(), &drop);
       },
       [&] { EXPECT_EQ(drawing().file().path(), path.toStdString()); }});
  EXPECT_EQ(reported, "");
}

TEST_F(Window, theResultIsShownBeforeTheSecondPick) {
  openSample("closed-cross.dxf");
  run({zoomExtents(), give(L"-MLEDIT CC"), click(kFirstX, kFirstY), hover(10, 10),
       [&] { EXPECT_TRUE(QTest::qWaitFor([this] { return window->canvas().isComplete(); })); }, hover(kSecondX, kSecondY),
       [&] { EXPECT_TRUE(QTest::qWaitFor([this] { return !window->canvas().preview().primitives.empty(); })); },
       expectChanged(false), key(Qt::Key_Escape), [&] { EXPECT_TRUE(window->canvas().preview().primitives.empty()); }});
}

TEST_F(Window, whatACrashedProgramLeftIsOpenedBehindTheDrawingThatIsAskedFor) {
  MessageAnswers user;
  const std::string original = TORVA_SOURCE_DIR "/samples/closed-cross.dxf";
  if (const pid_t crashed = ::fork(); crashed == 0) {
    std::vector<torva::dxf::Finding> findings;
    auto drawing = torva::db::Database::open(original, torva::dxf::DamagePolicy::refuse, findings);
    (*drawing)->setErased((*drawing)->file().find(0x47), true);
    torva::runtime::Recovery recovery(torva::runtime::defaultRecoveryFolder());
    const bool isKept = recovery.keep(**drawing).has_value() && recovery.finish().has_value();
    ::_exit(isKept ? 0 : 1);
  } else {
    int status = -1;
    ASSERT_EQ(::waitpid(crashed, &status, 0), crashed);
    ASSERT_EQ(status, 0);
  }
  source.answer(L"OPEN \"" + std::wstring(original.begin(), original.end()) + L"\"");
  run({});
  EXPECT_TRUE(editor().hasUnsavedChanges());
  const torva::dxf::RecordId erased = drawing().file().find(0x47);
  EXPECT_TRUE(erased == torva::dxf::kNoRecord || drawing().file().isErased(erased));
  EXPECT_EQ(reported, "");
  EXPECT_EQ(user.heard.size(), 1u);
  EXPECT_EQ(drawing().file().path(), original);
}

TEST_F(Window, layersAreChangedByTheirMarks) {
  openSample("floor-plan.dxf");
  auto* layers = window->findChild<QTreeWidget*>("layers");
  const auto click = [layers](const QString& name, int column) {
    return [=] {
      const auto found = layers->findItems(name, Qt::MatchExactly);
      ASSERT_EQ(found.size(), 1);
      emit layers->itemClicked(found.first(), column);
    };
  };
  const auto walls = [this] {
    for (const auto& layer : torva::db::readLayers(drawing())) {
      if (layer.name == L"WALLS") return layer;
    }
    return torva::db::LayerData();
  };
  run({click("WALLS", LayersPanel::kOn), [&] { EXPECT_TRUE(walls().isOff); }, click("WALLS", LayersPanel::kLocked),
       [&] { EXPECT_TRUE(walls().isLocked); }, click("WALLS", LayersPanel::kOn), [&] { EXPECT_FALSE(walls().isOff); },
       [&] {
         withNextDialog([&](QDialog& dialog) {
           auto* color = dialog.findChild<QLineEdit*>("color");
           EXPECT_EQ(color->text().toInt(), walls().color.colorIndex());
           color->setText("146");
           dialog.accept();
         });
         click("WALLS", LayersPanel::kColor)();
       },
       [&] { EXPECT_EQ(walls().color, KdCmColor::byIndex(146)); }});
  EXPECT_EQ(reported, "");
}

}  // namespace

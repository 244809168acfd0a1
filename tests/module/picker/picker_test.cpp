#include <gmock/gmock.h>

#include "command/input_source.h"
#include "mledit/picker/MLEditDialog.h"
#include "mledit/picker/MLEditWidget.h"
#include "runtime/host.h"
#include "runtime/pictures.h"
#include "support/dialog_driver.h"
#include "support/temporary_folder.h"

#include <kdrx/rx.h>

#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using torva::runtime::DialogUse;

struct Button {
  const char* name;
  const char* label;
  int id;
  int tool;
  const wchar_t* picture;
};

constexpr Button kButtons[] = {
    {"ClosedCross", "Closed Cross", 5759, 1, L"IDB_CLOSE_CROSS"},
    {"OpenCross", "Open Cross", 5760, 2, L"IDB_OPEN_CROSS"},
    {"MergedCross", "Merged Cross", 5761, 3, L"IDB_MERGED_CROSS"},
    {"ClosedTee", "Closed Tee", 5762, 4, L"IDB_CLOSE_TREE"},
    {"OpenTee", "Open Tee", 5763, 5, L"IDB_OPEN_TREE"},
    {"MergedTee", "Merged Tee", 5764, 6, L"IDB_MERGED_TREE"},
    {"CornerJoint", "Corner Joint", 5765, 7, L"IDB_CORNER_JOINT"},
    {"AddVertex", "Add Vertex", 5767, 8, L"IDB_ADD_VERTEX"},
    {"DeleteVertex", "Delete Vertex", 5766, 9, L"IDB_DELETE_VERTEX"},
    {"CutSingle", "Cut Single", 5768, 10, L"IDB_CUT_SINGLE"},
    {"CutAll", "Cut All", 5769, 11, L"IDB_CUT_ALL"},
    {"WeldAll", "Weld All", 5770, 12, L"IDB_WELD_ALL"},
    {"Close", "", 5771, 13, nullptr},
};

class PickerTest : public DialogTest {
 protected:
  PickerTest() { startHost(DialogUse::shown); }

  void startHost(DialogUse dialogUse) {
    torva::runtime::HostOptions options;
    options.profileFolder = m_folder.path("profile");
    options.programFolder = TORVA_BINARY_DIR "/bin";
    options.dialogUse = dialogUse;
    options.print = [this](std::wstring_view text) { printed += text; };
    options.report = [this](const std::string& text) { reported += text; };
    host.reset();
    host = std::move(*torva::runtime::Host::create(options));
    AfxSetResourceHandle(loadResourceDll(L"KdrxMLStyleRes.dll"));
  }

  void run(const std::string& script) {
    host->editor().run(*torva::command::ScriptSource::fromText(script, "test"), torva::command::OnFault::goOn);
  }

  static QPushButton& button(QDialog& dialog, const Button& row) { return *dialog.findChild<QPushButton*>(row.name); }

  std::unique_ptr<torva::runtime::Host> host;
  std::wstring printed;
  std::string reported;

 private:
  TemporaryFolder m_folder;
};

TEST_F(PickerTest, EveryButtonRecordsItsNumberAndEndsWithOk) {
  for (const Button& row : kButtons) {
    SCOPED_TRACE(row.name);
    CMLEditDialog dialog(nullptr);
    EXPECT_EQ(dialog.GetTool(), 0);
    withNextDialog([&](QDialog& widget) {
      EXPECT_EQ(static_cast<QBaseDialog&>(widget).GetControl(row.id), &button(widget, row));
      QTest::mouseClick(&button(widget, row), Qt::LeftButton);
    });
    EXPECT_EQ(dialog.DoModal(), 1);
    EXPECT_EQ(dialog.GetTool(), row.tool);
  }
  EXPECT_EQ(stillOpen, 0);
}

TEST_F(PickerTest, KeysAndTheFrameEndItToo) {
  struct Case {
    const char* name;
    std::function<void(QDialog&)> act;
    int result, tool;
  };
  const Case cases[] = {
      {"frame", [](QDialog& widget) { widget.close(); }, 2, 0},
      {"Escape", [](QDialog& widget) { QTest::keyClick(&widget, Qt::Key_Escape); }, 2, 0},
      {"mnemonic",
       [](QDialog& widget) {
         QTest::keyClick(&widget, Qt::Key_C, Qt::AltModifier);
         // Qt shows the button held down for a moment first.
         static_cast<void>(QTest::qWaitFor([&] { return !widget.isVisible(); }));
       },
       1, 13},
      {"Enter on the second button",
       [](QDialog& widget) {
         QTest::keyClick(widget.focusWidget(), Qt::Key_Tab);
         QTest::keyClick(widget.focusWidget(), Qt::Key_Return);
       },
       1, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CMLEditDialog dialog(nullptr);
    withNextDialog(c.act);
    EXPECT_EQ(dialog.DoModal(), c.result);
    EXPECT_EQ(dialog.GetTool(), c.tool);
  }
  EXPECT_EQ(stillOpen, 0);
}

TEST_F(PickerTest, ShowsItsTextsInOrder) {
  const KVUI::CMLEditDialog widget(nullptr, nullptr);
  EXPECT_EQ(widget.objectName(), "MleditDialog");
  EXPECT_EQ(widget.windowTitle(), "Multilines Edit Tools");
  std::vector<std::string> texts;
  for (const QLabel* label : widget.findChildren<QLabel*>()) texts.push_back(label->text().toStdString());
  EXPECT_THAT(texts, ElementsAre("To use a tool, click on the icon. Object selection must be performed after the tool\nhas "
                                 "been selected",
                                 "Closed Cross", "Closed Tee", "Corner Joint", "Cut Single", "Open Cross", "Open Tee",
                                 "Add Vertex", "Cut All", "Merged Cross", "Merged Tee", "Delete Vertex", "Weld All"));
  for (const Button& row : kButtons) {
    EXPECT_EQ(widget.findChild<QPushButton*>(row.name)->accessibleName(), row.label);
  }
}

TEST_F(PickerTest, WithoutLogicItsButtonsDoNothing) {
  KVUI::CMLEditDialog widget(nullptr, nullptr);
  widget.show();
  for (const Button& row : kButtons) button(widget, row).click();
  EXPECT_TRUE(widget.isVisible());
  widget.close();
  EXPECT_FALSE(widget.isVisible());
}

TEST_F(PickerTest, ButtonsShowAPictureForEachState) {
  const auto picture = [](const Button& row, const wchar_t* state) {
    const auto bytes = torva::runtime::pictureOf(AfxGetResourceHandle(), row.picture + std::wstring(state));
    return bytes ? QImage::fromData(QByteArray::fromStdString(*bytes)).convertToFormat(QImage::Format_ARGB32) : QImage();
  };
  const auto shown = [](const QPushButton& button, QIcon::Mode mode) {
    return button.icon().pixmap(64, mode).toImage().convertToFormat(QImage::Format_ARGB32);
  };
  CMLEditDialog dialog(nullptr);
  dialog.OnInitDialog();
  auto& widget = static_cast<QDialog&>(*dialog.GetWidget());
  const KVUI::CMLEditDialog plain(nullptr, nullptr);
  for (const Button& row : kButtons) {
    if (!row.picture) continue;
    SCOPED_TRACE(row.name);
    const QImage up = picture(row, L"_UP"), down = picture(row, L"_DOWN"), focus = picture(row, L"_FOCUS");
    ASSERT_EQ(up.size(), QSize(64, 64));
    EXPECT_EQ(picture(row, L"_UP@2x").size(), QSize(128, 128));
    EXPECT_TRUE(up != down && up != focus && down != focus);
    QPushButton& control = button(widget, row);
    EXPECT_EQ(shown(control, QIcon::Normal), up);
    EXPECT_EQ(shown(control, QIcon::Active), focus);
    EXPECT_EQ(shown(control, QIcon::Disabled), focus);
    control.setDown(true);
    emit control.pressed();
    EXPECT_EQ(shown(control, QIcon::Active), down);
    emit control.released();
    EXPECT_EQ(shown(control, QIcon::Normal), up);
    EXPECT_EQ(shown(*plain.findChild<QPushButton*>(row.name), QIcon::Normal), up);
  }
}

TEST_F(PickerTest, TheCommandRunsTheChosenTool) {
  const std::string wall = "MLINE J Z S 1\n0,0\n10,0\n\n";
  for (const auto& [name, prompt] : {std::pair{"CutAll", L"the first point"}, {"Close", L""}}) {
    withNextDialog([&, chosen = name](QDialog& dialog) { dialog.findChild<QPushButton*>(chosen)->click(); });
    printed.clear();
    run(std::string(name) == "CutAll" ? wall + "MLEDIT\n#2F:3,0.5\n^C\n" : "MLEDIT\n");
    EXPECT_THAT(printed, HasSubstr(prompt));
    EXPECT_EQ(printed.find(L"Select multiline") != std::wstring::npos, std::string(name) == "CutAll");
  }
  EXPECT_EQ(reported, "");
}

TEST_F(PickerTest, AHostWithoutDialogsIsToldSo) {
  startHost(DialogUse::none);
  run("MLEDIT\n");
  EXPECT_THAT(printed, HasSubstr(L"needs a dialog"));
}

}  // namespace

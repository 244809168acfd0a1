#include <gtest/gtest.h>

#include "mledit/picker/MLEditDialog.h"
#include "mledit/picker/MLEditWidget.h"
#include "runtime/pictures.h"
#include "support/dialog_driver.h"
#include "support/host_driver.h"

#include <kdrx/rx.h>

#include <QtWidgets/QPushButton>

namespace {

struct Button {
  const char* name;
  int tool;
  const wchar_t* picture;
};

constexpr Button kButtons[] = {
    {"ClosedCross", 1, L"IDB_CLOSE_CROSS"},
    {"OpenCross", 2, L"IDB_OPEN_CROSS"},
    {"MergedCross", 3, L"IDB_MERGED_CROSS"},
    {"ClosedTee", 4, L"IDB_CLOSE_TREE"},
    {"OpenTee", 5, L"IDB_OPEN_TREE"},
    {"MergedTee", 6, L"IDB_MERGED_TREE"},
    {"CornerJoint", 7, L"IDB_CORNER_JOINT"},
    {"AddVertex", 8, L"IDB_ADD_VERTEX"},
    {"DeleteVertex", 9, L"IDB_DELETE_VERTEX"},
    {"CutSingle", 10, L"IDB_CUT_SINGLE"},
    {"CutAll", 11, L"IDB_CUT_ALL"},
    {"WeldAll", 12, L"IDB_WELD_ALL"},
    {"Close", 13, nullptr},
};

class PickerTest : public DialogTest, protected HostDriver {
 protected:
  PickerTest() {
    startHost(torva::runtime::DialogUse::shown);
    AfxSetResourceHandle(loadResourceDll(L"KdrxMLStyleRes.dll"));
  }

  static QPushButton& button(QDialog& dialog, const Button& row) { return *dialog.findChild<QPushButton*>(row.name); }
};

TEST_F(PickerTest, EveryButtonRecordsItsNumberAndEndsWithOkAsKeysDo) {
  struct Case {
    const char* name;
    std::function<void(QDialog&)> act;
    int result, tool;
  };
  std::vector<Case> cases = {
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
  for (const Button& row : kButtons) {
    const auto click = [&row](QDialog& widget) { QTest::mouseClick(&button(widget, row), Qt::LeftButton); };
    cases.push_back({row.name, click, 1, row.tool});
  }
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CMLEditDialog dialog(nullptr);
    withNextDialog(c.act);
    EXPECT_EQ(dialog.DoModal(), c.result);
    EXPECT_EQ(dialog.GetTool(), c.tool);
  }
  EXPECT_EQ(stillOpen, 0);
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
  run("MLINE J Z S 1\n0,0\n10,0\n\n");
  for (const char* name : {"CutAll", "Close"}) {
    const bool isTool = name == std::string_view("CutAll");
    withNextDialog([=](QDialog& dialog) { dialog.findChild<QPushButton*>(name)->click(); });
    printed.clear();
    run(isTool ? "MLEDIT\n#2F:3,0.5\n^C\n" : "MLEDIT\n");
    EXPECT_EQ(printed.find(L"Select multiline at the first point") != std::wstring::npos, isTool);
  }
  EXPECT_EQ(reported, "");
}

}  // namespace

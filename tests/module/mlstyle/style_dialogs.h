#pragma once

#include "command/file_request.h"
#include "module/mlstyle/style_drawing.h"
#include "support/dialog_driver.h"
#include "support/message_answers.h"

#include <kdrx/app.h>
#include <kdrx/rx.h>
#include <kdrx/ui.h>

#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>

/// Runs the dialogs of styles over a new drawing, through their real widgets.
class StyleDialogTest : public DialogTest, protected StyleDrawing {
 protected:
  static constexpr int kList = 1021, kLoad = 1032, kSave = 1033;  // of the manager

  StyleDialogTest() { startDialogs(); }

  void startDialogs() {
    startHost(torva::runtime::DialogUse::shown);
    host->editor().setFileChooser([this](const torva::command::FileRequest& request) {
      requests.push_back(request);
      return chosenFile;
    });
    AfxSetResourceHandle(loadResourceDll(L"KdrxMLStyleRes.dll"));
  }

  std::string bytes() { return drawing().file().toBytes(); }

  void addStyle(const std::wstring& name, const std::wstring& description = {}) {
    put(name, description, 0, {{0.5}, {-0.5}});
  }
  /// The styles of the drawing, each with the name that it has itself.
  std::wstring styleNames() {
    std::wstring names;
    const COpenedObject<KdDbDictionary> styles(dictionaryId(), KdOpenMode::forRead);
    for (const auto entry = styles->newIterator(); !entry->done(); entry->next()) {
      const COpenedObject<KdDbMlineStyle> style(entry->objectId(), KdOpenMode::forRead);
      names += entry->name() + (style->name() == entry->name() ? L" " : L"!=" + style->name() + L" ");
    }
    return names;
  }
  std::wstring current() { return std::get<std::wstring>(*host->editor().variable(L"CMLSTYLE")); }

  /// Runs the manager, does `act` in it, and closes it unless that did.
  void manage(const std::function<void(QDialog&)>& act) {
    manager = nullptr;
    withNextDialog([&](QDialog& dialog) {
      manager = &dialog;
      list = &control<QListWidget>(dialog, kList);
      const QPointer<QDialog> guard(&dialog);
      act(dialog);
      if (guard && guard->isVisible()) dialog.reject();
    });
    run("MLSTYLE\n");
    EXPECT_NE(manager, nullptr) << "no dialog was shown";
    EXPECT_EQ(stillOpen, 0);
    EXPECT_EQ(reported, "");
  }
  void select(const QString& name) { clickRow(*list, name); }

  /// A dialog that `show` runs, doing what it is given, keeps its place when `leave` ends it as `close` does not, and is
  /// shown there again.
  void expectPlaceKept(const std::wstring& prefix, const std::function<void(const std::function<void(QDialog&)>&)>& show,
                       const std::function<void(QDialog&)>& close, const std::function<void(QDialog&)>& leave) {
    const auto keptLeft = [&] { return kdrxGetProfileInt(L"Settings", (prefix + L"PosLeft").c_str(), -10000); };
    QPoint place;
    for (const auto& end : {close, leave}) {
      EXPECT_EQ(keptLeft(), -10000);
      show([&](QDialog& dialog) {
        dialog.move(77, 33);
        place = dialog.geometry().topLeft();
        end(dialog);
      });
    }
    EXPECT_EQ(keptLeft(), place.x());
    show([&](QDialog& dialog) {
      EXPECT_EQ(dialog.geometry().topLeft(), place);
      close(dialog);
    });
  }

  // Controls by their numbers.
  template <class Control>
  static Control& control(QDialog& dialog, int id) {
    return *qobject_cast<Control*>(dynamic_cast<QBaseDialog&>(dialog).GetControl(id));
  }
  static void press(QDialog& dialog, int id) { QTest::mouseClick(&control<QPushButton>(dialog, id), Qt::LeftButton); }
  static void clickRow(QListWidget& list, const QString& text, bool isDouble = false) {
    const auto found = list.findItems(text, Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1) << text.toStdString();
    list.scrollToItem(found.front());
    const QPoint place = list.visualItemRect(found.front()).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
    if (isDouble) QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  }

  QDialog* manager = nullptr;
  QListWidget* list = nullptr;  // its styles
  MessageAnswers messages;
  std::vector<torva::command::FileRequest> requests;
  std::optional<std::wstring> chosenFile;
};

#pragma once

#include <cwctype>
#include <memory>
#include <string>
#include <vector>

#include "command/file_request.h"
#include "command/input_source.h"
#include "dialog/message_service.h"
#include "mlstyle/OpenedObject.h"
#include "runtime/host.h"
#include "support/dialog_driver.h"
#include "support/temporary_folder.h"

#include <kdrx/db_database.h>
#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>
#include <kdrx/rx.h>
#include <kdrx/ui.h>

#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>

/// Answers message boxes with one button and keeps what they said.
class MessageAnswers final : public torva::dialog::MessageService {
 public:
  int show(QWidget*, const std::wstring& text, const std::wstring& title, unsigned type) override {
    heard.push_back(title + L'|' + text + L'|' + std::to_wstring(type));
    return answer;
  }
  void beep() override { heard.push_back(L"beep"); }

  int answer = IDYES;
  std::vector<std::wstring> heard;
};

/// Runs the dialogs of styles over a new drawing, through their real widgets.
class StyleDialogTest : public DialogTest {
 protected:
  StyleDialogTest() { startHost(torva::runtime::DialogUse::shown); }

  void startHost(torva::runtime::DialogUse dialogUse) {
    host.reset();
    torva::runtime::HostOptions options;
    options.profileFolder = folder.path("profile");
    options.programFolder = TORVA_BINARY_DIR "/bin";
    options.dialogUse = dialogUse;
    options.print = [this](std::wstring_view text) { printed += text; };
    options.report = [this](const std::string& text) { reported += text; };
    host = std::move(*torva::runtime::Host::create(options));
    host->editor().setFileChooser([this](const torva::command::FileRequest& request) {
      requests.push_back(request);
      return chosenFile;
    });
    AfxSetResourceHandle(loadResourceDll(L"KdrxMLStyleRes.dll"));
  }

  void run(const std::string& script) {
    host->editor().run(*torva::command::ScriptSource::fromText(script, "test"), torva::command::OnFault::goOn);
  }
  torva::db::Database& drawing() { return host->editor().database(); }
  std::string bytes() { return drawing().file().toBytes(); }

  KdDbObjectId dictionaryId() {
    KdName root;
    KdDbObjectId rootId, id;
    EXPECT_EQ(kddbNamedObjDict(root), kKdInputNormal);
    EXPECT_EQ(kddbGetObjectId(rootId, root), KdStatus::ok);
    COpenedObject<KdDbDictionary>(rootId, KdOpenMode::forRead)->getAt(L"ACAD_MLINESTYLE", id);
    return id;
  }
  void addStyle(const std::wstring& name, const std::wstring& description = {}) {
    const COpenedObject<KdDbDictionary> styles(dictionaryId(), KdOpenMode::forWrite);
    auto style = std::make_unique<KdDbMlineStyle>();
    style->initMlineStyle();
    style->setName(name);
    style->setDescription(description);
    int index = 0;
    for (const double offset : {0.5, -0.5}) ASSERT_EQ(style->addElement(index, offset, {}, {}), KdStatus::ok);
    KdDbObjectId id;
    ASSERT_EQ(styles->setAt(name, style.get(), id), KdStatus::ok);
    style.release()->close();
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

  TemporaryFolder folder;
  std::unique_ptr<torva::runtime::Host> host;
  MessageAnswers messages;
  std::vector<torva::command::FileRequest> requests;
  std::optional<std::wstring> chosenFile;
  std::wstring printed;
  std::string reported;
};

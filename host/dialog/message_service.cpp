#include "dialog/message_service.h"

#include <kdrx/ui.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

namespace torva::dialog {
namespace {

constexpr unsigned kButtonBits = 0xF, kIconBits = 0xF0;

QMessageBox::StandardButtons buttonsOf(unsigned type) {
  switch (type & kButtonBits) {
    case MB_OKCANCEL:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case MB_YESNOCANCEL:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MB_YESNO:
      return QMessageBox::Yes | QMessageBox::No;
    default:
      return QMessageBox::Ok;
  }
}

QMessageBox::Icon iconOf(unsigned type) {
  switch (type & kIconBits) {
    case MB_ICONERROR:
      return QMessageBox::Critical;
    case MB_ICONQUESTION:
      return QMessageBox::Question;
    case MB_ICONWARNING:
      return QMessageBox::Warning;
    case MB_ICONINFORMATION:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

int resultOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return IDYES;
    case QMessageBox::No:
      return IDNO;
    case QMessageBox::Cancel:
      return IDCANCEL;
    default:
      return IDOK;
  }
}

int showBox(QWidget* parent, const std::wstring& text, const std::wstring& title, unsigned type) {
  QMessageBox box(iconOf(type), QString::fromStdWString(title), QString::fromStdWString(text), buttonsOf(type),
                  parent ? parent : QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  if ((type & kButtonBits) == MB_YESNO) box.setEscapeButton(QMessageBox::No);
  return resultOf(box.exec());
}

}  // namespace

MessageService::MessageService() : m_current(*this) {}

MessageService::~MessageService() = default;

int showMessage(QWidget* parent, const std::wstring& text, const std::wstring& title, unsigned type) {
  MessageService* service = Current<MessageService>::get();
  return service ? service->show(parent, text, title, type) : showBox(parent, text, title, type);
}

void beep() {
  MessageService* service = Current<MessageService>::get();
  service ? service->beep() : QApplication::beep();
}

}  // namespace torva::dialog

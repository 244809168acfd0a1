#include "runtime/pictures.h"

#include <kdrx/rx.h>
#include <kdrx/ui.h>

#include <QtGui/QPixmap>
#include <QtWidgets/QPushButton>

namespace {

QPixmap pictureOf(const std::wstring& name) {
  const auto bytes = torva::runtime::pictureOf(AfxGetResourceHandle(), name);
  QPixmap picture;
  if (bytes) picture.loadFromData(QByteArray::fromStdString(*bytes));
  return picture;
}

/// False when there is no such picture; null stands for none that is wanted.
bool addPicture(QIcon& icon, const wchar_t* name, std::initializer_list<QIcon::Mode> modes) {
  if (!name) return true;
  const QPixmap single = pictureOf(name);
  QPixmap twofold = pictureOf(std::wstring(name) + L"@2x");
  twofold.setDevicePixelRatio(2);
  for (const QIcon::Mode mode : modes) {
    for (const QPixmap& picture : {single, twofold}) {
      if (!picture.isNull()) icon.addPixmap(picture, mode);
    }
  }
  return !single.isNull();
}

}  // namespace

CButton::~CButton() = default;

CBitmapButton::~CBitmapButton() = default;

bool CBitmapButton::LoadBitmaps(const wchar_t* up, const wchar_t* down, const wchar_t* focus, const wchar_t* disabled) {
  m_released = m_pressed = {};
  bool isWhole = addPicture(m_released, up, {QIcon::Normal});
  isWhole &= addPicture(m_released, focus, {QIcon::Active});
  isWhole &= addPicture(m_released, disabled, {QIcon::Disabled});
  isWhole &= addPicture(m_pressed, down, {QIcon::Normal, QIcon::Active});
  return isWhole;
}

void CBitmapButton::PreSubclassWindow() {
  auto* button = qobject_cast<QPushButton*>(GetWidget());
  if (!button || m_released.isNull()) return;
  button->setIcon(m_released);
  // Qt has no picture of its own for a button that is held down.
  if (m_pressed.isNull()) return;
  QObject::connect(button, &QPushButton::pressed, button, [button, icon = m_pressed] { button->setIcon(icon); });
  QObject::connect(button, &QPushButton::released, button, [button, icon = m_released] { button->setIcon(icon); });
}

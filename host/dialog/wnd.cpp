#include "dialog/message_service.h"

#include <kdrx/ui.h>

#include <QtCore/QVariant>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QAbstractScrollArea>

namespace {

constexpr const char* kBoundObject = "boundObject";

/// The property that holds what a widget says: of labels, edits and buttons, boxes, groups, text areas, all others.
const char* textPropertyOf(const QWidget& widget) {
  for (const char* name : {"text", "currentText", "title", "plainText"}) {
    if (widget.metaObject()->indexOfProperty(name) >= 0) return name;
  }
  return "windowTitle";
}

tagRECT rectangleOf(const QRect& rectangle) {
  return {rectangle.x(), rectangle.y(), rectangle.x() + rectangle.width(), rectangle.y() + rectangle.height()};
}

QRect rectangleOf(const tagRECT& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.Width(), rectangle.Height()};
}

bool isOnAScreen(const QRect& rectangle) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen->availableGeometry().intersects(rectangle)) return true;
  }
  return false;
}

}  // namespace

CWnd::~CWnd() {
  if (FromWidget(m_widget) == this) m_widget->setProperty(kBoundObject, {});
}

CWnd* CWnd::FromWidget(const QWidget* widget) {
  return widget ? static_cast<CWnd*>(widget->property(kBoundObject).value<void*>()) : nullptr;
}

int CWnd::GetDlgCtrlID() const {
  return m_widget ? m_widget->property("controlId").toInt() : 0;
}

bool CWnd::SubclassDlgItem(unsigned id, CWnd* parent) {
  const auto* dialog = parent ? dynamic_cast<QBaseDialog*>(parent->GetWidget()) : nullptr;
  QWidget* control = dialog && !m_widget ? dialog->GetControl(static_cast<int>(id)) : nullptr;
  if (!control) return false;
  Bind(control);
  PreSubclassWindow();
  return true;
}

CStdStr<wchar_t> CWnd::GetWindowTextW() const {
  return m_widget ? m_widget->property(textPropertyOf(*m_widget)).toString().toStdWString() : std::wstring();
}

void CWnd::SetWindowTextW(const wchar_t* text) {
  if (m_widget && text) m_widget->setProperty(textPropertyOf(*m_widget), QString::fromWCharArray(text));
}

void CWnd::EnableWindow(bool isEnabled) {
  if (m_widget) m_widget->setEnabled(isEnabled);
}

bool CWnd::IsWindowEnabled() const {
  return m_widget && m_widget->isEnabled();
}

bool CWnd::IsWindowVisible() const {
  return m_widget && m_widget->isVisible();
}

void CWnd::SetFocus() {
  if (m_widget) m_widget->setFocus();
}

void CWnd::Invalidate() {
  if (m_widget) m_widget->update();
}

tagRECT CWnd::GetWindowRect() const {
  if (!m_widget) return {};
  const auto* dialog = dynamic_cast<const QBaseDialog*>(m_widget.data());
  if (dialog && dialog->m_isProposing) return rectangleOf(dialog->m_windowRect);
  return rectangleOf({m_widget->mapToGlobal(QPoint(0, 0)), m_widget->size()});
}

tagRECT CWnd::GetClientRect() const {
  if (!m_widget) return {};
  // The size that a list has for its rows is right only once it was shown, if it is asked directly.
  const auto* area = qobject_cast<const QAbstractScrollArea*>(m_widget);
  return rectangleOf({QPoint(0, 0), area ? area->maximumViewportSize() : m_widget->size()});
}

tagRECT CWnd::ScreenToClient(const tagRECT& rectangle) const {
  if (!m_widget) return {};
  const QRect onScreen = rectangleOf(rectangle);
  return rectangleOf({m_widget->mapFromGlobal(onScreen.topLeft()), onScreen.size()});
}

void CWnd::MoveWindow(const tagRECT& rectangle, bool isRepainted) {
  const QRect wanted = rectangleOf(rectangle);
  if (!m_widget || (m_widget->isWindow() && !isOnAScreen(wanted))) return;
  m_widget->setGeometry(wanted);
  if (isRepainted) m_widget->update();
}

int CWnd::MessageBoxW(const wchar_t* text, const wchar_t* caption, unsigned type) {
  return torva::dialog::showMessage(m_widget, text ? text : L"", caption ? caption : L"TORVA", type);
}

bool CWnd::OnChildNotify(unsigned) {
  return false;
}

void CWnd::OnDestroy() {}

void CWnd::Bind(QWidget* widget) {
  m_widget = widget;
  if (!FromWidget(widget)) widget->setProperty(kBoundObject, QVariant::fromValue<void*>(this));
}

void MessageBeep(unsigned) noexcept {
  torva::dialog::beep();
}
